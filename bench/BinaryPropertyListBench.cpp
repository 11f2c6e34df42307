#include "bench/Ratio.h"
#include "bench/SampleDocument.h"
#include "zymcore/platform/formats/BinaryPropertyList.h"

namespace zym {
namespace {

void buildDocument() {
  benchmark::DoNotOptimize(sampleDocument(1));
}

void countBytes(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}

void decodeDocument(benchmark::State& state) {
  const std::string bytes = BinaryPropertyList::write(sampleDocument(1)).value();
  measureRatio(
      state, 2, [&] { benchmark::DoNotOptimize(BinaryPropertyList::read(bytes)); }, buildDocument);
  countBytes(state, bytes.size());
}
BENCHMARK(decodeDocument)->UseManualTime()->Unit(benchmark::kMicrosecond);

void encodeDocument(benchmark::State& state) {
  const PlistValue document = sampleDocument(1);
  measureRatio(
      state, 2, [&] { benchmark::DoNotOptimize(BinaryPropertyList::write(document)); },
      buildDocument);
  countBytes(state, BinaryPropertyList::write(document).value().size());
}
BENCHMARK(encodeDocument)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zym
