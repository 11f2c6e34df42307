// A store of each version of the object model that was ever in use must open for ever.

#include <gtest/gtest.h>

#include "tests/support/Store.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/store/entities/ZYMFermentableEntity.h"
#include "zymcore/store/entities/ZYMHopEntity.h"
#include "zymcore/store/entities/ZYMProfileEntity.h"
#include "zymcore/store/entities/ZYMWaterEntity.h"

namespace zym {
namespace {

using StoreVersions = testing::WithStore;

TEST_F(StoreVersions, Version1OpensWithAllItHolds) {
  std::filesystem::create_directories(folder / "data");
  std::filesystem::copy_file(ZYM_FIXTURES "/Wortmeister-1.sqlite",
                             folder / "data/Wortmeister.sqlite");

  const auto hops = *ZYMHopEntity::findAllObjects();
  EXPECT_FALSE(model().firstRun());
  ASSERT_EQ(hops.size(), 1U);
  const PlistDictionary hop = *hops.front()->dictionaryRepresentation();
  EXPECT_EQ(hop.stringValue(keys::Variety), "Fuggle");
  EXPECT_EQ(hop.stringValue(keys::Alpha), "4.500000");
  EXPECT_EQ(hop.stringValue(keys::Description), "earthy");
  EXPECT_TRUE(hop.date(keys::DateLastModified));
  EXPECT_EQ(
      ZYMFermentableEntity::findAllObjects()->front()->dictionaryRepresentation()->stringValue(
          keys::Extract),
      "79.000000");
  EXPECT_EQ(ZYMWaterEntity::findAllObjects()->front()->dictionaryRepresentation()->stringValue(
                keys::Calcium),
            "295.000000");
  EXPECT_EQ(ZYMProfileEntity::findAllObjects()->front()->name(), "Kitchen");

  hops.front()->setName("Goldings");
  model().save();
  reopen();
  EXPECT_EQ(ZYMHopEntity::findAllObjects()->front()->name(), "Goldings");
}

}  // namespace
}  // namespace zym
