#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::pages {

/// How the additions of one kind are listed.
struct AdditionKind {
  KeyName name;
  std::string (*amount)(const PlistDictionary& addition);
  /// Of a lot with what the addition takes of it.
  std::string (*lot)(const PlistDictionary& lot, const std::string& amount);
  /// The amount that is taken of a lot.
  std::string (*lotAmount)(const PlistDictionary& lot);
};
extern const AdditionKind weighedAdditions;  // fermentables and others
extern const AdditionKind hopAdditions;
extern const AdditionKind yeastAdditions;

/// A list of additions, each with the lots that it takes.
class AdditionList {
 public:
  /// `start` is what the list begins with.
  explicit AdditionList(std::string start) : text_(std::move(start)) {}
  /// A list below a title, which is a text of the page; or below none.
  [[nodiscard]] static std::string startWithTitle(std::optional<std::string_view> title);

  /// Adds the additions of the array for which `isWanted`; `remark`, where given, follows each.
  template <class IsWanted>
  void add(const PlistArray* additions, const AdditionKind& kind, IsWanted isWanted,
           std::string (*remark)(const PlistDictionary&) = nullptr) {
    if (!additions) return;
    for (const PlistValue& element : *additions) {
      const PlistDictionary* addition = element.dictionary();
      if (!addition || !isWanted(*addition)) continue;
      addRow(*addition, kind, remark ? remark(*addition) : "", &element + 1 == additions->end());
    }
  }

  [[nodiscard]] bool empty() const noexcept { return isEmpty_; }
  /// The list with its end.
  [[nodiscard]] std::string text() const { return text_ + "</ul>\n"; }
  [[nodiscard]] std::string textUnlessEmpty() const { return isEmpty_ ? "" : text(); }

 private:
  void addRow(const PlistDictionary& addition, const AdditionKind& kind, const std::string& remark,
              bool isLast);

  std::string text_;
  bool isEmpty_ = true;
};

}  // namespace zym::pages
