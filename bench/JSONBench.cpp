#include <rapidjson/reader.h>
#include <rapidjson/writer.h>

#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "bench/SampleDocument.h"
#include "zymcore/platform/formats/NSJSONSerialization.h"

namespace zym {
namespace {

const PlistValue& document() {
  static const PlistValue sample = sampleDocument();
  return sample;
}

const std::string& text() {
  static const std::string json =
      NSJSONSerialization::dataWithJSONObject_options(document(), 0).value();
  return json;
}

// What a writer is told, all in a row, so that the bare writer needs no tree.
struct Event {
  enum Kind { Dictionary, EndDictionary, Array, EndArray, Key, String, Integer, Real, Boolean };
  Kind kind;
  std::string text;
  double real = 0;
  std::int64_t integer = 0;
};

void flatten(const PlistValue& value, std::vector<Event>& events) {
  if (const PlistDictionary* dictionary = value.dictionary()) {
    events.push_back({Event::Dictionary, {}});
    for (const PlistEntry& entry : *dictionary) {
      events.push_back({Event::Key, std::string(entry.key.text())});
      flatten(entry.value, events);
    }
    events.push_back({Event::EndDictionary, {}});
  } else if (const PlistArray* array = value.array()) {
    events.push_back({Event::Array, {}});
    for (const PlistValue& element : *array) flatten(element, events);
    events.push_back({Event::EndArray, {}});
  } else if (const std::string* string = value.string()) {
    events.push_back({Event::String, *string});
  } else if (const double* real = value.real()) {
    events.push_back({Event::Real, {}, *real});
  } else {
    events.push_back(
        {value.boolean() ? Event::Boolean : Event::Integer, {}, 0, value.integerValue()});
  }
}

void writeBare(const std::vector<Event>& events) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  const auto size = [](const Event& event) {
    return static_cast<rapidjson::SizeType>(event.text.size());
  };
  for (const Event& event : events) {
    switch (event.kind) {
      case Event::Dictionary:
        writer.StartObject();
        break;
      case Event::EndDictionary:
        writer.EndObject();
        break;
      case Event::Array:
        writer.StartArray();
        break;
      case Event::EndArray:
        writer.EndArray();
        break;
      case Event::Key:
        writer.Key(event.text.data(), size(event));
        break;
      case Event::String:
        writer.String(event.text.data(), size(event));
        break;
      case Event::Integer:
        writer.Int64(event.integer);
        break;
      case Event::Real:
        writer.Double(event.real);
        break;
      case Event::Boolean:
        writer.Bool(event.integer != 0);
        break;
    }
  }
  benchmark::DoNotOptimize(buffer.GetString());
}

void readBare() {
  constexpr unsigned flags = rapidjson::kParseIterativeFlag |
                             rapidjson::kParseValidateEncodingFlag |
                             rapidjson::kParseFullPrecisionFlag;
  rapidjson::Reader reader;
  rapidjson::BaseReaderHandler<> handler;
  rapidjson::StringStream stream(text().c_str());
  benchmark::DoNotOptimize(reader.Parse<flags>(stream, handler));
}

void ReadJSON(benchmark::State& state) {
  measure(
      state, 1,
      [] { benchmark::DoNotOptimize(NSJSONSerialization::JSONObjectWithData_options(text(), 0)); },
      readBare);
  state.counters["bytes"] = static_cast<double>(text().size());
}

void WriteJSON(benchmark::State& state) {
  std::vector<Event> events;
  flatten(document(), events);
  measure(
      state, 1,
      [] {
        benchmark::DoNotOptimize(NSJSONSerialization::dataWithJSONObject_options(document(), 0));
      },
      [&] { writeBare(events); });
  state.counters["bytes"] = static_cast<double>(text().size());
}

ZYM_BENCHMARK(ReadJSON);
ZYM_BENCHMARK(WriteJSON);

}  // namespace
}  // namespace zym
