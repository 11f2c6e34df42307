#pragma once

#include <string>
#include <string_view>

namespace zym {

/// Conversions between units, value in, value out. Weights and volumes multiply one way and divide
/// by the same factor the other way.
class ZYMUnitConverter {
 public:
  ZYMUnitConverter() = delete;

  static constexpr double grammesInKilogramme = 1000;
  static constexpr double grammesInOunce = 28.35;
  static constexpr double grammesInPound = 453.59;
  static constexpr double millilitresInLitre = 1000;
  static constexpr double millilitresInImperialPint = 568.26;
  static constexpr double millilitresInImperialGallon = 4546.09;
  static constexpr double millilitresInUSPint = 473.18;
  static constexpr double millilitresInUSQuart = 946.35;
  static constexpr double millilitresInUSGallon = 3785.41;
  static constexpr double millilitresInUSBarrel = 117347.77;
  static constexpr double millilitresInUKBarrel = 163659.24;

  // clang-format off
  [[nodiscard]] static constexpr double convertKilogrammesToGrammes(double v) { return v * grammesInKilogramme; }
  [[nodiscard]] static constexpr double convertGrammesToKilogrammes(double v) { return v / grammesInKilogramme; }
  [[nodiscard]] static constexpr double convertOuncesToGrammes(double v) { return v * grammesInOunce; }
  [[nodiscard]] static constexpr double convertGrammesToOunces(double v) { return v / grammesInOunce; }
  [[nodiscard]] static constexpr double convertPoundsToGrammes(double v) { return v * grammesInPound; }
  [[nodiscard]] static constexpr double convertGrammesToPounds(double v) { return v / grammesInPound; }
  [[nodiscard]] static constexpr double convertLitresToMillilitres(double v) { return v * millilitresInLitre; }
  [[nodiscard]] static constexpr double convertMillilitresToLitres(double v) { return v / millilitresInLitre; }
  [[nodiscard]] static constexpr double convertImperialPintsToMillilitres(double v) { return v * millilitresInImperialPint; }
  [[nodiscard]] static constexpr double convertMillilitresToImperialPints(double v) { return v / millilitresInImperialPint; }
  [[nodiscard]] static constexpr double convertImperialGallonsToMillilitres(double v) { return v * millilitresInImperialGallon; }
  [[nodiscard]] static constexpr double convertMillilitresToImperialGallons(double v) { return v / millilitresInImperialGallon; }
  [[nodiscard]] static constexpr double convertUSPintsToMillilitres(double v) { return v * millilitresInUSPint; }
  [[nodiscard]] static constexpr double convertMillilitresToUSPints(double v) { return v / millilitresInUSPint; }
  [[nodiscard]] static constexpr double convertUSQuartsToMillilitres(double v) { return v * millilitresInUSQuart; }
  [[nodiscard]] static constexpr double convertMillilitresToUSQuarts(double v) { return v / millilitresInUSQuart; }
  [[nodiscard]] static constexpr double convertUSGallonsToMillilitres(double v) { return v * millilitresInUSGallon; }
  [[nodiscard]] static constexpr double convertMillilitresToUSGallons(double v) { return v / millilitresInUSGallon; }
  [[nodiscard]] static constexpr double convertUSBarrelsToMillilitres(double v) { return v * millilitresInUSBarrel; }
  [[nodiscard]] static constexpr double convertMillilitresToUSBarrels(double v) { return v / millilitresInUSBarrel; }
  [[nodiscard]] static constexpr double convertUKBarrelsToMillilitres(double v) { return v * millilitresInUKBarrel; }
  [[nodiscard]] static constexpr double convertMillilitresToUKBarrels(double v) { return v / millilitresInUKBarrel; }

  [[nodiscard]] static constexpr double convertCelciusToFahrenheit(double c) { return c / 5 * 9 + 32; }
  [[nodiscard]] static constexpr double convertFahrenheitToCelcius(double f) { return (f - 32) / 9 * 5; }
  [[nodiscard]] static constexpr double convertPlatoToSG(double p) { return 260 / (260 - p); }
  [[nodiscard]] static constexpr double convertSGToPlato(double sg) { return 260 - 260 / sg; }
  // clang-format on

  /// The text up to its first character that is no digit, "-", "." or "+". An empty text gives
  /// "0.0". A comma ends the number: a localized text must be delocalized first.
  [[nodiscard]] static std::string trimUnitFromNumber(std::string_view text);
};

}  // namespace zym
