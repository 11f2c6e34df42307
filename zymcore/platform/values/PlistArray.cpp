#include "zymcore/platform/values/PlistArray.h"

#include <string>

#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {

struct PlistArray::Storage : CowStorage {
  std::vector<PlistValue> values;
};

namespace {

void require(bool inRange, std::size_t index, std::size_t size) {
  if (inRange) return;
  throw NSException(NSRangeException, "index " + std::to_string(index) +
                                          " beyond bounds for array of " + std::to_string(size));
}

}  // namespace

PlistArray::PlistArray() noexcept = default;
PlistArray::PlistArray(const PlistArray&) noexcept = default;
PlistArray::PlistArray(PlistArray&&) noexcept = default;
PlistArray& PlistArray::operator=(const PlistArray&) noexcept = default;
PlistArray& PlistArray::operator=(PlistArray&&) noexcept = default;
PlistArray::~PlistArray() = default;

PlistArray::PlistArray(std::initializer_list<PlistValue> values)
    : PlistArray(std::vector<PlistValue>(values)) {}

PlistArray::PlistArray(std::vector<PlistValue> values) {
  if (!values.empty()) storage_.writable().values = std::move(values);
}

std::size_t PlistArray::size() const noexcept {
  return storage_.get() ? storage_.get()->values.size() : 0;
}

const PlistValue* PlistArray::begin() const noexcept {
  return storage_.get() ? storage_.get()->values.data() : nullptr;
}

const PlistValue* PlistArray::end() const noexcept {
  const PlistValue* first = begin();
  return first ? first + size() : nullptr;
}

const PlistValue* PlistArray::find(std::size_t index) const noexcept {
  return index < size() ? begin() + index : nullptr;
}

void PlistArray::append(PlistValue value) {
  editAll().push_back(std::move(value));
}

void PlistArray::insert(std::size_t index, PlistValue value) {
  require(index <= size(), index, size());
  std::vector<PlistValue>& values = editAll();
  values.insert(values.begin() + static_cast<std::ptrdiff_t>(index), std::move(value));
}

void PlistArray::set(std::size_t index, PlistValue value) {
  edit(index) = std::move(value);
}

void PlistArray::remove(std::size_t index) {
  require(index < size(), index, size());
  std::vector<PlistValue>& values = editAll();
  values.erase(values.begin() + static_cast<std::ptrdiff_t>(index));
}

void PlistArray::clear() {
  *this = PlistArray();
}

PlistValue& PlistArray::edit(std::size_t index) {
  require(index < size(), index, size());
  return editAll()[index];
}

std::vector<PlistValue>& PlistArray::editAll() {
  return storage_.writable().values;
}

bool operator==(const PlistArray& a, const PlistArray& b) noexcept {
  if (a.storage_.get() == b.storage_.get()) return true;
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!(*a.find(i) == *b.find(i))) return false;
  }
  return true;
}

}  // namespace zym
