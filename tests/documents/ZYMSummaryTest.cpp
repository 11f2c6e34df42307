#include "tests/support/Test.h"
#include "zymcore/documents/RecordKeys.h"
#include "zymcore/documents/ZYMSummary.h"
#include "zymcore/platform/values/NSNotFound.h"

namespace zym {
namespace {

TEST(ZYMSummary, FindsTheLastOfEquals) {
  const std::vector<ZYMSummary> rows = {{"a", "1", 0}, {"b", "2", 0}, {"a", "2", 0}};
  EXPECT_EQ(ZYMSummary::indexOfSummaryWithName_inArray("a", rows), 2);
  EXPECT_EQ(ZYMSummary::indexOfSummaryWithUUID_inArray("1", rows), 0);
  EXPECT_EQ(ZYMSummary::indexOfSummaryWithUUID_inArray("2", rows), 2);
  EXPECT_EQ(ZYMSummary::indexOfSummaryWithUUID_inArray("a", rows), NSNotFound);
  EXPECT_EQ(ZYMSummary::indexOfSummaryWithName_inArray("a", {}), NSNotFound);
}

TEST(ZYMSummary, TravelsInAnArchive) {
  const ZYMSummary row =
      ZYMSummary::summaryWithName_uuid_numberOfChildren("Bock", "U-1", 5'000'000'000);
  EXPECT_EQ(row.description(), "name: Bock uuid: U-1 numberOfChildren: 5000000000");
  EXPECT_EQ(ZYMSummary().description(), "name:  uuid: (null) numberOfChildren: 0");
  EXPECT_EQ(ZYMSummary::summaryWithArchive(row.archive()), row);
  EXPECT_EQ(row.archive().integerValue(KeyName("Children")), 5'000'000'000);
  // No uuid is not the uuid "", which is that of the whole library.
  for (const ZYMSummary& one : {ZYMSummary{"a", std::nullopt, 0}, ZYMSummary{"a", "", 0}}) {
    EXPECT_EQ(ZYMSummary::summaryWithArchive(one.archive()), one);
  }
  EXPECT_EQ(ZYMSummary::summaryWithArchive({{keys::Name, 3}, {keys::Children, "x"}}), ZYMSummary());
}

}  // namespace
}  // namespace zym
