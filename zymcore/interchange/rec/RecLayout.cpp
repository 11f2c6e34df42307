#include "zymcore/interchange/rec/RecLayout.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <span>

#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/text/TextEncoding.h"

namespace zym {
namespace {

// ---- The layout

constexpr RecField<RecHeader> headerFields[] = {
    {0x00, &RecHeader::title, 0x55},
    {0x55, &RecHeader::hops},
    {0x59, &RecHeader::fermentables},
    {0x5d, &RecHeader::others},
    {0x61, &RecHeader::volumeA},
    {0x65, &RecHeader::volumeB},
    {0x69, &RecHeader::gravityPoints},
    {0x6d, &RecHeader::bitterness},
    {0x71, &RecHeader::efficiency},
    {0x75, &RecHeader::boilMinutes},
    {0x7d, &RecHeader::mashKind},
    {0x7e, &RecHeader::style, 0x37},
    {0xb5, &RecHeader::styleCategory, 0x37},
    {0xec, &RecHeader::isLager},
    {0xed, &RecHeader::minGravityPoints},
    {0xf1, &RecHeader::maxGravityPoints},
    {0xf5, &RecHeader::minFinalGravityPoints},
    {0xf9, &RecHeader::maxFinalGravityPoints},
    {0x105, &RecHeader::minIBU},
    {0x109, &RecHeader::maxIBU},
    {0x10d, &RecHeader::minColor},
    {0x111, &RecHeader::maxColor},
    {0x1cf, &RecHeader::fermentationTemperature},
    {0x480, &RecHeader::styleNumber},
    {0x484, &RecHeader::isComplete},
};

constexpr RecField<RecHop> hopFields[] = {
    {0x000, &RecHop::variety, 0x37}, {0x037, &RecHop::libraryAlpha}, {0x050, &RecHop::kind},
    {0x051, &RecHop::form},          {0x052, &RecHop::storage},      {0x26c, &RecHop::alpha},
    {0x271, &RecHop::ounces},        {0x275, &RecHop::minutes},      {0x277, &RecHop::ibu},
};

constexpr RecField<RecFermentable> fermentableFields[] = {
    {0x000, &RecFermentable::name, 0x37}, {0x06e, &RecFermentable::origin, 0x37},
    {0x0a5, &RecFermentable::kind},       {0x0a6, &RecFermentable::mustBeMashed},
    {0x0a7, &RecFermentable::gravity},    {0x0ab, &RecFermentable::color},
    {0x0af, &RecFermentable::moisture},   {0x201, &RecFermentable::yield},
    {0x209, &RecFermentable::pounds},
};

constexpr RecField<RecOther> otherFields[] = {
    {0x000, &RecOther::name, 0x37}, {0x037, &RecOther::kind},    {0x038, &RecOther::minutes},
    {0x03c, &RecOther::use},        {0x03d, &RecOther::isTimed}, {0x03e, &RecOther::unit},
    {0x241, &RecOther::amount},
};

constexpr RecField<RecStep> stepFields[] = {
    {0x000, &RecStep::name, 0xff},  {0x0ff, &RecStep::kind},        {0x100, &RecStep::fahrenheit},
    {0x10c, &RecStep::restMinutes}, {0x110, &RecStep::stepMinutes},
};

constexpr RecField<RecTail> tailFields[] = {
    {0x000, &RecTail::yeast, 0x37},
    {0x037, &RecTail::laboratory, 0x37},
    {0x06e, &RecTail::productNumber, 0x19},
    {0x087, &RecTail::yeastKind},
    {0x088, &RecTail::isLiquid},
    {0x1c7, &RecTail::lowAttenuation},
    {0x1cb, &RecTail::highAttenuation},
    {0x1cf, &RecTail::fermentationFahrenheit},
    {0x1d3, &RecTail::flocculation},
    {0x1d9, &RecTail::water, 0x1b},
    {0x1f4, &RecTail::calcium},
    {0x1f8, &RecTail::magnesium},
    {0x1fc, &RecTail::sodium},
    {0x204, &RecTail::sulfate},
    {0x208, &RecTail::chloride},
    {0x20c, &RecTail::bicarbonate},
    {0x210, &RecTail::mashpH},
    {0x214, &RecTail::waterIsKnownFor, 0x9b},
    {0x2d8, &RecTail::restFahrenheit},
    {0x2dc, &RecTail::restMinutes},
    {0x2e0, &RecTail::mashOutFahrenheit},
    {0x2e4, &RecTail::mashOutMinutes},
    {0x2f0, &RecTail::quartsPerPound},
    {0x2f5, &RecTail::notes, 0xfbc},
    {0x236c, &RecTail::stepCount},
    {0x2370, &RecTail::grainFahrenheit},
    {0x5c80, &RecTail::schedule, 0xff},
};

static_assert(RecTail::steps + RecStep::most * RecStep::size == 0x5c80);

// ---- Fields

// The program that the format comes from runs on Windows; this one has always written Mac Roman.
constexpr const char* theirEncoding = "windows-1252";
constexpr const char* ownEncoding = "macintosh";

template <class Number>
using Bytes = std::array<char, sizeof(Number)>;

template <class Number>
Bytes<Number> inFileOrder(Bytes<Number> bytes) noexcept {
  if constexpr (std::endian::native != std::endian::little) std::ranges::reverse(bytes);
  return bytes;
}

/// Reads records whose texts are in that encoding.
class Reader {
 public:
  explicit Reader(const char* encoding) noexcept : encoding_(encoding) {}

  // What lies past the end of the bytes keeps its value.
  template <class Record>
  void read(std::string_view bytes, std::span<const RecField<Record>> fields,
            Record& record) const {
    for (const RecField<Record>& field : fields) {
      std::visit([&](auto member) { take(bytes, field, record.*member); }, field.member);
    }
  }

 private:
  template <class Field>
  void take(std::string_view bytes, const Field& field, std::string& text) const {
    if (field.offset > bytes.size()) return;
    const std::string_view found = bytes.substr(field.offset, field.size);
    const std::string_view ended = found.substr(0, found.find('\0'));
    text =
        isASCII(ended)
            ? std::string(ended)
            : stringFromEncoding(ended, encoding_, InvalidBytes::Replaced).value_or(std::string());
  }

  template <class Field, class Number>
  void take(std::string_view bytes, const Field& field, Number& number) const {
    if (field.offset + sizeof number > bytes.size()) return;
    Bytes<Number> raw;
    std::memcpy(raw.data(), bytes.data() + field.offset, raw.size());
    number = std::bit_cast<Number>(inFileOrder<Number>(raw));
  }

  const char* encoding_;
};

template <class Field>
void put(std::string& bytes, std::size_t at, const Field& field, const std::string& text) {
  const std::optional<std::string> encoded = dataUsingEncoding(text, ownEncoding);
  if (!encoded || encoded->size() >= field.size) return;
  std::memcpy(bytes.data() + at + field.offset, encoded->data(), encoded->size());
}

template <class Field, class Number>
void put(std::string& bytes, std::size_t at, const Field& field, Number number) {
  const auto raw = inFileOrder<Number>(std::bit_cast<Bytes<Number>>(number));
  std::memcpy(bytes.data() + at + field.offset, raw.data(), raw.size());
}

// Over zeros that are there.
template <class Record>
void write(const Record& record, std::span<const RecField<Record>> fields, std::string& bytes,
           std::size_t at) {
  for (const RecField<Record>& field : fields) {
    std::visit([&](auto member) { put(bytes, at, field, record.*member); }, field.member);
  }
}

template <class Record>
void append(const Record& record, std::span<const RecField<Record>> fields, std::string& bytes) {
  const std::size_t at = bytes.size();
  bytes.resize(at + Record::size);
  write(record, fields, bytes, at);
}

template <class Record>
using Fields = std::span<const RecField<Record>>;

}  // namespace

std::optional<RecFile> RecFile::read(std::string_view bytes) {
  if (bytes.size() < RecHeader::size) return std::nullopt;
  RecFile file;
  // Counts and what tells whose file it is are the same in each encoding.
  Reader reader(theirEncoding);
  reader.read(bytes, Fields<RecHeader>(headerFields), file.header);
  const std::uint64_t tailAt = RecHeader::size + std::uint64_t{file.header.hops} * RecHop::size +
                               std::uint64_t{file.header.fermentables} * RecFermentable::size +
                               std::uint64_t{file.header.others} * RecOther::size;
  if (tailAt > bytes.size() || bytes.size() - tailAt < RecTail::steps) return std::nullopt;
  const std::string_view tail = bytes.substr(tailAt);
  reader.read(tail, Fields<RecTail>(tailFields), file.tail);
  if ((tail.size() - RecTail::steps) / RecStep::size < file.tail.stepCount) return std::nullopt;
  if (file.tail.water == ownWater) {
    reader = Reader(ownEncoding);
    reader.read(bytes, Fields<RecHeader>(headerFields), file.header);
    reader.read(tail, Fields<RecTail>(tailFields), file.tail);
  }

  std::size_t at = RecHeader::size;
  const auto readAll = [&](std::string_view from, auto fields, std::uint32_t count, auto& records) {
    records.resize(count);
    for (auto& record : records) {
      const std::size_t size = record.size;
      reader.read(from.substr(at, size), fields, record);
      at += size;
    }
  };
  readAll(bytes, Fields<RecHop>(hopFields), file.header.hops, file.hops);
  readAll(bytes, Fields<RecFermentable>(fermentableFields), file.header.fermentables,
          file.fermentables);
  readAll(bytes, Fields<RecOther>(otherFields), file.header.others, file.others);
  at = RecTail::steps;
  readAll(tail, Fields<RecStep>(stepFields), file.tail.stepCount, file.steps);
  return file;
}

std::string RecFile::write() const {
  RecHeader counted = header;
  counted.hops = static_cast<std::uint32_t>(hops.size());
  counted.fermentables = static_cast<std::uint32_t>(fermentables.size());
  counted.others = static_cast<std::uint32_t>(others.size());
  RecTail ended = tail;
  ended.stepCount = static_cast<std::uint32_t>(std::min(steps.size(), RecStep::most));

  std::string bytes;
  append(counted, Fields<RecHeader>(headerFields), bytes);
  for (const RecHop& hop : hops) append(hop, Fields<RecHop>(hopFields), bytes);
  for (const RecFermentable& fermentable : fermentables) {
    append(fermentable, Fields<RecFermentable>(fermentableFields), bytes);
  }
  for (const RecOther& other : others) append(other, Fields<RecOther>(otherFields), bytes);
  std::size_t at = bytes.size() + RecTail::steps;
  append(ended, Fields<RecTail>(tailFields), bytes);
  for (std::size_t i = 0; i < ended.stepCount; ++i, at += RecStep::size) {
    zym::write(steps[i], Fields<RecStep>(stepFields), bytes, at);
  }
  return bytes;
}

}  // namespace zym
