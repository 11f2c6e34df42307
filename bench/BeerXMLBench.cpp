#include <libxml/parser.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "zymcore/interchange/beerxml/ZYMBeerXML.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

std::string list(const char* tag, int count, const std::string& record) {
  std::string text = "  <" + std::string(tag) + "S>\n";
  for (int i = 0; i < count; ++i) {
    text += "   <" + std::string(tag) + ">\n    <NAME>Number " + std::to_string(i) + "</NAME>\n" +
            record + "   </" + tag + ">\n";
  }
  return text + "  </" + tag + "S>\n";
}

// From a sketch of 2 KB to a long story of 30.
std::string recipe(int size) {
  std::string notes;
  for (int i = 0; i < size * 2; ++i)
    notes += "Gebraut im M\u00E4rz &amp; gelagert bei 4 \u00B0C.\n";
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RECIPES>\n <RECIPE>\n"
         "  <NAME>Recipe</NAME>\n  <VERSION>1</VERSION>\n  <TYPE>All Grain</TYPE>\n"
         "  <BREWER>Anna</BREWER>\n  <BATCH_SIZE>20.0</BATCH_SIZE>\n"
         "  <BOIL_SIZE>25.0</BOIL_SIZE>\n  <BOIL_TIME>60</BOIL_TIME>\n  <NOTES>" +
         notes + "</NOTES>\n" +
         list("HOP", size,
              "    <VERSION>1</VERSION>\n    <ALPHA>5.5</ALPHA>\n    <AMOUNT>0.0305</AMOUNT>\n"
              "    <USE>Boil</USE>\n    <TIME>60</TIME>\n    <NOTES>Citrus and pine</NOTES>\n"
              "    <FORM>Pellet</FORM>\n    <ORIGIN>U.S.</ORIGIN>\n") +
         list("FERMENTABLE", size,
              "    <VERSION>1</VERSION>\n    <TYPE>Grain</TYPE>\n    <AMOUNT>4.25</AMOUNT>\n"
              "    <YIELD>80.0</YIELD>\n    <COLOR>2.5</COLOR>\n    <ORIGIN>Germany</ORIGIN>\n"
              "    <MAX_IN_BATCH>100.0</MAX_IN_BATCH>\n") +
         list("YEAST", 1, "    <TYPE>Ale</TYPE>\n    <ATTENUATION>75.0</ATTENUATION>\n") +
         " </RECIPE>\n</RECIPES>\n";
}

// A hundred files beside the bare tree of an XML parser made of the same bytes.
void Files(benchmark::State& state) {
  std::vector<NSData> files;
  for (int i = 0; i < 100; ++i) files.emplace_back(recipe(1 + i % 30));
  measureRatio(
      state, 1.5,
      [&] {
        for (const NSData& file : files) {
          if (!ZYMBeerXML::parseFileData(file)) std::abort();
        }
      },
      [&] {
        for (const NSData& file : files) {
          const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> tree(
              xmlReadMemory(file.view().data(), static_cast<int>(file.length()), nullptr, nullptr,
                            XML_PARSE_NONET),
              &xmlFreeDoc);
          if (!tree) std::abort();
        }
      });
}
BENCHMARK(Files)->UseManualTime()->MinTime(2);

}  // namespace
}  // namespace zym
