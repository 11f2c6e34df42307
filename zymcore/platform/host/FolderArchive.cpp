#include "zymcore/platform/host/FolderArchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "zymcore/platform/host/FileDescriptor.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t blockSize = 64U << 10U;

/// What libarchive says went wrong.
class ArchiveFailure : public std::runtime_error {
 public:
  explicit ArchiveFailure(archive* of)
      : std::runtime_error(reasonOf(of)), isForRoom_(lacksRoom(archive_errno(of))) {}
  explicit ArchiveFailure(const std::string& reason) : std::runtime_error(reason) {}

  /// The archive may be sound.
  [[nodiscard]] bool isForRoom() const noexcept { return isForRoom_; }

 private:
  static bool lacksRoom(int code) noexcept {
    return code == ENOSPC || code == EDQUOT || code == EFBIG;
  }
  static std::string reasonOf(archive* of) {
    if (lacksRoom(archive_errno(of))) return std::generic_category().message(archive_errno(of));
    const char* text = archive_error_string(of);
    return text ? text : "unreadable";
  }

  bool isForRoom_ = false;
};

template <int (*end)(archive*)>
struct Ended {
  void operator()(archive* one) const { end(one); }
};
template <int (*end)(archive*)>
using Archive = std::unique_ptr<archive, Ended<end>>;

struct EntryFreed {
  void operator()(archive_entry* one) const { archive_entry_free(one); }
};

void check(archive* of, int code) {
  if (code < ARCHIVE_WARN) throw ArchiveFailure(of);
}

void append(archive* out, const fs::path& file, const std::string& name) {
  const std::unique_ptr<archive_entry, EntryFreed> entry(archive_entry_new());
  archive_entry_set_pathname_utf8(entry.get(), name.c_str());
  archive_entry_set_size(entry.get(), static_cast<la_int64_t>(fs::file_size(file)));
  archive_entry_set_filetype(entry.get(), AE_IFREG);
  archive_entry_set_perm(entry.get(), 0600);
  check(out, archive_write_header(out, entry.get()));
  std::ifstream bytes(file, std::ios::binary);
  std::vector<char> block(blockSize);
  do {
    bytes.read(block.data(), static_cast<std::streamsize>(block.size()));
    const auto count = static_cast<std::size_t>(bytes.gcount());
    if (archive_write_data(out, block.data(), count) < 0) throw ArchiveFailure(out);
  } while (bytes);
  // What is missing would be filled up with zeros.
  if (!bytes.eof()) throw ArchiveFailure(name + ": unreadable");
}

void write(const fs::path& folder, int file) {
  const Archive<archive_write_free> out(archive_write_new());
  check(out.get(), archive_write_add_filter_gzip(out.get()));
  check(out.get(), archive_write_set_format_pax_restricted(out.get()));
  check(out.get(), archive_write_open_fd(out.get(), file));
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && !entry.is_symlink()) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  for (const fs::path& each : files) {
    append(out.get(), each, fs::relative(each, folder).generic_string());
  }
  check(out.get(), archive_write_close(out.get()));
}

// A pipe would be waited for, and a device replaced.
void refuseWhatIsNoFile(const std::string& path) {
  if (fs::exists(path) && !fs::is_regular_file(path)) throw ArchiveFailure("Not a regular file");
}

void read(const std::string& path, const std::string& folder) {
  refuseWhatIsNoFile(path);
  // The checks of ".." and of links below are of the whole path, and the folder's own is ours.
  const std::string root = fs::canonical(folder).string();
  const Archive<archive_read_free> in(archive_read_new());
  check(in.get(), archive_read_support_filter_gzip(in.get()));
  check(in.get(), archive_read_support_format_tar(in.get()));
  check(in.get(), archive_read_open_filename(in.get(), path.c_str(), blockSize));
  const Archive<archive_write_free> out(archive_write_disk_new());
  check(out.get(), archive_write_disk_set_options(out.get(), ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                                                                 ARCHIVE_EXTRACT_SECURE_SYMLINKS));
  std::int64_t files = 0;
  std::int64_t left = FolderArchive::mostBytes;
  archive_entry* entry = nullptr;
  for (int code; (code = archive_read_next_header(in.get(), &entry)) != ARCHIVE_EOF;) {
    check(in.get(), code);
    const char* const name = archive_entry_pathname_utf8(entry);
    const auto type = archive_entry_filetype(entry);
    if (!name || *name == '/' || archive_entry_hardlink(entry) ||
        (type != AE_IFREG && type != AE_IFDIR)) {
      throw ArchiveFailure("it holds more than plain files");
    }
    if (++files > FolderArchive::mostFiles) throw ArchiveFailure("it holds too many files");
    if (archive_entry_size(entry) > left) throw ArchiveFailure("it holds too much");
    archive_entry_set_pathname_utf8(entry, (root + "/" + name).c_str());
    archive_entry_set_perm(entry, type == AE_IFDIR ? 0700 : 0600);
    check(out.get(), archive_write_header(out.get(), entry));
    const void* block = nullptr;
    std::size_t size = 0;
    la_int64_t offset = 0;
    while ((code = archive_read_data_block(in.get(), &block, &size, &offset)) == ARCHIVE_OK) {
      left -= static_cast<std::int64_t>(size);
      if (left < 0) throw ArchiveFailure("it holds too much");
      if (archive_write_data_block(out.get(), block, size, offset) < ARCHIVE_WARN) {
        throw ArchiveFailure(out.get());
      }
    }
    if (code != ARCHIVE_EOF) throw ArchiveFailure(in.get());
    check(out.get(), archive_write_finish_entry(out.get()));
  }
}

bool failAs(NSError* error, std::int64_t code, const std::string& path, const char* reason) {
  if (error) *error = {NSCocoaErrorDomain, code, path + ": " + reason, {}, reason};
  return false;
}

}  // namespace

bool FolderArchive::writeFolder_toPath(const std::string& folder, const std::string& path,
                                       NSError* error) {
  std::string unfinished = (fs::path(path).parent_path() / ".archive-XXXXXX").string();
  std::error_code ignored;
  try {
    refuseWhatIsNoFile(path);
    const FileDescriptor file(::mkostemp(unfinished.data(), O_CLOEXEC));
    if (!file) throw ArchiveFailure(std::generic_category().message(errno));
    write(folder, file.get());
    if (::fsync(file.get()) != 0) throw ArchiveFailure(std::generic_category().message(errno));
    fs::rename(unfinished, path);
    return true;
  } catch (const std::exception& failure) {
    fs::remove(unfinished, ignored);
    return failAs(error, NSFileWriteUnknownError, path, failure.what());
  }
}

bool FolderArchive::readPath_intoFolder(const std::string& path, const std::string& folder,
                                        NSError* error) {
  try {
    read(path, folder);
    return true;
  } catch (const ArchiveFailure& failure) {
    return failAs(error,
                  failure.isForRoom() ? NSFileWriteOutOfSpaceError : NSFileReadCorruptFileError,
                  path, failure.what());
  } catch (const std::exception& failure) {
    return failAs(error, NSFileReadCorruptFileError, path, failure.what());
  }
}

}  // namespace zym
