#pragma once

#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistValue.h"

namespace zym::pages {

/// What a page is made of.
enum class Form {
  Markup,  // HTML
  Plain,   // for the clipboard
};

/// A text of a document as a value of a page. In markup, what marks up is escaped. In plain text
/// nothing is; but for a time each "<" is written so that the value holds no marker, until
/// `withoutGuards` has the whole page.
[[nodiscard]] std::string pageText(std::string_view text, Form form);
/// The text under the key; "" when it is none.
[[nodiscard]] std::string pageTextAt(const PlistDictionary& record, KeyName key, Form form);
/// Notes: the same with line feeds as HTML breaks lines, whatever the form.
[[nodiscard]] std::string notesAt(const PlistDictionary& record, KeyName key, Form form);
/// Makes all texts directly in the dictionary such values.
void makePageTexts(PlistDictionary& values, Form form);

/// A filled page as the reader gets it.
[[nodiscard]] std::string withoutGuards(std::string page, Form form);

}  // namespace zym::pages
