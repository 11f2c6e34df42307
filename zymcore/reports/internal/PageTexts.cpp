#include "zymcore/reports/internal/PageTexts.h"

#include "zymcore/documents/NSStringExtensions.h"

namespace zym::pages {
namespace {

// The guard stands for itself as well, so that every text comes back as it was.
constexpr char guard = '\x01';
constexpr char guarded = '\x02';
constexpr char lessThan = '\x03';

std::string withGuards(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (c == '<' || c == guard) {
      result += guard;
      result += c == '<' ? lessThan : guarded;
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace

std::string pageText(std::string_view text, Form form) {
  return form == Form::Markup ? encodeForXML(text) : withGuards(text);
}

std::string pageTextAt(const PlistDictionary& record, KeyName key, Form form) {
  return pageText(record.stringValue(key), form);
}

std::string notesAt(const PlistDictionary& record, KeyName key, Form form) {
  return stringFormattedForHTML(pageTextAt(record, key, form));
}

void makePageTexts(PlistDictionary& values, Form form) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::string* text = values.begin()[i].value.string();
    if (text && text->find_first_of("<>&'\"\x01") != std::string::npos) {
      values.editAt(i) = pageText(*text, form);
    }
  }
}

std::string withoutGuards(std::string page, Form form) {
  if (form == Form::Markup) return page;
  std::string result;
  result.reserve(page.size());
  for (std::size_t i = 0; i < page.size(); ++i) {
    const char next = i + 1 < page.size() ? page[i + 1] : '\0';
    if (page[i] == guard && (next == guarded || next == lessThan)) {
      result += next == guarded ? guard : '<';
      ++i;
    } else {
      result += page[i];
    }
  }
  return result;
}

}  // namespace zym::pages
