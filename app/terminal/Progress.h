#pragma once

#include <cstddef>

namespace zym::host {

/// A bar of how far a long run has come, on a terminal that standard error goes to; gone with this.
class Progress {
 public:
  explicit Progress(std::size_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void show(std::size_t done) const;

 private:
  std::size_t total_;
  bool isShown_;
};

}  // namespace zym::host
