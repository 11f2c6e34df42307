#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zym {

/// A message that waits until the user has seen it. The host shows it; without a host that does,
/// its texts go to the log. Main thread.
class NSAlert {
 public:
  enum class Style { Warning = 0, Informational = 1, Critical = 2 };
  /// Shows the alert, waits for a button and answers its position.
  using Presenter = std::function<std::size_t(const NSAlert& alert)>;

  [[nodiscard]] const std::string& messageText() const noexcept { return messageText_; }
  void setMessageText(std::string text) { messageText_ = std::move(text); }
  [[nodiscard]] const std::string& informativeText() const noexcept { return informativeText_; }
  void setInformativeText(std::string text) { informativeText_ = std::move(text); }
  [[nodiscard]] Style alertStyle() const noexcept { return style_; }
  void setAlertStyle(Style style) noexcept { style_ = style; }
  [[nodiscard]] const std::vector<std::string>& buttons() const noexcept { return buttons_; }
  void addButtonWithTitle(std::string title) { buttons_.push_back(std::move(title)); }

  /// The position of the button that the user chose; that of the first without a presenter.
  std::size_t runModal() const;

  /// Empty for none.
  static void setPresenter(Presenter presenter);

 private:
  std::string messageText_;
  std::string informativeText_;
  std::vector<std::string> buttons_;
  Style style_ = Style::Warning;
};

}  // namespace zym
