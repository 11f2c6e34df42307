#include "app/terminal/Progress.h"

#include <unistd.h>

#include <iostream>
#include <string>

namespace zym::host {
namespace {

// Fewer are done before anybody looks.
constexpr std::size_t few = 20;
constexpr std::size_t width = 40;

}  // namespace

Progress::Progress(std::size_t total)
    : total_(total), isShown_(total > few && isatty(STDERR_FILENO)) {}

Progress::~Progress() {
  if (isShown_) std::cerr << "\r" << std::string(width + 20, ' ') << "\r";
}

void Progress::show(std::size_t done) const {
  if (!isShown_) return;
  const std::size_t filled = width * done / total_;
  std::cerr << "\r[" << std::string(filled, '#') << std::string(width - filled, ' ') << "] " << done
            << "/" << total_ << std::flush;
}

}  // namespace zym::host
