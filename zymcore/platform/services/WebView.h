#pragma once

#include <optional>
#include <string>

#include "zymcore/platform/values/NSError.h"

namespace zym {

/// A page of HTML, laid out by a browser that runs as a process of its own, kept for further pages
/// and gone with this process, however that ends. The page gets nothing but its own text: no script
/// of it runs, and it reaches neither files nor the network. Main thread.
class WebView {
 public:
  /// The width to lay the page out in, in CSS pixels (96 an inch).
  explicit WebView(double width) noexcept : width_(width) {}

  /// The text of the page, in UTF-8.
  void loadHTMLString(std::string html) { html_ = std::move(html); }

  /// The page as a PDF of one sheet of its own height, with backgrounds and without margins; of
  /// several sheets where that is more than a PDF can be high (200 inches). Waits for the browser,
  /// which is ended and started once more when it crashes or hangs. Absent, with an error, when
  /// that fails too, or when the machine has no such browser (`NSFileNoSuchFileError`, which names
  /// the package to install).
  [[nodiscard]] std::optional<std::string> dataWithPDF(NSError* error = nullptr) const;

 private:
  double width_;
  std::string html_;
};

}  // namespace zym
