// A document of a megabyte parsed, walked and written as nodes, beside bare libxml2.

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <string>

#include "bench/Ratio.h"
#include "zymcore/interchange/xmlnodes/GDataXMLDocument.h"

namespace zym {
namespace {

std::string document() {
  std::string text = "<recipes>";
  while (text.size() < (1U << 20U)) {
    text +=
        "<recipe id=\"7\"><name>Bitter</name><hop "
        "use=\"boil\"><amount>12.5</amount></hop></recipe>";
  }
  return text + "</recipes>";
}

std::size_t walked(const GDataXMLNode& node) {
  std::size_t count = 1;
  for (const auto& child : node.children()) count += walked(*child);
  return count;
}

std::size_t walkedBare(const xmlNode* node) {
  std::size_t count = 1;
  for (const xmlNode* child = node->children; child; child = child->next)
    count += walkedBare(child);
  return count;
}

void parseWalkAndWrite(benchmark::State& state) {
  const std::string text = document();
  measureRatio(
      state, 1.3,
      [&] {
        const auto parsed = GDataXMLDocument::initWithData_options(text, 0);
        benchmark::DoNotOptimize(walked(*parsed->rootElement()));
        benchmark::DoNotOptimize(parsed->XMLData());
      },
      [&] {
        xmlDoc* const parsed = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr,
                                             nullptr, XML_PARSE_NOBLANKS | XML_PARSE_NOCDATA);
        benchmark::DoNotOptimize(walkedBare(xmlDocGetRootElement(parsed)));
        xmlChar* bytes = nullptr;
        int length = 0;
        xmlDocDumpMemory(parsed, &bytes, &length);
        benchmark::DoNotOptimize(
            std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)));
        xmlFree(bytes);
        xmlFreeDoc(parsed);
      });
}
BENCHMARK(parseWalkAndWrite)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zym
