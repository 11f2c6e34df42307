#include "zymcore/platform/host/NSFileManager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "zymcore/platform/host/FileDescriptor.h"

namespace zym {
namespace {

namespace fs = std::filesystem;

struct Meaning {
  int reason;
  std::int64_t code;
};
constexpr Meaning meanings[] = {
    {ENOENT, NSFileNoSuchFileError},       {ENOTDIR, NSFileNoSuchFileError},
    {EACCES, NSFileReadNoPermissionError}, {EPERM, NSFileReadNoPermissionError},
    {EEXIST, NSFileWriteFileExistsError},  {ENOSPC, NSFileWriteOutOfSpaceError},
    {EDQUOT, NSFileWriteOutOfSpaceError},  {EFBIG, NSFileWriteOutOfSpaceError},
};

bool failAt(NSError* error, const std::string& path, std::int64_t code, const std::string& reason) {
  fail(error, NSCocoaErrorDomain, code, path + ": " + reason);
  if (error) error->localizedFailureReason = reason;
  return false;
}

bool failAt(NSError* error, const std::string& path, const std::error_code& reason,
            std::int64_t otherwise) {
  const auto* meaning =
      std::find_if(std::begin(meanings), std::end(meanings),
                   [&](const Meaning& known) { return known.reason == reason.value(); });
  const std::int64_t code = meaning == std::end(meanings) ? otherwise : meaning->code;
  return failAt(error, path, code, reason.message());
}

std::error_code lastError() noexcept {
  return {errno, std::generic_category()};
}

bool writeAll(int descriptor, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// What a link leads to is replaced, never the link.
std::string withoutLink(const std::string& path) {
  std::error_code none;
  if (!fs::is_symlink(path, none)) return path;
  const fs::path target = fs::weakly_canonical(path, none);
  return none ? path : target.string();
}

std::string unusedNameBeside(const std::string& path) {
  static std::atomic<unsigned> count{0};
  return path + "." + std::to_string(::getpid()) + "-" + std::to_string(count++) + ".tmp";
}

bool writeTemporary(const std::string& temporary, std::string_view bytes,
                    const struct stat* replaced) {
  const FileDescriptor file(
      ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
  if (!file) return false;
  if (replaced && ::fchmod(file.get(), replaced->st_mode & 07777) != 0) return false;
  return writeAll(file.get(), bytes) && ::fsync(file.get()) == 0;
}

bool syncFolderOf(const std::string& path) {
  const fs::path folder = fs::path(path).parent_path();
  const FileDescriptor descriptor(
      ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return descriptor && ::fsync(descriptor.get()) == 0;
}

bool isWithin(const std::string& path, const std::string& folder) {
  std::error_code none;
  const fs::path inner = fs::weakly_canonical(path, none);
  const fs::path outer = fs::weakly_canonical(folder, none);
  return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

bool isTaken(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

}  // namespace

bool NSFileManager::fileExistsAtPath(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

bool NSFileManager::isDirectoryAtPath(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool NSFileManager::isRegularFileAtPath(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool NSFileManager::createDirectoryAtPath(const std::string& path, NSError* error) {
  std::error_code reason;
  fs::create_directories(path, reason);
  if (!reason && !isDirectoryAtPath(path)) reason = std::make_error_code(std::errc::file_exists);
  return !reason || failAt(error, path, reason, NSFileWriteUnknownError);
}

bool NSFileManager::copyItemAtPath_toPath(const std::string& path, const std::string& destination,
                                          NSError* error) {
  if (!isTaken(path)) {
    return failAt(error, path, {ENOENT, std::generic_category()}, NSFileNoSuchFileError);
  }
  std::error_code reason;
  if (isTaken(destination)) reason = std::make_error_code(std::errc::file_exists);
  if (!reason && isWithin(destination, path)) {
    reason = std::make_error_code(std::errc::invalid_argument);
  }
  if (reason) return failAt(error, destination, reason, NSFileWriteUnknownError);

  fs::copy(path, destination, fs::copy_options::recursive | fs::copy_options::copy_symlinks,
           reason);
  if (!reason) return true;
  std::error_code none;
  fs::remove_all(destination, none);
  return failAt(error, destination, reason, NSFileWriteUnknownError);
}

bool NSFileManager::moveItemAtPath_toPath(const std::string& path, const std::string& destination,
                                          NSError* error) {
  if (::renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, destination.c_str(), RENAME_NOREPLACE) == 0) {
    return true;
  }
  if (errno == EXDEV || errno == EINVAL || errno == ENOSYS) {
    return copyItemAtPath_toPath(path, destination, error) && removeItemAtPath(path, error);
  }
  return failAt(error, path, lastError(), NSFileWriteUnknownError);
}

bool NSFileManager::removeItemAtPath(const std::string& path, NSError* error) {
  std::error_code reason;
  const bool removed = fs::remove_all(path, reason) > 0;
  if (!reason && !removed) reason = std::make_error_code(std::errc::no_such_file_or_directory);
  return !reason || failAt(error, path, reason, NSFileWriteUnknownError);
}

std::optional<std::vector<std::string>> NSFileManager::contentsOfDirectoryAtPath(
    const std::string& path, NSError* error) {
  std::vector<std::string> names;
  std::error_code reason;
  for (fs::directory_iterator at(path, reason); !reason && at != fs::directory_iterator();
       at.increment(reason)) {
    names.push_back(at->path().filename().string());
  }
  if (reason) {
    failAt(error, path, reason, NSFileReadUnknownError);
    return std::nullopt;
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::string> NSFileManager::contentsAtPath(const std::string& path,
                                                         std::size_t mostBytes, NSError* error) {
  const auto refuse = [&](const std::error_code& reason,
                          std::int64_t code) -> std::optional<std::string> {
    failAt(error, path, reason, code);
    return std::nullopt;
  };
  // Opening a pipe for reading would otherwise wait for somebody to write.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) return refuse(lastError(), NSFileReadUnknownError);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return refuse(lastError(), NSFileReadUnknownError);
  if (S_ISDIR(status.st_mode)) {
    return refuse(std::make_error_code(std::errc::is_a_directory), NSFileReadUnknownError);
  }
  if (!S_ISREG(status.st_mode)) {
    failAt(error, path, NSFileReadUnknownError, "Not a regular file");
    return std::nullopt;
  }

  const auto expected = static_cast<std::size_t>(status.st_size);
  std::string bytes;
  for (std::size_t length = 0;;) {
    if (length > mostBytes || expected > mostBytes) {
      failAt(error, path, NSFileReadTooLargeError, "File too large");
      return std::nullopt;
    }
    // One byte more than expected, to see the end; files that tell no size grow as they are read.
    bytes.resize(std::max(expected + 1, length + 65536));
    const ssize_t count = ::read(file.get(), bytes.data() + length, bytes.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return refuse(lastError(), NSFileReadUnknownError);
    length += static_cast<std::size_t>(count);
    if (count == 0) {
      bytes.resize(length);
      return bytes;
    }
  }
}

bool NSFileManager::writeData_toPath(std::string_view bytes, const std::string& path,
                                     NSError* error) {
  const std::string place = withoutLink(path);
  struct stat replaced {};
  const bool replaces = ::stat(place.c_str(), &replaced) == 0;
  if (replaces && !S_ISREG(replaced.st_mode)) {
    return fail(error, NSCocoaErrorDomain, NSFileWriteUnknownError, path + ": Not a regular file");
  }
  const std::string temporary = unusedNameBeside(place);
  if (writeTemporary(temporary, bytes, replaces ? &replaced : nullptr) &&
      ::rename(temporary.c_str(), place.c_str()) == 0) {
    return syncFolderOf(place) || failAt(error, path, lastError(), NSFileWriteUnknownError);
  }
  const std::error_code reason = lastError();
  if (reason.value() != EEXIST) ::unlink(temporary.c_str());
  return failAt(error, path, reason, NSFileWriteUnknownError);
}

bool NSFileManager::synchronizeFileSystemAtPath(const std::string& path, NSError* error) {
  const FileDescriptor item(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  return (item && ::syncfs(item.get()) == 0) ||
         failAt(error, path, lastError(), NSFileWriteUnknownError);
}

}  // namespace zym
