#include "zymcore/library/ZYMStyles.h"

#include <algorithm>
#include <memory>
#include <tuple>

#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSException.h"
#include "zymcore/platform/values/NSNotFound.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/ProcessTearDown.h"
#include "zymcore/store/Resources.h"
#include "zymcore/store/ZYMCachingModel.h"

namespace zym {
namespace {

struct Guidelines {
  std::string_view title;
  std::string_view resource;
};
constexpr std::array<Guidelines, 2> allGuidelines = {
    {{"BJCP 2008", "BJCPStyles-2008"}, {"BJCP 2015", "BJCPStyles-2015"}}};

constexpr KeyName Styles{"Styles"};

constexpr KeyName bounds[] = {keys::CarbonationVolumes,
                              keys::MaxABV,
                              keys::MaxColor,
                              keys::MaxFG,
                              keys::MaxIBU,
                              keys::MaxOG,
                              keys::MinABV,
                              keys::MinColor,
                              keys::MinFG,
                              keys::MinIBU,
                              keys::MinOG};

std::size_t positionOf(std::int64_t guidelines) {
  return guidelines == 0 ? 0 : 1;
}

// "10A" sorts after "2B": by its number, then by what follows it.
struct Place {
  std::int64_t number;
  std::u16string letters;
  std::u16string name;
  auto operator<=>(const Place&) const = default;
};

bool isLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         static_cast<unsigned char>(c) >= 0x80;
}

Place placeOf(const PlistDictionary& style) {
  const std::string_view category = withoutLeadingWhiteSpace(style.stringValue(keys::Category));
  const std::size_t digits = std::min(category.find_first_not_of("0123456789"), category.size());
  const std::string_view rest = withoutLeadingWhiteSpace(category.substr(digits));
  const auto* const end = std::find_if_not(rest.begin(), rest.end(), isLetterOrDigit);
  return {integerValue(category.substr(0, digits)),
          UTF16String(rest.substr(0, static_cast<std::size_t>(end - rest.begin()))),
          UTF16String(uppercaseString(style.stringValue(keys::Name)))};
}

std::unique_ptr<ZYMStyles>& instance() {
  static auto* instance = new std::unique_ptr<ZYMStyles>();
  return *instance;
}

TearDownPlace placeAmongServices(&ZYMStyles::tearDown);

}  // namespace

ZYMStyles& ZYMStyles::sharedInstance() {
  std::unique_ptr<ZYMStyles>& styles = instance();
  if (!styles) {
    styles.reset(new ZYMStyles());
    placeAmongServices.take();
  }
  return *styles;
}

void ZYMStyles::tearDown() {
  instance().reset();
}

std::int64_t ZYMStyles::userPreferredStyleGuidelines() {
  const NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  if (!defaults.objectForKey(ZYMPreferredStyleGuidelinesKey)) return 1;
  const std::int64_t preferred = defaults.integerForKey(ZYMPreferredStyleGuidelinesKey);
  return preferred >= 2 ? 1 : preferred;
}

std::string ZYMStyles::titleForStyleGuidelines(std::int64_t guidelines) {
  return std::string(allGuidelines[positionOf(guidelines)].title);
}

std::vector<std::string> ZYMStyles::allTitlesForStyleGuidelines() {
  return {titleForStyleGuidelines(0), titleForStyleGuidelines(1)};
}

std::string ZYMStyles::fullNameForStyle(const PlistDictionary& style) {
  const std::string name(style.stringValue(keys::Name));
  const std::string_view category = style.stringValue(keys::Category);
  return category.empty() ? name : std::string(category) + " - " + name;
}

PlistDictionary ZYMStyles::noChosenStyle() {
  PlistDictionary style{{keys::UUID, ""},
                        {keys::Name, Localized_String("No Style Chosen")},
                        {keys::Category, ""},
                        {keys::Type, " None"}};
  for (const KeyName bound : bounds) style.set(bound, "0");
  return style;
}

void ZYMStyles::loadIfNecessaryForGuidelines(std::int64_t guidelines) {
  std::optional<Guidelines>& known = data_[positionOf(guidelines)];
  if (known) return;
  const std::optional<PlistDictionary> file =
      resourceDictionary(allGuidelines[positionOf(guidelines)].resource);
  const PlistArray* found = file ? file->array(Styles) : nullptr;
  if (!found) return;
  // Only records are styles.
  PlistArray styles;
  std::vector<std::string> names;
  for (const PlistDictionary& style : file->rows(Styles)) {
    styles.append(style);
    names.emplace_back(style.stringValue(keys::Name));
  }
  known = Guidelines{std::move(styles), SimilarNames(std::move(names))};
}

const PlistArray* ZYMStyles::stylesIn(std::int64_t guidelines) {
  loadIfNecessaryForGuidelines(guidelines);
  const std::optional<Guidelines>& known = data_[positionOf(guidelines)];
  return known ? &known->styles : nullptr;
}

std::optional<PlistDictionary> ZYMStyles::firstStyleWith(KeyName key, std::string_view text,
                                                         std::int64_t guidelines) {
  const PlistArray* styles = stylesIn(guidelines);
  for (const PlistDictionary& style : PlistRows(styles)) {
    const std::string* own = style.string(key);
    if (own && *own == text) return style;
  }
  return std::nullopt;
}

std::optional<PlistDictionary> ZYMStyles::styleWithName_inGuidelines(std::string_view name,
                                                                     std::int64_t guidelines) {
  return firstStyleWith(keys::Name, name, guidelines);
}

std::optional<PlistDictionary> ZYMStyles::styleWithUUID_inGuidelines(std::string_view uuid,
                                                                     std::int64_t guidelines) {
  return firstStyleWith(keys::UUID, uuid, guidelines);
}

PlistArray ZYMStyles::allStylesInGuidelines(std::int64_t guidelines) {
  const PlistArray* styles = stylesIn(guidelines);
  std::vector<std::pair<Place, const PlistDictionary*>> places;
  for (const PlistDictionary& style : PlistRows(styles))
    places.emplace_back(placeOf(style), &style);
  std::stable_sort(places.begin(), places.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<PlistValue> sorted;
  sorted.reserve(places.size());
  for (const auto& [place, style] : places) sorted.emplace_back(*style);
  return PlistArray(std::move(sorted));
}

std::vector<std::string> ZYMStyles::allStyleNamesInGuidelines(std::int64_t guidelines) {
  std::vector<std::string> names;
  const PlistArray styles = allStylesInGuidelines(guidelines);
  for (const PlistDictionary& style : PlistRows(&styles)) names.push_back(fullNameForStyle(style));
  return names;
}

std::optional<PlistDictionary> ZYMStyles::styleWithNameMostSimilarToString_inGuidelines(
    std::string_view text, std::int64_t guidelines) {
  const PlistArray* styles = stylesIn(guidelines);
  if (!styles) return std::nullopt;
  const std::int64_t index = data_[positionOf(guidelines)]->names.indexOfMostSimilarTo(text);
  if (index < 0) {
    throw NSException(NSRangeException, "index -1 beyond bounds for array of styles");
  }
  return *styles->find(static_cast<std::size_t>(index))->dictionary();
}

std::int64_t ZYMStyles::indexOfMostSimilarObjectToString_inArray_forKey(
    std::string_view text, const PlistArray* array, const std::optional<KeyName>& key) {
  return ZYMCachingModel::indexOfMostSimilarObjectToString_inArray_forKey(text, array, key);
}

}  // namespace zym
