#include "zymcore/reports/internal/Carbonation.h"

#include <algorithm>
#include <cmath>

#include "zymcore/documents/NSStringExtensions.h"
#include "zymcore/documents/RecipeKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/Sentences.h"

namespace zym::pages {
namespace {

constexpr double ouncesPerGallonOfGrammesPerLitre = 0.125;

struct Priming {
  std::string_view word;
  double grammesOfSugar;  // what a gram of sugar stands for
  std::string_view name;
};
constexpr Priming primings[] = {
    {"Sugar", 1, translatable("of sugar.")},
    {"Honey", 1.4, translatable("of honey.")},
    {"DME", 1.3, translatable("of dry malt extract.")},
};

// What isn't above 0, or is no number, is 0.
double atLeastNothing(double number) noexcept {
  return number > 0 ? number : 0;
}

/// Grams of sugar per litre for so many volumes, less what beer of that temperature holds already.
double primingSugar(double volumes, double celsius) {
  const double kelvin = celsius + 273.15;
  const double solubility = std::exp(21541.52 / kelvin - 574.70126 - 0.000147759 * kelvin * kelvin +
                                     89.892 * std::log(kelvin));
  return atLeastNothing((volumes + solubility / (-0.655) * 14.7) * 4.0);
}

std::string force(double volumes) {
  const double psi = atLeastNothing((volumes + 1.0375 - 2.165) / 0.07935);
  return sentence("%.0f psi/%.0f kPa %@.",
                  {whole(psi), whole(psi * 6.8947573), sentence("at 10˚C/50˚F")});
}

std::string prime(double grammesPerLitre, std::string_view carbonation) {
  for (const Priming& priming : primings) {
    if (!containsSubstring(carbonation, priming.word)) continue;
    const double grammes = grammesPerLitre * priming.grammesOfSugar;
    return sentence("%@ g/l (%@ oz/gal) %@",
                    {decimals(grammes, 1), decimals(grammes * ouncesPerGallonOfGrammesPerLitre, 1),
                     sentence(priming.name)});
  }
  return containsSubstring(carbonation, "Wort") ? sentence("krausen.") : "";
}

}  // namespace

std::string carbonationText(const PlistDictionary& recipe) {
  constexpr double hardlyAny = 0.01;
  constexpr double leastSugar = 0.2;
  const std::string_view carbonation = recipe.stringValue(keys::Carbonation);
  const double volumes = recipe.doubleValue(keys::CarbonationVolumes);
  if (carbonation == words::Nothing || !(volumes > hardlyAny)) return "";
  const std::string start = sentence("Carbonate to %@ volumes using", {decimals(volumes, 1)}) + " ";
  if (containsSubstring(carbonation, "Force")) return start + force(volumes);
  const double sugar = primingSugar(volumes, recipe.doubleValue(keys::FermentationTemperature));
  if (sugar < leastSugar) {
    return sentence("The desired carbonation level is below that possible from priming");
  }
  return start + prime(sugar, carbonation);
}

}  // namespace zym::pages
