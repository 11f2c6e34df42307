#include <bit>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "zymcore/platform/formats/BinaryPropertyList.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

constexpr std::size_t headerLength = 8;
constexpr std::size_t trailerLength = 32;

std::uint64_t bigEndian(const unsigned char* bytes, std::size_t count) noexcept {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < count; ++i) number = number << 8U | bytes[i];
  return number;
}

/// Objects lie anywhere in the bytes and are reached by number through a table of their offsets, so
/// no byte is read before its place was checked.
class Reader {
 public:
  explicit Reader(std::string_view bytes) noexcept
      : bytes_(reinterpret_cast<const unsigned char*>(bytes.data())),
        size_(bytes.size()),
        valuesLeft_(BinaryPropertyList::freeValues + bytes.size()),
        textLeft_(BinaryPropertyList::freeText + 8 * bytes.size()) {}

  [[nodiscard]] std::optional<PlistValue> tree() {
    if (!readTrailer()) return std::nullopt;
    keys_.resize(objectCount_);
    return value(topObject_, 0);
  }

  [[nodiscard]] const char* problem() const noexcept { return problem_; }

 private:
  struct Object {
    unsigned kind;
    std::size_t count;    // The low half of the marker, or the length that follows it.
    std::size_t payload;  // Where the content begins.
  };

  std::nullopt_t refuse(const char* problem) noexcept {
    problem_ = problem;
    return std::nullopt;
  }

  [[nodiscard]] bool readTrailer() {
    if (size_ < headerLength + trailerLength) {
      problem_ = "it is too short";
      return false;
    }
    const unsigned char* const trailer = bytes_ + size_ - trailerLength;
    offsetSize_ = trailer[6];
    referenceSize_ = trailer[7];
    const std::uint64_t objects = bigEndian(trailer + 8, 8);
    const std::uint64_t top = bigEndian(trailer + 16, 8);
    const std::uint64_t table = bigEndian(trailer + 24, 8);
    const std::size_t tableEnd = size_ - trailerLength;
    const auto isWidth = [](std::size_t width) { return width >= 1 && width <= 8; };
    if (!isWidth(offsetSize_) || !isWidth(referenceSize_) || table < headerLength ||
        table > tableEnd || objects > (tableEnd - table) / offsetSize_ || top >= objects) {
      problem_ = "its table of objects is damaged";
      return false;
    }
    objectCount_ = static_cast<std::size_t>(objects);
    topObject_ = static_cast<std::size_t>(top);
    table_ = static_cast<std::size_t>(table);
    return true;
  }

  [[nodiscard]] bool isContent(std::size_t at, std::size_t length) const noexcept {
    return at <= table_ && length <= table_ - at;
  }

  [[nodiscard]] std::optional<Object> object(std::size_t number) {
    const std::uint64_t offset = bigEndian(bytes_ + table_ + number * offsetSize_, offsetSize_);
    if (offset < headerLength || offset >= table_) {
      return refuse("an object lies outside of it");
    }
    std::size_t at = static_cast<std::size_t>(offset);
    const unsigned marker = bytes_[at++];
    Object found{marker >> 4U, marker & 0xFU, at};
    const bool hasLongCount = found.count == 0xF && found.kind >= 0x4;
    if (!hasLongCount) return found;

    if (!isContent(at, 1) || bytes_[at] >> 4U != 0x1 || (bytes_[at] & 0xFU) > 3) {
      return refuse("a length is damaged");
    }
    const std::size_t width = std::size_t{1} << (bytes_[at] & 0xFU);
    ++at;
    if (!isContent(at, width)) return refuse("a length is damaged");
    const std::uint64_t count = bigEndian(bytes_ + at, width);
    if (count > size_) return refuse("an object is longer than the whole");
    found.count = static_cast<std::size_t>(count);
    found.payload = at + width;
    return found;
  }

  [[nodiscard]] std::optional<PlistValue> value(std::size_t number, std::size_t level) {
    const std::optional<Object> found = object(number);
    if (!found) return std::nullopt;
    switch (found->kind) {
      case 0x0:
        return boolean(*found);
      case 0x1:
        return integer(*found);
      case 0x2:
        return real(*found);
      case 0x3:
        return date(*found);
      case 0x4:
        return data(*found);
      case 0x5:
      case 0x6:
        return string(*found);
      case 0xA:
        return array(*found, level);
      case 0xD:
        return dictionary(*found, level);
      default:
        return refuse("it holds an object of an unknown kind");
    }
  }

  [[nodiscard]] std::optional<PlistValue> boolean(const Object& found) {
    if (found.count == 0x8) return PlistValue(false);
    if (found.count == 0x9) return PlistValue(true);
    return refuse("it holds an object of an unknown kind");
  }

  // One, two and four bytes have no sign; eight have; sixteen carry what eight with a sign can't.
  [[nodiscard]] std::optional<PlistValue> integer(const Object& found) {
    const std::size_t width = std::size_t{1} << found.count;
    if (found.count > 4 || !isContent(found.payload, width)) return refuse("a number is damaged");
    const unsigned char* const at = bytes_ + found.payload;
    if (width <= 8) {
      return PlistValue(static_cast<std::int64_t>(bigEndian(at, width)));
    }
    const auto high = static_cast<std::int64_t>(bigEndian(at, 8));
    const std::uint64_t low = bigEndian(at + 8, 8);
    const auto asSigned = static_cast<std::int64_t>(low);
    if (high == (asSigned < 0 ? -1 : 0)) return PlistValue(asSigned);
    return PlistValue(static_cast<double>(high) * 0x1p64 + static_cast<double>(low));
  }

  [[nodiscard]] std::optional<double> floating(const Object& found) {
    const std::size_t width = std::size_t{1} << found.count;
    if ((found.count != 2 && found.count != 3) || !isContent(found.payload, width)) {
      return refuse("a number is damaged");
    }
    const std::uint64_t bits = bigEndian(bytes_ + found.payload, width);
    if (width == 4) return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    return std::bit_cast<double>(bits);
  }

  [[nodiscard]] std::optional<PlistValue> real(const Object& found) {
    const std::optional<double> number = floating(found);
    if (!number) return std::nullopt;
    return PlistValue(*number);
  }

  [[nodiscard]] std::optional<PlistValue> date(const Object& found) {
    const std::optional<double> seconds = floating(found);
    if (!seconds) return std::nullopt;
    return PlistValue(NSDate::dateWithTimeIntervalSinceReferenceDate(*seconds));
  }

  [[nodiscard]] bool takeText(std::size_t length) noexcept {
    if (length > textLeft_) {
      problem_ = "it holds too much text";
      return false;
    }
    textLeft_ -= length;
    return true;
  }

  [[nodiscard]] std::optional<PlistValue> data(const Object& found) {
    if (!isContent(found.payload, found.count)) return refuse("data are cut off");
    if (!takeText(found.count)) return std::nullopt;
    return PlistValue(NSData(
        std::string_view(reinterpret_cast<const char*>(bytes_ + found.payload), found.count)));
  }

  /// The text of a string; `buffer` holds it where it isn't in the bytes as it stands.
  [[nodiscard]] std::optional<std::string_view> text(const Object& found, std::string& buffer) {
    const std::size_t unit = found.kind == 0x5 ? 1 : 2;
    if (found.kind != 0x5 && found.kind != 0x6) return refuse("a key is no text");
    if (!isContent(found.payload, found.count * unit)) return refuse("a text is cut off");
    if (!takeText(found.count * unit)) return std::nullopt;
    const unsigned char* const at = bytes_ + found.payload;
    if (unit == 1) {
      const std::string_view ascii(reinterpret_cast<const char*>(at), found.count);
      if (!isASCII(ascii)) return refuse("a text is damaged");
      return ascii;
    }
    std::u16string units(found.count, u'\0');
    for (std::size_t i = 0; i < found.count; ++i) {
      units[i] = static_cast<char16_t>(at[2 * i] << 8U | at[2 * i + 1]);
    }
    buffer = stringWithUTF16(units);
    return buffer;
  }

  [[nodiscard]] std::optional<PlistValue> string(const Object& found) {
    std::string buffer;
    const std::optional<std::string_view> content = text(found, buffer);
    if (!content) return std::nullopt;
    return buffer.empty() ? PlistValue(*content) : PlistValue(std::move(buffer));
  }

  /// The number of the object that a container holds in that place.
  [[nodiscard]] std::size_t reference(const Object& container, std::size_t place) const noexcept {
    const unsigned char* const at = bytes_ + container.payload + place * referenceSize_;
    return static_cast<std::size_t>(bigEndian(at, referenceSize_));
  }

  // All members are counted before the first takes memory.
  [[nodiscard]] bool isContainer(const Object& found, std::size_t references, std::size_t level) {
    if (level >= BinaryPropertyList::mostLevels) {
      problem_ = "it is nested too deeply, or an object holds itself";
    } else if (references > valuesLeft_) {
      problem_ = "it holds too many values";
    } else if (!isContent(found.payload, references * referenceSize_)) {
      problem_ = "an array or dictionary is cut off";
    } else {
      valuesLeft_ -= references;
      return true;
    }
    return false;
  }

  [[nodiscard]] std::optional<PlistValue> member(const Object& container, std::size_t place,
                                                 std::size_t level) {
    const std::size_t number = reference(container, place);
    if (number >= objectCount_) return refuse("an object is missing");
    return value(number, level + 1);
  }

  [[nodiscard]] std::optional<PlistValue> array(const Object& found, std::size_t level) {
    if (!isContainer(found, found.count, level)) return std::nullopt;
    std::vector<PlistValue> values;
    values.reserve(found.count);
    for (std::size_t i = 0; i < found.count; ++i) {
      std::optional<PlistValue> content = member(found, i, level);
      if (!content) return std::nullopt;
      values.push_back(std::move(*content));
    }
    return PlistValue(PlistArray(std::move(values)));
  }

  [[nodiscard]] std::optional<PlistValue> dictionary(const Object& found, std::size_t level) {
    if (!isContainer(found, found.count * 2, level)) return std::nullopt;
    const std::size_t first = waitingValues_.size();
    for (std::size_t i = 0; i < found.count; ++i) {
      const PlistKey* const name = key(reference(found, i));
      if (!name) return std::nullopt;
      std::optional<PlistValue> content = member(found, found.count + i, level);
      if (!content) return std::nullopt;
      waitingKeys_.push_back(*name);
      waitingValues_.push_back(std::move(*content));
    }
    PlistDictionary entries({waitingKeys_.data() + first, found.count},
                            {waitingValues_.data() + first, found.count});
    waitingKeys_.erase(waitingKeys_.begin() + static_cast<std::ptrdiff_t>(first),
                       waitingKeys_.end());
    waitingValues_.erase(waitingValues_.begin() + static_cast<std::ptrdiff_t>(first),
                         waitingValues_.end());
    return PlistValue(std::move(entries));
  }

  /// A key that many dictionaries share is read once.
  [[nodiscard]] const PlistKey* key(std::size_t number) {
    if (number >= objectCount_) {
      problem_ = "an object is missing";
      return nullptr;
    }
    std::unique_ptr<PlistKey>& known = keys_[number];
    if (!known) {
      const std::optional<Object> found = object(number);
      std::string buffer;
      const std::optional<std::string_view> name = found ? text(*found, buffer) : std::nullopt;
      if (!name) return nullptr;
      known = std::make_unique<PlistKey>(KeyName(*name));
    }
    return known.get();
  }

  const unsigned char* bytes_;
  std::size_t size_;
  std::size_t valuesLeft_;
  std::size_t textLeft_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::size_t objectCount_ = 0;
  std::size_t topObject_ = 0;
  std::size_t table_ = 0;
  std::vector<std::unique_ptr<PlistKey>> keys_;
  /// What was read of the dictionaries that aren't complete, each key with its value.
  std::vector<PlistKey> waitingKeys_;
  std::vector<PlistValue> waitingValues_;
  const char* problem_ = "";
};

}  // namespace

bool BinaryPropertyList::isBinary(std::string_view bytes) noexcept {
  return bytes.starts_with("bplist");
}

std::optional<PlistValue> BinaryPropertyList::read(std::string_view bytes, NSError* error) {
  constexpr std::string_view magic = "bplist00";
  Reader reader(bytes);
  std::optional<PlistValue> tree;
  if (bytes.starts_with(magic)) tree = reader.tree();
  if (!tree) {
    const std::string problem =
        bytes.starts_with(magic) ? reader.problem() : "it is of another form";
    fail(error, NSCocoaErrorDomain, NSPropertyListReadCorruptError,
         "The binary property list can't be read: " + problem + ".");
  }
  return tree;
}

}  // namespace zym
