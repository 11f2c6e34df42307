#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace zym {

/// The rows of a text "from -> to | from -> to | ...", over any number of lines; '' is no text.
inline std::vector<std::pair<std::string, std::string>> rowsOf(std::string text) {
  static const std::regex row(R"(\s*(.*?) -> (.*?)(?: \| ?|\n|$))");
  const auto cell = [](const std::string& written) { return written == "''" ? "" : written; };
  std::vector<std::pair<std::string, std::string>> rows;
  for (std::smatch found; std::regex_search(text, found, row); text = found.suffix()) {
    EXPECT_EQ(found.prefix(), "");
    rows.emplace_back(cell(found[1]), cell(found[2]));
  }
  EXPECT_EQ(text, "");
  return rows;
}

}  // namespace zym
