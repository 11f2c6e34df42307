#pragma once

#include "tests/support/Test.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// A row of a form in fixtures/forms.txt is "attribute key given>stored read written". Alone, what
/// is given is stored. Read is what the attribute becomes of a record without the key: a text, or
/// absent, kept, a new uuid or now. Written is what the record has for an object without the
/// attribute: nothing, where nothing is said. A form whose records have children names their key.
/// ('' is no text. An amount in stock is the sum of the lots, and there are none.)
struct Row {
  std::string attribute, key, given, stored, read;
  std::optional<std::string> written;
};
struct Form {
  std::string entity;
  bool hasChildren = false;
  std::vector<Row> rows;
};

inline std::vector<Form> readForms() {
  std::vector<Form> forms;
  std::ifstream words(ZYM_FIXTURES "/forms.txt");
  std::vector<std::string> row;
  const auto endRow = [&] {
    if (row.empty()) return;
    for (std::string& word : row) word = word == "''" ? "" : word;
    const std::size_t change = row[2].find('>');
    forms.back().rows.push_back({row[0], row[1], row[2].substr(0, change),
                                 row[2].substr(change == row[2].npos ? 0 : change + 1), row[3],
                                 row.size() > 4 ? std::optional(row[4]) : std::nullopt});
    row.clear();
  };
  for (std::string word; words >> word;) {
    if (word.starts_with("ZYM")) {
      endRow();
      forms.push_back({word.substr(0, word.find(':')), !word.ends_with(':'), {}});
      while (!word.ends_with(':')) words >> word;
    } else if (word == "|") {
      endRow();
    } else {
      row.push_back(word);
    }
  }
  endRow();
  return forms;
}
inline const std::vector<Form> forms = readForms();

inline const NSDate day = NSDate::dateWithTimeIntervalSince1970(1e9 + 0.1234567);

inline PlistValue valueOf(const std::string& text) {
  return text == "date" ? PlistValue(day) : PlistValue(text);
}

}  // namespace zym
