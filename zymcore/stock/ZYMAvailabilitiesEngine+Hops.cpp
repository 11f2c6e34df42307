#include <algorithm>
#include <array>
#include <optional>

#include "zymcore/documents/BatchKeys.h"
#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/documents/ZYMLocalization.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/internal/Lots.h"

namespace zym {
namespace {

/// An addition that gives more than this share of the bitterness is there for its bitterness.
constexpr double bitteringParts = 5.0;
/// Grams by which an alpha is worked out.
constexpr double hardlyAny = 0.01;

enum Form : std::size_t { whole, pellet, either };

bool isNamed(const PlistDictionary& hop, std::string_view word) {
  return containsSubstring(hop.stringValue(keys::Form), word);
}

// What is not said to be pellets counts as whole hops.
Form formOf(const PlistDictionary& hop) {
  return isNamed(hop, words::Pellet) ? pellet : whole;
}

// Taken as whole is only what is said to be.
bool isOf(const PlistDictionary& lot, Form form) {
  return form == either || isNamed(lot, form == pellet ? words::Pellet : words::Whole);
}

constexpr Form otherThan(Form form) {
  return form == pellet ? whole : pellet;
}

struct Held {
  double amount = 0;
  double alphaMass = 0;
};

/// By form.
std::array<Held, 3> heldIn(const PlistDictionary& hop) {
  std::array<Held, 3> held;
  for (const PlistDictionary& lot : hop.rows(keys::Batches)) {
    const double amount = lot.doubleValue(keys::AmountInStock);
    const double alphaMass = amount * lot.doubleValue(keys::Alpha);
    for (const Form form : {formOf(lot), either}) {
      held[form].amount += amount;
      held[form].alphaMass += alphaMass;
    }
  }
  return held;
}

/// How much alpha of the other form does what one of this does, by the user's utilisations of the
/// forms. Loose whole hops are the measure of the others.
struct Conversion {
  std::optional<KeyName> ofPreferred;
  std::optional<KeyName> ofOther;
};
constexpr Conversion conversions[2][2] = {
    // whole: loose, bagged
    {{std::nullopt, keys::PelletHopAdjustment},
     {keys::BaggedHopAdjustment, keys::BaggedPelletHopAdjustment}},
    // pellets: loose, bagged
    {{keys::PelletHopAdjustment, std::nullopt},
     {keys::BaggedPelletHopAdjustment, keys::BaggedHopAdjustment}},
};

double adjustment(const std::optional<KeyName>& key) {
  return key ? NSUserDefaults::standardUserDefaults().doubleForKey(*key) : 1.0;
}

double conversionFrom(Form preferred, bool isBagged) {
  const Conversion& conversion = conversions[preferred][isBagged ? 1 : 0];
  return adjustment(conversion.ofPreferred) / adjustment(conversion.ofOther);
}

struct Taken {
  std::array<double, 2> ofForm{};
  double amount = 0;
  double alphaMass = 0;

  void add(const PlistDictionary& lot, double taken) {
    amount += taken;
    alphaMass += taken * lot.doubleValue(keys::Alpha);
    ofForm[formOf(lot)] += taken;
  }
  /// What the addition is made of, of which there is more.
  [[nodiscard]] Form formWhenChosen(Form chosen) const {
    if (chosen != either) return chosen;
    return ofForm[pellet] > ofForm[whole] ? pellet : whole;
  }
};

Taken takeAlphaMass(PlistDictionary& hop, Form chosen, double wanted) {
  Taken taken;
  for (PlistDictionary* lot : lots::soonestFirst(hop)) {
    if (!(wanted > 0)) break;
    if (!isOf(*lot, chosen)) continue;
    const double alpha = lot->doubleValue(keys::Alpha);
    const double inStock = lot->doubleValue(keys::AmountInStock);
    const bool isEnough = inStock * alpha > wanted;
    const double amount = isEnough ? wanted / alpha : inStock;
    wanted = isEnough ? 0 : wanted - inStock * alpha;
    lot->setNumber(keys::Amount, amount);
    taken.add(*lot, amount);
  }
  return taken;
}

Taken takeWeight(PlistDictionary& hop, Form chosen, double wanted) {
  Taken taken;
  for (PlistDictionary* lot : lots::soonestFirst(hop)) {
    if (!isOf(*lot, chosen)) continue;
    const double amount = std::min(wanted, lot->doubleValue(keys::AmountInStock));
    lot->setNumber(keys::Amount, amount);
    taken.add(*lot, amount);
    wanted -= amount;
  }
  return taken;
}

}  // namespace

void ZYMAvailabilitiesEngine::allotHop(PlistDictionary& hop, const PlistDictionary& item) {
  const PlistDictionary* brewed = recipe();
  const double bitterness = brewed ? brewed->doubleValue(keys::ExpectedIBU) : 0;
  if (hop.doubleValue(keys::IBUForAddition) > bitterness / bitteringParts) {
    allotHopByAlphaMass(hop, item);
  } else {
    allotHopByWeight(hop, item);
  }
}

void ZYMAvailabilitiesEngine::allotHopByAlphaMass(PlistDictionary& hop,
                                                  const PlistDictionary& item) {
  const std::array<Held, 3> held = heldIn(hop);
  double required = hop.doubleValue(keys::Alpha) * hop.doubleValue(keys::Amount);
  if (required > held[either].alphaMass) {
    hop.remove(keys::Batches);
    return;
  }
  const Form preferred = formOf(hop);
  Form chosen = preferred;
  if (!(held[preferred].alphaMass >= required)) {
    const double converted = required * conversionFrom(preferred, isNamed(hop, "Bagged"));
    chosen = otherThan(preferred);
    if (converted > held[chosen].alphaMass) {
      chosen = either;  // No one form, so nothing to convert.
    } else {
      required = converted;
    }
  }
  const Taken taken = takeAlphaMass(hop, chosen, required);
  hop.setNumber(keys::Amount, taken.amount);
  hop.setNumber(keys::Alpha, taken.amount == 0 ? 0 : required / taken.amount);
  const Form form = taken.formWhenChosen(chosen);
  if (form != preferred) {
    changeForm(hop, form == pellet, item,
               "The hop form for an addition of %@ hops has changed as there was insufficient of "
               "the preferred form in stock. It has been changed to %@");
  }
  recalculateRecipe();
}

void ZYMAvailabilitiesEngine::allotHopByWeight(PlistDictionary& hop, const PlistDictionary& item) {
  const std::array<Held, 3> held = heldIn(hop);
  const double amount = hop.doubleValue(keys::Amount);
  if (amount > held[either].amount) {
    hop.remove(keys::Batches);
    return;
  }
  const Form preferred = formOf(hop);
  Form chosen = preferred;
  if (!(held[preferred].amount >= amount)) {
    chosen = otherThan(preferred);
    if (amount > held[chosen].amount) chosen = either;
  }
  const Taken taken = takeWeight(hop, chosen, amount);
  if (amount > hardlyAny) {
    hop.setNumber(keys::Alpha, taken.alphaMass / amount);
    recalculateRecipe();
  }
  const Form form = taken.formWhenChosen(chosen);
  if (form != preferred) {
    // The figures stay as they are: they follow with the next recalculation.
    changeForm(hop, form == pellet, item,
               "The form of %@ hops has changed to %@ as there was insufficient of the preferred "
               "form in stock.");
  }
}

void ZYMAvailabilitiesEngine::changeForm(PlistDictionary& hop, bool toPellets,
                                         const PlistDictionary& item, std::string_view message) {
  const std::size_t index = (isNamed(hop, "Bagged") ? 1U : 0U) + (toPellets ? 2U : 0U);
  const std::string_view form = words::hopForms[index];
  hop.set(keys::Form, form);
  messages_.push_back(ZYMAvailabilitiesAdvisory::advisoryWithTitle_message(
      Localized_String("Hop Form Changed"),
      stringWithFormat(Localized_String(message),
                       {item.stringValue(keys::Ingredient), Localized_String(form)})));
}

}  // namespace zym
