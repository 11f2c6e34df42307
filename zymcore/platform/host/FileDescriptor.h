#pragma once

namespace zym {

/// An open file or folder of the system, closed when this ends; or none, for a negative number.
class FileDescriptor {
 public:
  explicit FileDescriptor(int number) noexcept : number_(number) {}
  ~FileDescriptor();
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  [[nodiscard]] int get() const noexcept { return number_; }
  [[nodiscard]] explicit operator bool() const noexcept { return number_ >= 0; }

 private:
  int number_;
};

}  // namespace zym
