#include "tests/support/Pictures.h"
#include "tests/support/Store.h"
#include "zymcore/library/recipes/ZYMImageUtils.h"
#include "zymcore/library/recipes/ZYMRecipes.h"

namespace zym {
namespace {

using zym::testing::Bytes;
using zym::testing::bytesOf;
namespace fs = std::filesystem;

constexpr NSDate longAgo = NSDate::dateWithTimeIntervalSince1970(0);

NSImage plain(int width, int height, Bytes color = {10, 20, 30, 255}) {
  return NSImage(testing::picture(width, height, color[3] < 255, [&](int, int) { return color; }));
}

std::optional<NSImage> fixture(const char* name) {
  const auto bytes = NSFileManager::contentsAtPath(std::string(ZYM_FIXTURES) + "/" + name, 1 << 20);
  return NSImage::imageWithData(NSData(bytes.value_or("")));
}

class ImagesTest : public testing::WithStore {
 protected:
  static ZYMRecipes& recipes() { return ZYMRecipes::sharedInstance(); }

  template <class Entity>
  static Entity& insert(const std::string& uuid) {
    auto& entity = Entity::insertInContext(context());
    entity.setUuid(uuid);
    entity.setDateLastModified(longAgo);
    return entity;
  }
  static bool add(const std::string& owner, std::uint8_t red = 10) {
    return recipes().addThumbnailImage_withLargeImage_toItemWithUUID(
        plain(4, 2, {red, 0, 0, 255}), plain(8, 4, {red, 0, 0, 255}), owner);
  }
  static std::size_t recordCount() { return ZYMImageEntity::findAllObjects()->size(); }
  static std::string large(const std::string& uuid) {
    return recipes().pathForLargeImageWithUUID(uuid).value();
  }
  static std::string thumbnail(const std::string& uuid) {
    return recipes().pathForThumbnailImageWithUUID(uuid).value();
  }
  static std::size_t fileCount() {
    return NSFileManager::contentsOfDirectoryAtPath(model().imagesFolderPath())->size();
  }
};

TEST_F(ImagesTest, SizesKeepTheShape) {
  const struct {
    NSSize size, thumbnail, large;
  } cases[] = {
      {{1000, 500}, {128, 64}, {600, 300}},
      {{500, 1000}, {64, 128}, {300, 600}},
      {{1000, 1}, {128, 1}, {600, 1}},
      {{1, 1000}, {1, 128}, {1, 600}},
      {{1000, 333}, {128, 43}, {600, 200}},
      {{300, 200}, {128, 86}, {300, 200}},
      {{128, 128}, {128, 128}, {128, 128}},
      {{129, 128}, {128, 128}, {129, 128}},
      {{1, 1}, {1, 1}, {1, 1}},
  };
  for (const auto& c : cases) {
    const NSImage image = plain(static_cast<int>(c.size.width), static_cast<int>(c.size.height));
    EXPECT_EQ(ZYMRecipes::thumbnailFromImage(image).size(), c.thumbnail) << c.size.width;
    EXPECT_EQ(ZYMRecipes::sizedLargeImageFromImage(image).size(), c.large) << c.size.width;
  }
  const NSImage small = plain(100, 100);
  EXPECT_EQ(ZYMRecipes::thumbnailFromImage(small).image().pixelAt(0, 0),
            small.image().pixelAt(0, 0))
      << "the same image, not a copy of it";
  for (const NSSize none : {NSSize{0, 5}, NSSize{-4, 5}, NSSize{NAN, 5}, NSSize{1e9, 1}}) {
    EXPECT_FALSE(resizedImageToSize_interpolationQuality(small, none, kCGInterpolationMedium));
  }
}

TEST_F(ImagesTest, KeepsColoursOpacityAndWhichSideIsUp) {
  const auto written = [](const NSImage& image) {
    const NSData data = ZYMRecipes::dataFromImage(ZYMRecipes::thumbnailFromImage(image)).value();
    EXPECT_EQ(data.view().substr(0, 4), "\x89PNG");
    EXPECT_EQ(data.bytes()[25], 6) << "red, green, blue and opacity";
    return NSImage::imageWithData(data)->image();
  };
  const CGImage grey = written(fixture("grey.png").value());
  EXPECT_EQ(bytesOf(grey, 0, 0), (Bytes{0x20, 0x20, 0x20, 255}));
  EXPECT_EQ(bytesOf(grey, 1, 0), (Bytes{0xE0, 0xE0, 0xE0, 255}));
  const CGImage palette = written(fixture("palette.png").value());
  EXPECT_EQ(bytesOf(palette, 0, 0), (Bytes{255, 0, 0, 255}));
  EXPECT_EQ(bytesOf(palette, 1, 0), (Bytes{0, 255, 0, 128}));
  EXPECT_EQ(bytesOf(palette, 2, 0)[3], 0);

  // Its dark half is at the left of the file, and belongs at the top.
  const CGImage turned = written(fixture("on-its-side.jpg").value());
  ASSERT_EQ(turned.width(), 8);
  ASSERT_EQ(turned.height(), 16);
  EXPECT_LT(bytesOf(turned, 4, 2)[0], 80);
  EXPECT_GT(bytesOf(turned, 4, 13)[0], 170);

  const CGImage mirrored =
      *ZYMImageUtils::createResizedImage_toSize_transform_drawTransposed_interpolationQuality(
          fixture("grey.png")->image(), {2, 1}, {-1, 0, 0, 1, 2, 0}, false, kCGInterpolationMedium);
  EXPECT_EQ(bytesOf(mirrored, 0, 0), (Bytes{0xE0, 0xE0, 0xE0, 255}));

  const auto halved = [](CGInterpolationQuality quality) {
    return int{bytesOf(
        resizedImageToSize_interpolationQuality(*fixture("grey.png"), {1, 1}, quality)->image(), 0,
        0)[0]};
  };
  EXPECT_NEAR(halved(kCGInterpolationMedium), 0x80, 1);
  EXPECT_THAT(halved(kCGInterpolationNone), ::testing::AnyOf(0x20, 0xE0));

  const CGImage scaled = written(plain(900, 450, {200, 100, 50, 64}));
  EXPECT_EQ(scaled.width(), 128);
  EXPECT_EQ(bytesOf(scaled, 127, 63), (Bytes{200, 100, 50, 64}));
}

TEST_F(ImagesTest, BelongToARecipeABatchOrNobody) {
  auto& recipe = insert<ZYMRecipeEntity>("r");
  auto& batch = insert<ZYMRecipeBatchEntity>("b");
  insert<ZYMRecipeEntity>("twice");
  insert<ZYMRecipeEntity>("twice");
  std::uint8_t red = 0;
  for (const char* owner : {"r", "r", "b", "unknown", "twice"}) EXPECT_TRUE(add(owner, ++red));
  EXPECT_EQ(recordCount(), 5U);
  EXPECT_EQ(fileCount(), 10U);
  EXPECT_GT(*recipe.dateLastModified(), longAgo);
  EXPECT_GT(*batch.dateLastModified(), longAgo);
  EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("unknown"), IsEmpty());
  EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("twice"), IsEmpty());
  const auto images = recipes().orderedImageEntitiesForItemWithUUID("r");
  ASSERT_THAT(images, SizeIs(2));
  EXPECT_EQ(images[1]->valueForKey(attributes::index)->integerValue(), 1);
  EXPECT_GT(images[1]->dateLastModified().value_or(longAgo), longAgo);
  EXPECT_EQ(images[0]->objectForKey(relationships::recipe), &recipe);
  EXPECT_EQ(images[0]->objectForKey(relationships::recipeBatch), nullptr);
  EXPECT_THAT(recipes().orderedImageDataForItemWithUUID("b"), SizeIs(1));

  const std::string uuid = images[1]->uuid().value();
  EXPECT_EQ(large(uuid), model().imagesFolderPath() + "/" + uuid + "-large");
  EXPECT_EQ(thumbnail(uuid), model().imagesFolderPath() + "/" + uuid + "-thumbnail");
  EXPECT_EQ(recipes().largeImageAtIndex_forItemWithUUID(1, "r")->size(), (NSSize{8, 4}));
  EXPECT_EQ(bytesOf(recipes().largeImageWithUUID(uuid)->image(), 0, 0)[0], 2);
  EXPECT_EQ(recipes().thumbnailImageWithUUID(uuid)->size(), (NSSize{4, 2}));
  EXPECT_FALSE(recipes().largeImageAtIndex_forItemWithUUID(2, "r"));
}

TEST_F(ImagesTest, RemovalMovesTheOthersUp) {
  auto& recipe = insert<ZYMRecipeEntity>("r");
  for (std::uint8_t red = 1; red <= 3; ++red) add("r", red);
  recipe.setDateLastModified(longAgo);
  const auto uuids = recipes().imageUUIDsForItemWithUUID("r");
  endTurn();
  EXPECT_FALSE(recipes().removeImageAtIndex_fromItemWithUUID(3, "r"));
  EXPECT_FALSE(recipes().removeImageAtIndex_fromItemWithUUID(0, "unknown"));
  EXPECT_FALSE(recipes().removeImageWithUUID("unknown"));
  endTurn();
  EXPECT_NE(undoManager().undoActionName(), "Remove Image");

  EXPECT_TRUE(recipes().removeImageAtIndex_fromItemWithUUID(0, "r"));
  endTurn();
  EXPECT_EQ(undoManager().undoActionName(), "Remove Image");
  EXPECT_FALSE(context().hasChanges());
  EXPECT_GT(*recipe.dateLastModified(), longAgo);
  const auto left = recipes().orderedImageEntitiesForItemWithUUID("r");
  ASSERT_THAT(left, SizeIs(2));
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(left[i]->uuid(), uuids[i + 1]);
    EXPECT_EQ(left[i]->valueForKey(attributes::index)->integerValue(), std::int64_t(i));
  }
  EXPECT_EQ(fileCount(), 4U);

  // Undone, there is a record again and no file; the next listing drops it.
  undoManager().undo();
  EXPECT_EQ(recordCount(), 3U);
  EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("r"), ElementsAre(uuids[1], uuids[2]));
  EXPECT_EQ(recordCount(), 2U);

  EXPECT_TRUE(recipes().removeImageWithUUID(uuids[2]));
  EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("r"), ElementsAre(uuids[1]));
}

TEST_F(ImagesTest, ListingDropsWhatLacksAFile) {
  insert<ZYMRecipeEntity>("r");
  const fs::path elsewhere = folder / "elsewhere";
  std::ofstream(elsewhere) << "of somebody else";
  const std::function<void(const std::string&)> damages[] = {
      [](const std::string& uuid) { fs::remove(large(uuid)); },
      [](const std::string& uuid) { fs::remove(thumbnail(uuid)); },
      [](const std::string& uuid) { fs::remove(large(uuid)), fs::remove(thumbnail(uuid)); },
      [](const std::string& uuid) { fs::remove(large(uuid)), fs::create_directory(large(uuid)); },
      [&](const std::string& uuid) {
        fs::remove(large(uuid));
        fs::create_symlink(elsewhere, large(uuid));
        EXPECT_FALSE(recipes().dataForLargeImageWithUUID(uuid)) << "a link isn't followed";
      },
  };
  for (const auto& damage : damages) {
    add("r");
    add("r");
    const auto uuids = recipes().imageUUIDsForItemWithUUID("r");
    endTurn();
    damage(uuids[0]);
    EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("r"), ElementsAre(uuids[1]));
    EXPECT_EQ(fileCount(), 2U) << "its other file goes with it";
    EXPECT_TRUE(context().hasChanges()) << "until the next save";
    EXPECT_TRUE(recipes().removeImageWithUUID(uuids[1]));
  }
  EXPECT_TRUE(fs::exists(elsewhere));
}

// Such a uuid comes with a record from elsewhere. The images folder has no file of that name.
TEST_F(ImagesTest, NoUUIDLeadsOutOfTheFolder) {
  auto& recipe = insert<ZYMRecipeEntity>("r");
  (void)model().imagesFolderPath();
  std::ofstream(folder / "data/outside-large") << "x";
  std::ofstream(folder / "data/outside-thumbnail") << "x";
  using namespace std::string_literals;
  for (const std::string& uuid : {"../outside"s, "/etc/passwd"s, ""s, "a\0b"s, "a/../../outside"s,
                                  ".."s, std::string(100'000, 'a'), "\xFF\xFE"s}) {
    auto& image = insert<ZYMImageEntity>(uuid);
    recipe.addImagesObject(image);
    const auto path = recipes().pathForLargeImageWithUUID(uuid);
    if (path) {
      EXPECT_EQ(fs::path(*path).parent_path(), model().imagesFolderPath());
    }
    EXPECT_FALSE(recipes().dataForThumbnailImageWithUUID(uuid));
    EXPECT_FALSE(recipes().largeImageWithUUID(uuid));
    EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("r"), IsEmpty());
    EXPECT_TRUE(image.isDeleted());
  }
  insert<ZYMImageEntity>("../outside");
  EXPECT_TRUE(recipes().removeImageWithUUID("../outside"));
  EXPECT_TRUE(fs::exists(folder / "data/outside-large"));
  EXPECT_TRUE(fs::exists(folder / "data/outside-thumbnail"));
}

TEST_F(ImagesTest, DamagedFilesAreNoImages) {
  insert<ZYMRecipeEntity>("r");
  add("r");
  const std::string uuid = recipes().imageUUIDsForItemWithUUID("r").front();
  const std::string whole(recipes().dataForLargeImageWithUUID(uuid)->view());
  const std::string claim =
      NSFileManager::contentsAtPath(std::string(ZYM_FIXTURES) + "/claims-60000.png", 1 << 20)
          .value();
  for (const std::string& bytes :
       {std::string(), whole.substr(0, whole.size() / 2), "nonsense" + whole, claim}) {
    std::ofstream(large(uuid)) << bytes;
    EXPECT_FALSE(recipes().largeImageWithUUID(uuid)) << bytes.size();
    EXPECT_FALSE(recipes().largeImageAtIndex_forItemWithUUID(0, "r"));
    EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("r"), SizeIs(1)) << "the file is there";
  }
  // A folder that takes no files leaves a record that the next listing drops.
  fs::remove_all(model().imagesFolderPath());
  std::ofstream(folder / "data/Images") << "a file";
  EXPECT_TRUE(add("r"));
  EXPECT_THAT(recipes().imageUUIDsForItemWithUUID("r"), IsEmpty());
  EXPECT_EQ(recordCount(), 0U);
}

}  // namespace
}  // namespace zym
