#include "zymcore/platform/text/NSLocale.h"

#include <unicode/dcfmtsym.h>
#include <unicode/locid.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>

#include "zymcore/platform/values/ProcessTearDown.h"

namespace zym {
namespace {

std::string text(const icu::UnicodeString& units) {
  std::string utf8;
  return units.toUTF8String(utf8);
}

std::string canonicalIdentifier(std::string_view identifier) {
  constexpr std::size_t longestIdentifier = 150;
  const std::string given(identifier.substr(0, longestIdentifier));
  return icu::Locale::createCanonical(given.c_str()).getName();
}

struct CurrentLocale {
  std::mutex mutex;
  std::optional<NSLocale> locale;
};

CurrentLocale& current() {
  static CurrentLocale locale;
  return locale;
}

struct Symbols {
  std::string decimalSeparator;
  std::string minusSign;
};

// Loading the symbols takes far longer than scanning a number by them.
Symbols symbolsOf(const std::string& identifier) {
  constexpr std::size_t mostKept = 32;
  static std::mutex mutex;
  static std::map<std::string, Symbols> kept;
  const std::lock_guard lock(mutex);
  const auto found = kept.find(identifier);
  if (found != kept.end()) return found->second;

  UErrorCode status = U_ZERO_ERROR;
  const icu::DecimalFormatSymbols symbols(icu::Locale(identifier.c_str()), status);
  Symbols result{".", "-"};
  if (U_SUCCESS(status)) {
    using Format = icu::DecimalFormatSymbols;
    result = {text(symbols.getConstSymbol(Format::kDecimalSeparatorSymbol)),
              text(symbols.getConstSymbol(Format::kMinusSignSymbol))};
  }
  if (kept.size() == mostKept) kept.clear();
  return kept[identifier] = result;
}

}  // namespace

NSLocale::NSLocale(std::string_view localeIdentifier)
    : identifier_(canonicalIdentifier(localeIdentifier)) {}

NSLocale NSLocale::currentLocale() {
  const std::lock_guard lock(current().mutex);
  std::optional<NSLocale>& locale = current().locale;
  if (!locale) locale = NSLocale(icu::Locale::getDefault().getName());
  return *locale;
}

void NSLocale::setCurrentLocale(std::string_view localeIdentifier) {
  static TearDownPlace place([] { setCurrentLocale(""); });
  if (!localeIdentifier.empty()) place.take();
  const std::lock_guard lock(current().mutex);
  current().locale.reset();
  if (!localeIdentifier.empty()) current().locale = NSLocale(localeIdentifier);
}

std::vector<std::string> NSLocale::languageIdentifiers() const {
  std::vector<std::string> identifiers;
  std::string identifier = identifier_.substr(0, identifier_.find('@'));
  while (!identifier.empty()) {
    identifiers.push_back(identifier);
    const std::size_t last = identifier.rfind('_');
    if (last == std::string::npos) break;
    std::string withHyphens = identifier;
    std::replace(withHyphens.begin(), withHyphens.end(), '_', '-');
    identifiers.push_back(std::move(withHyphens));
    identifier.resize(last);
  }
  return identifiers;
}

std::string NSLocale::decimalSeparator() const {
  return symbolsOf(identifier_).decimalSeparator;
}

std::string NSLocale::minusSign() const {
  return symbolsOf(identifier_).minusSign;
}

}  // namespace zym
