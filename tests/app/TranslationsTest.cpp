#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/support/TemporaryFolder.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/formats/NSPropertyListSerialization.h"

namespace zym {
namespace {

namespace fs = std::filesystem;

/// Takes the literals that stand at the front of the code as one text; empty for none.
std::string takeLiterals(std::string_view& code) {
  std::string text;
  while (true) {
    code.remove_prefix(std::min(code.find_first_not_of(" \n"), code.size()));
    if (!code.starts_with('"')) return text;
    std::size_t i = 1;
    for (; i < code.size() && code[i] != '"'; ++i) {
      if (code[i] == '\\') ++i;
      text += code[i] == 'n' && code[i - 1] == '\\' ? '\n' : code[i];
    }
    code.remove_prefix(std::min(i + 1, code.size()));
  }
}

/// The texts of the first argument of each call of that name: one, or two of a condition.
void addArguments(std::string_view code, std::string_view name, std::set<std::string>& texts) {
  for (std::size_t at = code.find(name); at != std::string_view::npos;
       at = code.find(name, at + 1)) {
    std::string_view rest = code.substr(at + name.size());
    int depth = 0;
    while (!rest.empty() && depth >= 0 && (depth > 0 || rest.front() != ',')) {
      const std::string text = takeLiterals(rest);
      if (!text.empty()) {
        if (depth == 0) texts.insert(text);
        continue;
      }
      if (rest.empty()) break;
      depth += rest.front() == '(' || rest.front() == '{';
      depth -= rest.front() == ')' || rest.front() == '}';
      rest.remove_prefix(1);
    }
  }
}

/// The texts in rows of tables beside a key: {keys::Alpha, "Alpha", ...} and {"Colour", keys::....
void addRows(std::string_view code, std::set<std::string>& texts) {
  for (std::size_t at = code.find('{'); at != std::string_view::npos; at = code.find('{', at + 1)) {
    std::string_view rest = code.substr(at + 1);
    if (rest.starts_with("keys::")) {
      rest.remove_prefix(std::min(rest.find_first_of(",{}"), rest.size()));
      if (!rest.starts_with(",")) continue;
      rest.remove_prefix(1);
      const std::string text = takeLiterals(rest);
      if (!text.empty() && rest.starts_with(",")) texts.insert(text);
    } else if (rest.starts_with('"')) {
      const std::string text = takeLiterals(rest);
      if (rest.starts_with(", keys::") || rest.starts_with(", std::nullopt") ||
          rest.starts_with(", KeyName(")) {
        texts.insert(text);
      }
    }
  }
}

/// The texts of lists of labels.
void addLists(std::string_view code, std::set<std::string>& texts) {
  constexpr std::string_view start = "std::string_view labels";
  for (std::size_t at = code.find(start); at != std::string_view::npos;
       at = code.find(start, at + 1)) {
    std::string_view rest = code.substr(code.find('{', at));
    do {
      rest.remove_prefix(1);
      const std::string text = takeLiterals(rest);
      if (!text.empty()) texts.insert(text);
    } while (rest.starts_with(','));
  }
}

std::set<std::string> textsLookedUp() {
  std::set<std::string> texts;
  for (const char* part : {"app", "zymcore"}) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(ZYM_SOURCE) / part)) {
      if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") continue;
      const std::string code = bytesOf(entry.path());
      for (const char* call : {"label(", "localized(", "field(", "Localized_String(", "sentence(",
                               "translatable(", "closeAndSave(", "insertItem("}) {
        addArguments(code, call, texts);
      }
      // Rows elsewhere are attributes and tags.
      const std::string path = entry.path().string();
      if (std::string_view(part) == "app" || path.find("/zymcore/library/") != std::string::npos ||
          path.find("/zymcore/reports/") != std::string::npos) {
        addRows(code, texts);
      }
      addLists(code, texts);
    }
  }
  for (const words::Vocabulary vocabulary :
       {words::Vocabulary(words::fermentableWhen), words::Vocabulary(words::hopWhen),
        words::Vocabulary(words::otherWhen), words::Vocabulary(words::hopForms),
        words::Vocabulary(words::mashTypes), words::Vocabulary(words::stepTypes),
        words::Vocabulary(words::spargeMethods), words::Vocabulary(words::conditionings),
        words::Vocabulary(words::carbonations), words::Vocabulary(words::acids),
        words::Vocabulary(words::stockForms)}) {
    texts.insert(vocabulary.begin(), vocabulary.end());
  }
  return texts;
}

TEST(Translations, EveryTextThatIsLookedUpStandsInEachTable) {
  const std::set<std::string> texts = textsLookedUp();
  EXPECT_THAT(texts,
              ::testing::IsSupersetOf(
                  {"%1 imported, %2 failed", "Dry-Hopped", "Before the boil", "New Hop", "Gypsum",
                   "Duplicate Item", "mins", "Batch %ld of %@", "Schedule Name", "BU:GU ratio",
                   "%@ of chalk.", "of honey.", "Summary", "Inventory - Hops as of %@", "Plato"}));
  int tables = 0;
  for (const auto& entry : fs::directory_iterator(fs::path(ZYM_RESOURCES))) {
    if (entry.path().extension() != ".lproj") continue;
    ++tables;
    const auto table = NSPropertyListSerialization::propertyListWithData(
        bytesOf(entry.path() / "Localizable.strings"));
    ASSERT_TRUE(table && table->dictionary());
    for (const std::string& text : texts) {
      const std::string* translation = table->dictionary()->string(KeyName(text));
      EXPECT_TRUE(translation && !translation->empty())
          << entry.path().filename() << " lacks '" << text << "'";
      for (const char* part : {"%1", "%2", "%3", "%@", "%ld"}) {
        if (!translation) break;
        EXPECT_EQ(text.find(part) == std::string::npos,
                  translation->find(part) == std::string::npos)
            << text;
      }
    }
  }
  EXPECT_GT(tables, 0);
}

}  // namespace
}  // namespace zym
