#pragma once

#include <string>
#include <string_view>

#include "zymcore/documents/Vocabularies.h"
#include "zymcore/reports/internal/PageTexts.h"

namespace zym::pages {

/// Fills a row for each addition and mash step of the recipe and stores the five tables in the
/// values of its sheet.
void addSheetTables(const PlistDictionary& recipe, Form form, PlistDictionary& values);

/// The translation of a word of documents; one that isn't of the vocabulary stays as it is.
[[nodiscard]] std::string translated(std::string_view word, words::Vocabulary vocabulary,
                                     Form form);

}  // namespace zym::pages
