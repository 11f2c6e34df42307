#include <array>
#include <memory>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "bench/SampleDocument.h"

namespace zym {
namespace {

constexpr int times = 1000;

// The limit of a copy: sharing what lies behind a pointer.
template <class Original>
void copy(benchmark::State& state, const Original& original) {
  const auto shared = std::make_shared<int>(1);
  measure(
      state, times,
      [&] {
        for (int i = 0; i < times; ++i) {
          Original copied = original;
          benchmark::DoNotOptimize(copied);
        }
      },
      [&] {
        for (int i = 0; i < times; ++i) {
          std::shared_ptr<int> copied = shared;
          benchmark::DoNotOptimize(copied);
        }
      });
}

void CopyDocument(benchmark::State& state) {
  copy(state, sampleDocument());
}

void CopyDocumentAHundredTimesAsLarge(benchmark::State& state) {
  PlistDictionary document = sampleDocument();
  for (int i = 0; i < 100; ++i) document.set(KeyName(std::to_string(i)), sampleRow("Row", 60));
  copy(state, document);
}

// From one document to the next by what stands under a key, as a load through a pointer leads from
// one node to the next: neither can begin before the last has ended.
void ReadAKnownKey(benchmark::State& state) {
  static constexpr std::array keys = {KeyName("DocumentField0"), KeyName("DocumentField17"),
                                      KeyName("DocumentField30"), KeyName("DocumentField53")};
  constexpr std::size_t documents = 16;
  std::vector<PlistDictionary> chain(documents, sampleDocument());
  struct Node {
    Node* next;
  };
  std::vector<std::unique_ptr<Node>> nodes;
  for (std::size_t i = 0; i < documents; ++i) {
    for (const KeyName key : keys) chain[i].set(key, (i * 7 + 3) % documents);
    nodes.push_back(std::make_unique<Node>());
  }
  for (std::size_t i = 0; i < documents; ++i) nodes[i]->next = nodes[(i * 7 + 3) % documents].get();

  measure(
      state, times * keys.size(),
      [&] {
        std::int64_t at = 0;
        for (int i = 0; i < times; ++i) {
          for (const KeyName key : keys) {
            at = *chain[static_cast<std::size_t>(at)].find(key)->integer();
          }
        }
        benchmark::DoNotOptimize(at);
      },
      [&] {
        const Node* at = nodes[0].get();
        for (int i = 0; i < times; ++i) {
          for (std::size_t j = 0; j < keys.size(); ++j) {
            at = at->next;
            benchmark::DoNotOptimize(at);
          }
        }
      });
}

ZYM_BENCHMARK(CopyDocument);
ZYM_BENCHMARK(CopyDocumentAHundredTimesAsLarge);
ZYM_BENCHMARK(ReadAKnownKey);

}  // namespace
}  // namespace zym
