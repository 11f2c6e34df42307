// What the engine allots, blends and writes down, against a second writing of it.

#include "tests/stock/SecondWriting.h"
#include "tests/stock/Shelf.h"
#include "zymcore/calculations/ZYMBeerCalculations.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"

namespace zym {
namespace {

using second::Addition;
using second::Brew;
using second::Item;
using second::Lot;
using second::Shelf;

constexpr second::Adjustments adjustments{1.1, 0.9, 0.95};

std::vector<Addition> Brew::*const lists[] = {&Brew::fermentables, &Brew::hops, &Brew::others,
                                              &Brew::yeasts};

class Source {
 public:
  explicit Source(unsigned seed) : engine_(seed) {}

  std::size_t below(std::size_t count) { return engine_() % count; }
  bool once(std::size_t in) { return below(in) == 0; }
  template <std::size_t count>
  std::string oneOf(const char* const (&texts)[count]) {
    return texts[below(count)];
  }
  std::string amount(double most) {
    if (once(12))
      return oneOf({"0", "0.0", "", "abc", "-3", "-0.4", "0.0004", "1e3", " 7", "5.5 kg"});
    if (once(4)) return std::to_string(below(static_cast<std::size_t>(most)) + 1);
    return second::text(std::uniform_real_distribution<>(0, most)(engine_));
  }
  std::string lotForm() {
    return oneOf({"Whole", "Pellet", "Pellets", "PELLETS", "Whole Pellets", "plug", "", "whole"});
  }

 private:
  std::mt19937 engine_;
};

PlistDictionary recordOf(const Lot& lot) {
  return {{keys::UUID, lot.uuid},
          {keys::AmountInStock, lot.stock},
          {keys::Cost, lot.cost},
          {keys::Alpha, lot.alpha},
          {keys::Extract, lot.extract},
          {keys::Color, lot.color},
          {keys::Form, lot.form},
          {keys::Amount, lot.amount},
          {keys::ExpiresOn, NSDate::dateWithTimeIntervalSinceReferenceDate(lot.expires)}};
}

PlistArray recordsOf(const std::vector<Addition>& list) {
  PlistArray result;
  for (const Addition& addition : list) {
    PlistDictionary record{{keys::UUID, addition.uuid},
                           {keys::Amount, addition.amount},
                           {keys::Alpha, addition.alpha},
                           {keys::Extract, addition.extract},
                           {keys::Color, addition.color},
                           {keys::Form, addition.form},
                           {keys::YeastAmountType, addition.amountType},
                           {keys::IBUForAddition, addition.ibu},
                           {keys::When, "60 Min From End"},
                           {keys::Minutes, "60"},
                           {keys::IngredientDeducted, addition.deducted ? "1" : "0"}};
    if (addition.batches) {
      PlistArray lots;
      for (const Lot& lot : *addition.batches) lots.append(recordOf(lot));
      record.set(keys::Batches, std::move(lots));
    }
    result.append(std::move(record));
  }
  return result;
}

/// What is compared of additions and lots.
std::string linesOf(const PlistArray& records) {
  std::string result;
  for (const PlistDictionary& record : PlistRows(&records)) {
    for (const KeyName key : {keys::UUID, keys::Amount, keys::Alpha, keys::Extract, keys::Color,
                              keys::Form, keys::IBUForAddition, keys::AmountInStock, keys::Cost}) {
      result.append(record.stringValue(key)).append("|");
    }
    result += record.boolValue(keys::IngredientDeducted) ? "deducted\n" : "\n";
    if (const PlistArray* lots = record.array(keys::Batches))
      result += "{" + linesOf(*lots) + "}\n";
  }
  return result;
}

/// A batch of what the brew is of; with volumes its bitterness is worked out, else it stays.
PlistDictionary batchOf(const Brew& brew, bool hasVolumes) {
  PlistDictionary recipe{{keys::ExpectedIBU, brew.expectedIBU}};
  for (const KeyName volume :
       {keys::PreBoilWortVolume, keys::FinalWortVolume, keys::VolumeAtPitching,
        keys::FinalBatchVolume, keys::VolumeToFermenter}) {
    if (hasVolumes) recipe.set(volume, "20000");
  }
  for (std::size_t i = 0; i < 4; ++i) recipe.set(keys::additions[i], recordsOf(brew.*lists[i]));
  return {{keys::UUID, "none"}, {keys::ModifiedRecipe, std::move(recipe)}};
}

void recalculate(Brew& brew) {
  PlistDictionary batch = batchOf(brew, true);
  PlistDictionary& recipe = *batch.editDictionary(keys::ModifiedRecipe);
  ZYMBeerCalculations::recalculateBeerRecipe(recipe);
  brew.expectedIBU = recipe.stringValue(keys::ExpectedIBU);
  std::size_t i = 0;
  for (const PlistDictionary& hop : recipe.rows(keys::HopIngredients)) {
    brew.hops[i++].ibu = hop.stringValue(keys::IBUForAddition);
  }
}

class SecondWriting : public testing::WithShelf {
 protected:
  SecondWriting() {
    set(keys::PelletHopAdjustment, adjustments.pellet);
    set(keys::BaggedHopAdjustment, adjustments.bagged);
    set(keys::BaggedPelletHopAdjustment, adjustments.baggedPellet);
  }

  Shelf newShelf(Source& source, bool isHuge) {
    Shelf shelf;
    const std::string prefix = std::to_string(++shelves_) + "-";
    for (std::size_t i = 0; i < 6; ++i) {
      Item item;
      item.type = i < 4 ? source.oneOf({"Fermentable", "Hop", "Other", "Yeast", "Hop", "Hop"})
                        : source.oneOf({"OtherIngredients", "Hop", "Fermentable"});
      const std::size_t count = isHuge && i == 0 ? 1000 : source.below(6);
      for (std::size_t l = 0; l < count; ++l) {
        item.lots.push_back({prefix + std::to_string(i) + "-" + std::to_string(l),
                             source.amount(60), source.amount(1), source.amount(12),
                             source.amount(80), source.amount(30), source.lotForm(),
                             static_cast<double>(source.below(4))});
      }
      shelf[prefix + std::to_string(i)] = item;
    }
    PlistArray items;
    for (auto& [uuid, item] : shelf) {
      PlistArray lots;
      for (const Lot& lot : item.lots) lots.append(recordOf(lot));
      items.append(PlistDictionary{
          {keys::UUID, uuid}, {keys::IngredientType, item.type}, {keys::Batches, std::move(lots)}});
      second::complete(item);
    }
    inventory().addItemsFromArray(items);
    return shelf;
  }
  void removeShelf() {
    std::vector<ZYMCachingModel::ItemReference> items;
    for (const ZYMSummary& row : inventory().rowsOfAllItems()) items.emplace_back(row);
    inventory().removeItems(items);
    endTurn();
    undoManager().removeAllActions();
  }

  Brew newBrew(Source& source, bool hasVolumes) const {
    Brew brew;
    brew.adjustments = adjustments;
    brew.expectedIBU = source.amount(60);
    brew.recalculate = hasVolumes ? recalculate : [](Brew&) {};
    for (const auto list : lists) {
      for (std::size_t count = source.below(4); count > 0; --count) {
        (brew.*list)
            .push_back({std::to_string(shelves_) + "-" + std::to_string(source.below(7)),
                        source.amount(120), source.amount(12), source.amount(80), source.amount(30),
                        source.oneOf({"Loose Whole Hops", "Bagged Whole Hops", "Loose Pellet Hops",
                                      "Bagged Pellet Hops", "bagged", ""}),
                        source.oneOf({"Commercial Pack", "Slurry", "Starter"}), source.amount(25),
                        source.once(9), std::nullopt});
      }
    }
    return brew;
  }

  /// Both get the same edits.
  static void edit(Source& source, Brew& brew, PlistDictionary& batch) {
    PlistDictionary& recipe = *batch.editDictionary(keys::ModifiedRecipe);
    for (std::size_t i = 0; i < 4; ++i) {
      std::vector<Addition>& list = brew.*lists[i];
      std::size_t at = 0;
      for (PlistDictionary& row : recipe.editRows(keys::additions[i])) {
        if (source.once(3)) row.set(keys::Amount, list[at].amount = source.amount(60));
        ++at;
      }
    }
  }

  static bool isSame(const Brew& brew, const PlistDictionary& batch) {
    const PlistDictionary& recipe = *batch.dictionary(keys::ModifiedRecipe);
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(linesOf(*recipe.array(keys::additions[i])), linesOf(recordsOf(brew.*lists[i])));
    }
    EXPECT_EQ(recipe.stringValue(keys::ExpectedIBU), brew.expectedIBU);
    return !::testing::Test::HasFailure();
  }
  static void compareStates(const Brew& brew, const ZYMAvailabilitiesEngine& engine) {
    for (std::size_t i = 0; i < 4; ++i) {
      const std::vector<bool>& states = brew.available[i];
      EXPECT_EQ(engine.availabilities().array(keys::additions[i])->size(), states.size());
      for (std::size_t at = 0; at < states.size(); ++at) {
        EXPECT_EQ(
            engine.availabilityOfIngredientInRecipeAtIndex_ofArrayForKey(at, keys::additions[i]),
            states[at] ? 2 : 0);
      }
    }
  }

  void planAndCompare(Brew& brew, const Shelf& shelf) {
    ZYMAvailabilitiesEngine& engine = ZYMAvailabilitiesEngine::sharedInstance();
    second::plan(brew, shelf);
    ZYMAvailabilitiesEngine::Advisories told;
    EXPECT_EQ(engine.recalculateAvailabilitiesWithAdvisories(&told), !brew.advisories.empty());
    EXPECT_EQ(told.size(), brew.advisories.size());
    for (std::size_t i = 0; i < std::min(told.size(), brew.advisories.size()); ++i) {
      EXPECT_EQ(told[i].title, brew.advisories[i].first);
      EXPECT_EQ(told[i].message, brew.advisories[i].second);
    }
    EXPECT_EQ(engine.batch()->stringValue(keys::Cost), brew.cost);
    compareStates(brew, engine);
    planned_ += static_cast<int>(told.size());
    isSame(brew, *engine.batch());
  }
  static void compareShelf(const Shelf& shelf) {
    for (const auto& [uuid, expected] : shelf) {
      const PlistDictionary stored = item(uuid);
      EXPECT_EQ(stored.stringValue(keys::AmountInStock), second::text(expected.total)) << uuid;
      std::vector<std::string> lots;
      for (const Lot& lot : expected.lots) lots.push_back(lot.uuid + " " + lot.stock);
      std::size_t i = 0;
      for (const PlistDictionary& lot : stored.rows(keys::Batches)) {
        EXPECT_EQ(WithStore::shown(lot, {keys::UUID, keys::AmountInStock}), lots.at(i++)) << uuid;
      }
      EXPECT_EQ(i, lots.size()) << uuid;
    }
  }

  int shelves_ = 0;
  int planned_ = 0;
};

TEST_F(SecondWriting, AgreesTextForText) {
  const bool isLong = std::getenv("ZYM_LONG_TESTS") != nullptr;
  const int brews = isLong ? 10000 : 1500;
  ZYMAvailabilitiesEngine& engine = ZYMAvailabilitiesEngine::sharedInstance();
  Shelf shelf;
  for (int i = 0; i < brews && !HasFailure(); ++i) {
    SCOPED_TRACE("brew " + std::to_string(i));
    Source source(static_cast<unsigned>(i));
    if (i % 5 == 0) {
      removeShelf();
      shelf = newShelf(source, i % 500 == 0);
    }
    const bool hasVolumes = source.once(2);
    Brew brew = newBrew(source, hasVolumes);
    engine.setBatch(SharedBatch(batchOf(brew, hasVolumes)));

    planAndCompare(brew, shelf);
    edit(source, brew, *engine.batch());
    const bool force = source.once(3);
    second::adjust(brew, shelf, force);
    engine.autoAdjustAllIngredientsInRecipeForcingRefresh(force);
    if (!isSame(brew, *engine.batch())) break;
    planAndCompare(brew, shelf);
    if (i % 5 != 4) continue;
    second::take(brew, shelf, {});
    engine.adjustInventoryForBatchAndSave();
    if (!isSame(brew, *engine.batch())) break;
    compareShelf(shelf);
  }
  EXPECT_GT(planned_, 100) << "hops change their form now and then";
}

}  // namespace
}  // namespace zym
