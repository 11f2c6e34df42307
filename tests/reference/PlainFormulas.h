#pragma once

#include <cstdint>
#include <string_view>

#include "tests/reference/PlainDocuments.h"

namespace zym::reference {

[[nodiscard]] double poundsOf(double grammes);
[[nodiscard]] double gallonsOf(double millilitres);
[[nodiscard]] double platoOf(double sg);
[[nodiscard]] double gravityOf(double plato);

[[nodiscard]] double ebcOf(double srm);
/// Morey, Daniels and Mosher.
[[nodiscard]] double colorOf(double mcu, std::int64_t formula);
/// SRM in single precision, by whichever formula.
[[nodiscard]] double beerColor(double mcu, double viggiano, double direct, std::int64_t formula);

[[nodiscard]] double effectiveTime(double minutes, double temperature, const PlainDefaults& user);
[[nodiscard]] double utilisation(double gravity, int form, double minutes,
                                 const PlainDefaults& user);
/// IBU of an addition as it stands in its row, before any dilution.
[[nodiscard]] double bitterness(const PlainHop& hop, const PlainRecipe& recipe, double gravity,
                                double finalVolume, const PlainDefaults& user);

[[nodiscard]] double apparentAttenuation(double og, double fg);
[[nodiscard]] double realAttenuation(double og, double fg);
[[nodiscard]] double alcoholByWeight(double og, double fg);
[[nodiscard]] double alcoholByVolume(double og, double fg);

[[nodiscard]] double hydrometerOffset(double temperature);

}  // namespace zym::reference
