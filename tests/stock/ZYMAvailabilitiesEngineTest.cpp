
#include "tests/stock/Shelf.h"
#include "zymcore/platform/host/NSAlert.h"
#include "zymcore/stock/ZYMAvailabilitiesEngine.h"
#include "zymcore/stock/internal/Lots.h"

namespace zym {
namespace {

class Engine : public testing::WithShelf {
 protected:
  ~Engine() override { engine().setBatch({}); }

  static ZYMAvailabilitiesEngine& engine() { return ZYMAvailabilitiesEngine::sharedInstance(); }
  static PlistDictionary addition(std::string_view uuid, std::string_view amount) {
    return {{keys::UUID, uuid}, {keys::Amount, amount}};
  }
  static PlistDictionary hop(std::string_view amount, std::string_view alpha, std::string_view form,
                             std::string_view ibu) {
    PlistDictionary result = addition("hop", amount);
    result.set(keys::Alpha, alpha);
    result.set(keys::Form, form);
    result.set(keys::IBUForAddition, ibu);
    return result;
  }
  static PlistDictionary hopLot(std::string_view uuid, std::string_view amount,
                                std::string_view alpha, std::string_view form, double expires) {
    PlistDictionary result = lot(uuid, amount, expires);
    result.set(keys::Alpha, alpha);
    result.set(keys::Form, form);
    return result;
  }
  /// Opens a batch with those additions; ExpectedIBU is 50, so that 10 is just no bittering.
  static void open(KeyName key, PlistArray additions) {
    PlistDictionary recipe{{keys::ExpectedIBU, "50"}};
    recipe.set(key, std::move(additions));
    engine().setBatch(SharedBatch({{keys::ModifiedRecipe, std::move(recipe)}}));
  }
  static void plan() { (void)engine().recalculateAvailabilitiesWithAdvisories(nullptr); }
  static const PlistDictionary& at(KeyName key, std::size_t index) {
    return *engine()
                .batch()
                ->dictionary(keys::ModifiedRecipe)
                ->array(key)
                ->find(index)
                ->dictionary();
  }
  static std::int64_t state(KeyName key, std::size_t index) {
    return engine().availabilityOfIngredientInRecipeAtIndex_ofArrayForKey(index, key);
  }
  /// What an addition takes of each lot; "-" for none.
  static std::vector<std::string> taken(KeyName key, std::size_t index) {
    const PlistDictionary& row = at(key, index);
    return row.contains(keys::Batches) ? texts(row.array(keys::Batches), keys::Amount)
                                       : std::vector<std::string>{"-"};
  }
};

constexpr KeyName malts = keys::FermentableIngredients;
constexpr KeyName hops = keys::HopIngredients;

TEST_F(Engine, TakesWhatExpiresFirst) {
  const auto sack = [](const char* uuid, const char* extract, const char* color, double expires) {
    PlistDictionary result = lot(uuid, "5.0", expires);
    result.set(keys::Extract, extract);
    result.set(keys::Color, color);
    return result;
  };
  stock("malt", "Fermentable", {sack("june", "81", "5.4", 6), sack("march", "72", "9", 3)});
  struct Row {
    const char* wanted;
    std::vector<std::string> given;
    const char *extract, *color;
    std::int64_t state;
  };
  // The means are by what was wanted: (81 * 5 + 72 * 5) / 10.5. Half a gram may be missing.
  for (const Row& row :
       {Row{"8", {"3.000000", "5.000000"}, "75.375000", "7.650000", 2},
        Row{"10.5", {"5.000000", "5.000000"}, "72.857143", "6.857143", 2},
        Row{"10.6", {"-"}, "", "", 0}, Row{"0", {"0.0", "0.0"}, "0.000000", "0.000000", 2}}) {
    open(malts, {addition("malt", row.wanted)});
    plan();
    EXPECT_EQ(taken(malts, 0), row.given) << row.wanted;
    EXPECT_EQ(at(malts, 0).stringValue(keys::Extract), row.extract) << row.wanted;
    EXPECT_EQ(at(malts, 0).stringValue(keys::Color), row.color) << row.wanted;
    EXPECT_EQ(state(malts, 0), row.state) << row.wanted;
  }
  EXPECT_EQ(state(malts, 1), 0);
  EXPECT_EQ(state(KeyName("Nothing"), 0), 0);
}

// What hops of a shelf become, each worked out by hand; everything else is for the second writing.
TEST_F(Engine, ReblendsHops) {
  set(keys::PelletHopAdjustment, 1.25);
  set(keys::BaggedHopAdjustment, 0.8);
  set(keys::BaggedPelletHopAdjustment, 0.9);
  const PlistValue whole = hopLot("w", "100", "5", "Whole", 2);
  const PlistValue pellets = hopLot("p", "100", "10", "Pellets", 1);
  const PlistValue fewWhole = hopLot("v", "20", "10", "Whole", 2);
  const PlistValue few = hopLot("f", "25", "6", "Pellets", 1);
  struct Row {
    PlistArray lots;
    const char *wanted, *blended;  // amount, form, bitterness; what is taken: amount, alpha, form
  };
  const Row rows[] = {
      // A bittering addition keeps its alpha mass of 300; one of just a fifth is flavour.
      {{whole}, "30 Loose Whole Hops 10.1", "60.000000: 60.000000 5.000000 Loose Whole Hops"},
      {{whole}, "30 Loose Whole Hops 10", "30.000000: 30 5.000000 Loose Whole Hops"},
      // 300 / 1.25 = 240, and 270 * 0.8 / 0.9 = 240
      {{pellets}, "30 Loose Whole Hops 20", "24.000000: 24.000000 10.000000 Loose Pellet Hops"},
      {{pellets}, "27 Bagged Whole Hops 20", "24.000000: 24.000000 10.000000 Bagged Pellet Hops"},
      // Of either form, unconverted: 150 from the pellets and 150 from the whole ones.
      {{fewWhole, few},
       "30 Loose Whole Hops 20",
       "15.000000+25.000000: 40.000000 7.500000 Loose Pellet Hops"},
  };
  for (const Row& row : rows) {
    const std::string wanted = row.wanted;
    stock("hop", "Hop", row.lots);
    open(hops, {hop(wanted.substr(0, 2), "10", wanted.substr(3, wanted.rfind(' ') - 3),
                    wanted.substr(wanted.rfind(' ') + 1))});
    plan();
    std::string blended;
    for (const std::string& each : taken(hops, 0)) blended += (blended.empty() ? "" : "+") + each;
    blended += ":";
    for (const KeyName key : {keys::Amount, keys::Alpha, keys::Form}) {
      blended.append(" ").append(at(hops, 0).stringValue(key));
    }
    EXPECT_EQ(blended, row.blended) << wanted;
    inventory().removeItemWithUUID("hop");
  }
}

TEST_F(Engine, TellsWhereAHopChangesItsForm) {
  stock("hop", "Hop", {hopLot("p", "100", "10", "Pellet", 1)});
  set(keys::BaggedHopAdjustment, 1.0);
  set(keys::BaggedPelletHopAdjustment, 1.0);
  open(hops, {hop("1", "10", "Loose Whole Hops", "1"), hop("1", "10", "Bagged Whole Hops", "20")});
  ZYMAvailabilitiesEngine::Advisories told;
  EXPECT_TRUE(engine().recalculateAvailabilitiesWithAdvisories(&told));
  const auto advisory = ZYMAvailabilitiesAdvisory::advisoryWithTitle_message;
  EXPECT_THAT(
      told,
      ElementsAre(advisory("Hop Form Changed",
                           "The form of Fuggle hops has changed to Loose Pellet Hops as there was "
                           "insufficient of the preferred form in stock."),
                  advisory("Hop Form Changed",
                           "The hop form for an addition of Fuggle hops has changed as there was "
                           "insufficient of the preferred form in stock. It has been changed to "
                           "Bagged Pellet Hops")));

  std::vector<std::string> shown;
  NSAlert::setPresenter([&](const NSAlert& alert) {
    EXPECT_EQ(alert.alertStyle(), NSAlert::Style::Informational);
    EXPECT_THAT(alert.buttons(), ElementsAre("OK"));
    shown.push_back(alert.messageText() + ": " + alert.informativeText());
    return 0;
  });
  ZYMAvailabilitiesEngine::presentAdvisories({});
  ZYMAvailabilitiesEngine::presentAdvisories_immediately({advisory("A", "a"), advisory("B", "b")},
                                                         false);
  EXPECT_THAT(shown, IsEmpty()) << "with the next turn";
  ZYMAvailabilitiesEngine::presentAdvisories_immediately({advisory("C", "c")}, true);
  EXPECT_TRUE(NSRunLoop::mainRunLoop().runUntil([&] { return shown.size() == 2; }, 10));
  EXPECT_THAT(shown, ElementsAre("C: c", "A: a\n\nb"));
  NSAlert::setPresenter(nullptr);
  EXPECT_FALSE(engine().recalculateAvailabilitiesWithAdvisories(&told)) << "nothing new";
  EXPECT_EQ(told.size(), 2U);
}

TEST_F(Engine, AnAllotmentStandsWhileItsLotsAreThere) {
  stock("malt", "Fermentable", {lot("a", "5", 2), lot("b", "5", 1)});
  open(malts, {addition("malt", "4"), addition("malt", "4")});
  plan();
  // Both take of the same: what the first was given anew isn't counted against the second.
  EXPECT_THAT(taken(malts, 0), ElementsAre("0.0", "4.000000"));
  EXPECT_THAT(taken(malts, 1), ElementsAre("0.0", "4.000000"));
  stock("malt", "Fermentable", {lot("a", "1", 2), lot("b", "1", 1)});
  plan();
  EXPECT_THAT(taken(malts, 0), ElementsAre("0.0", "4.000000")) << "the same lots";
  EXPECT_EQ(state(malts, 0), 0) << "though there is less by now";
  // An empty allotment of an item without lots stands, and validation works on a copy.
  stock("malt", "Fermentable", {});
  PlistDictionary& recipe = *engine().batch()->editDictionary(keys::ModifiedRecipe);
  recipe.editRows(malts).begin()->set(keys::Batches, PlistArray());
  PlistDictionary working;
  engine().validateInventoryBatchesInRecipeWithIngredientKey_inventory(malts, working);
  EXPECT_TRUE(at(malts, 0).contains(keys::Batches));
  EXPECT_EQ(*working.dictionary(KeyName("malt")), item("malt"));
  engine().setAvailabilitiesForRecipeIngredientKey_inventory(malts, working);
  // A number there, where every other amount is text.
  EXPECT_EQ(*working.dictionary(KeyName("malt"))->find(keys::AmountInStock)->real(), -8.0);
}

TEST_F(Engine, AWalkLeavesWhatStandsBeforeTheEdit) {
  stock("malt", "Fermentable", {lot("late", "5", 2), lot("soon", "5", 1)});
  PlistArray additions{addition("malt", "4"), addition("malt", "3")};
  PlistDictionary working;
  const auto walk = [&](const PlistDictionary* filter, std::size_t start, bool force) {
    working.clear();
    return engine()
        .autoAdjustAllInstancesOfIngredient_fromStartIndex_inArray_inventoryContents_forcingRefresh(
            filter, start, additions, working, force);
  };
  const auto takenOf = [&](std::size_t i) {
    return texts(additions.find(i)->dictionary()->array(keys::Batches), keys::Amount);
  };
  EXPECT_FALSE(walk(nullptr, 2, true)) << "past the end";
  EXPECT_EQ(working.size(), 1U);
  EXPECT_TRUE(walk(nullptr, 0, false));
  // The brewer changes the second: the first keeps its figures, whatever they are.
  PlistDictionary& first = *additions.edit(0).editDictionary();
  first.editArray(keys::Batches)->edit(1).editDictionary()->set(keys::Amount, "1.5");
  first.set(keys::Extract, "77");
  const PlistDictionary before = first;
  EXPECT_TRUE(walk(nullptr, 1, true));
  EXPECT_EQ(*additions.find(0)->dictionary(), before);
  EXPECT_THAT(takenOf(1), ElementsAre("0.0", "3.000000"));
  EXPECT_EQ(working.dictionary(KeyName("malt"))->stringValue(keys::AmountInStock), "3.000000");
  const PlistArray one{addition("malt", "4")};
  additions = one;
  EXPECT_TRUE(walk(nullptr, 0, false));
  EXPECT_FALSE(walk(nullptr, 0, false)) << "each lot has the whole of it";
  const PlistDictionary other = addition("other", "1");
  EXPECT_FALSE(walk(&other, 0, true));
}

TEST_F(Engine, WhatIsDeductedIsNeverTouched) {
  stock("malt", "Fermentable", {lot("a", "5", 1)});
  PlistDictionary done = addition("malt", "3");
  done.set(keys::IngredientDeducted, "1");
  open(malts, {done, addition("malt", "2")});
  plan();
  EXPECT_EQ(at(malts, 0), done);
  EXPECT_THAT(taken(malts, 1), ElementsAre("2.000000"));
  EXPECT_EQ(engine().availabilities().array(malts)->size(), 1U) << "it has no entry";
  EXPECT_EQ(state(malts, 0), 2);
  engine().autoAdjustAllIngredientsInRecipeForcingRefresh(true);
  EXPECT_EQ(at(malts, 0), done);
  PlistDictionary copy = done;
  engine().createNewBatchesKeyForIngredient_withInventoryEntry(copy, item("malt"));
  EXPECT_FALSE(engine().autoAdjustIngredientBatchesForIngredient_withInventoryEntry_forceUpdate(
      copy, nullptr, true));
  EXPECT_EQ(copy, done);
}

TEST_F(Engine, LivesOnBadDocuments) {
  PlistDictionary shrunk{{keys::Batches, PlistArray{lot("a", "5", 1)}}};
  PlistDictionary part = lot("a", "9", 1);
  part.set(keys::Amount, "2");
  lots::take(shrunk, {part, part, "text"}, lots::Least::zero);
  EXPECT_THAT(texts(shrunk.array(keys::Batches), keys::AmountInStock), ElementsAre("3.000000"));
  stock("malt", "Fermentable", {lot("a", "5", 1)});
  PlistDictionary odd = addition("malt", "1");
  odd.set(keys::Batches, "no lots");
  PlistDictionary odder = addition("malt", "1");
  odder.set(keys::Batches, PlistArray{7});
  PlistDictionary nameless = addition("malt", "1");
  nameless.remove(keys::UUID);
  open(malts, {1, "text", odd, odder, nameless});
  plan();
  engine().autoAdjustAllIngredientsInRecipeForcingRefresh(false);
  EXPECT_THAT(taken(malts, 2), ElementsAre("1.000000"));
  EXPECT_THAT(taken(malts, 4), ElementsAre("-"));
  engine().setBatch(SharedBatch({{keys::ModifiedRecipe, "none"}}));
  plan();
  engine().markAllIngredientsAsDeducted();
  EXPECT_EQ(engine().availabilities().size(), 4U);
}

}  // namespace
}  // namespace zym
