#include "zymcore/reports/internal/Mash.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "zymcore/documents/DefaultsKeys.h"
#include "zymcore/documents/Vocabularies.h"
#include "zymcore/platform/host/NSUserDefaults.h"
#include "zymcore/reports/PageKeys.h"
#include "zymcore/reports/internal/PageFigures.h"
#include "zymcore/reports/internal/Sentences.h"
#include "zymcore/transformers/ZYMTemperatureValueTransformer.h"
#include "zymcore/transformers/ZYMVolumeValueTransformer.h"

namespace zym::pages {
namespace {

constexpr double heatOfGrain = 0.32;

std::string volume(double ml) {
  return shown<ZYMVolumeValueTransformer>(ml);
}
std::string temperature(double degrees) {
  return shown<ZYMTemperatureValueTransformer>(degrees);
}

std::string paragraph(const std::string& text) {
  return "<p>" + text + "</p>";
}

}  // namespace

struct Mash::StepText {
  std::string_view stepType;
  std::string (Mash::*text)(std::size_t step);
};
const Mash::StepText Mash::stepTexts[] = {
    {words::RestAt, &Mash::rest},
    {words::RaiseByInfusion, &Mash::infusion},
    {words::PullDecoction, &Mash::decoction},
    {words::RaiseByDirectHeating, &Mash::directHeating},
    {words::MashOut, &Mash::mashOut},
};

Mash::Mash(const PlistDictionary& batch, const PlistDictionary& recipe)
    : batch_(batch),
      recipe_(recipe),
      boilingPoint_(NSUserDefaults::standardUserDefaults().doubleForKey(keys::BoilingPoint)),
      preBoilVolume_(recipe.doubleValue(keys::PreBoilWortVolume)) {
  const std::string_view mashType = recipe.stringValue(keys::MashType);
  isMashed_ = mashType == words::FullMash || mashType == words::ExtractWithMiniMash;
  if (const PlistDictionary* schedule = recipe.dictionary(keys::MashSchedule)) {
    for (const PlistDictionary& step : schedule->rows(keys::Steps)) steps_.push_back(&step);
  }
  for (const PlistDictionary& addition : recipe.rows(keys::FermentableIngredients)) {
    if (addition.stringValue(keys::When) == words::InMashSteeped) {
      grain_ += addition.doubleValue(keys::Amount);
    }
  }
  water_ = batch.doubleValue(keys::WaterGrainRatio) * grain_;
  heat_ = heatOfGrain * grain_ + batch.doubleValue(keys::MTThermalMass);
}

double Mash::temperatureOfStep(std::size_t i) const {
  return steps_[i]->doubleValue(keys::Temperature);
}

void Mash::addStrike(PlistDictionary& values) const {
  const double room = batch_.doubleValue(keys::RoomTemperature);
  const double rest = steps_.empty() ? room : temperatureOfStep(0);
  values.set(keys::StrikeWaterVolume, volume(water_));
  values.set(keys::StrikeWaterTemperature, temperature(rest + (rest - room) * heat_ / water_));
  values.set(keys::FirstRestTemperature, steps_.empty() ? "" : temperature(rest));
  values.set(keys::FirstRestTime,
             steps_.empty() ? "" : whole(std::round(steps_.front()->doubleValue(keys::Duration))));
}

void Mash::addSteps(PlistDictionary& values) {
  std::string text;
  for (std::size_t i = 1; isMashed_ && i < steps_.size(); ++i) {
    const std::string_view type = steps_[i]->stringValue(keys::StepType);
    const auto* found = std::ranges::find(stepTexts, type, &StepText::stepType);
    if (found != std::end(stepTexts)) text += (this->*found->text)(i);
  }
  values.set(keys::SubsequentMashSteps, text);
}

std::string Mash::rest(std::size_t i) {
  return " " +
         sentence(
             "and then rest at %@ for %@ minutes.",
             {temperature(temperatureOfStep(i)), whole(steps_[i]->doubleValue(keys::Duration))}) +
         "</p>";
}

std::string Mash::infusion(std::size_t i) {
  const double from = temperatureOfStep(i - 1);
  const double to = temperatureOfStep(i);
  const double added = (to - from) * (water_ / 1000 + heat_ / 1000) / (boilingPoint_ - to) * 1000;
  water_ += added;
  return "<p>" + sentence("Raise the temperature to %@ by adding %@ of boiling water",
                          {temperature(to), volume(added)});
}

std::string Mash::decoction(std::size_t i) {
  const double from = temperatureOfStep(i - 1);
  const double to = temperatureOfStep(i);
  const double pulled = (heat_ + water_) / ((to - boilingPoint_) / (from - to) + 1);
  return "<p>" +
         sentence(
             "Pull a decoction of %@, raise to boil, and boil for a total of %@ minutes. Add "
             "back to mash to raise the temperature to %@",
             {volume(pulled), whole(steps_[i]->doubleValue(keys::Duration)), temperature(to)});
}

std::string Mash::directHeating(std::size_t i) {
  return "<p>" + sentence("Raise the temperature to %@", {temperature(temperatureOfStep(i))}) +
         " " +
         sentence("by direct heating over %@ minutes,",
                  {whole(steps_[i]->doubleValue(keys::Duration))});
}

std::string Mash::mashOut(std::size_t i) {
  return "<p>" + sentence("Raise the temperature to %@", {temperature(temperatureOfStep(i))}) +
         " " +
         sentence("over %@ minutes and mash out.",
                  {whole(steps_[i]->doubleValue(keys::Duration))}) +
         "</p>";
}

void Mash::addSparge(PlistDictionary& values) {
  for (const KeyName key :
       {keys::BatchSpargeSteps, keys::BatchSpargeMashFinalLine, keys::SpargeVolume}) {
    values.set(key, "");
  }
  const std::string_view method = batch_.stringValue(keys::SpargeMethod);
  if (!isMashed_) return;
  const std::string wort = volume(preBoilVolume_);
  if (method == words::BatchSparge) {
    values.set(keys::BatchSpargeSteps, batchSpargeSteps());
    values.set(keys::BatchSpargeMashFinalLine,
               paragraph(sentence("Run off to collect a total of %@ of wort.", {wort})));
  } else if (method == words::NoSparge) {
    values.set(keys::BatchSpargeMashFinalLine,
               paragraph(sentence("Remove grains to leave %@ of wort.", {wort})));
  } else if (method == words::FlySparge) {
    const double sparged = preBoilVolume_ - (water_ - grain_);
    values.set(keys::SpargeVolume, volume(sparged));
    water_ += sparged;
  }
}

// Two runs off of the same size, as far as the mash doesn't give more at the first already.
std::string Mash::batchSpargeSteps() {
  const double half = preBoilVolume_ * 0.5;
  const double first = grain_ + half - water_;
  const std::string at = temperature(steps_.empty() ? 0 : temperatureOfStep(steps_.size() - 1));
  double second = half;
  std::string text;
  if (first < 0) {
    text = paragraph(sentence("Run off the hot wort and collect."));
    second += first;
  } else {
    text = paragraph(sentence("Add %@ of water at %@, mix and run off.", {volume(first), at}));
    water_ += first;
  }
  text += "\n";
  if (second > 0) {
    text += paragraph(sentence("Add a further %@ of water at %@ and mix.", {volume(second), at}));
    text += "\n";
    water_ += second;
  }
  return text;
}

void Mash::addTotalWater(PlistDictionary& values) const {
  constexpr double hardlyAny = 0.1;
  const double added = recipe_.doubleValue(keys::VolumeWaterAdded);
  values.set(keys::TotalWaterRequired,
             volume(std::max(grain_ + preBoilVolume_ + added, water_ + added)));
  values.set(keys::AdditionalWaterText,
             added < hardlyAny ? ""
                               : " " + sentence("Expect to dilute with %@ of water to obtain this.",
                                                {volume(added)}));
}

}  // namespace zym::pages
