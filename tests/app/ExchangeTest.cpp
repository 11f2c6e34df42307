// Files out and in, and all data in one file, as a brewer does it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "tests/app/Program.h"

namespace zym {
namespace {

using test::Outcome;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace fs = std::filesystem;

// A pixel.
const std::string picture(
    "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\b\2\0\0\0\x90wS\xde\0\0\0\fIDATx\x9c"
    "c\xf8\xcf\xc0\0\0\3\1\1\0\xc9\xfe\x92\xef\0\0\0\0IEND\xae\x42\x60\x82",
    69);

class Exchange : public ::testing::Test {
 protected:
  static Outcome zymOn(const std::string& data, std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--data", data});
    return test::run(arguments);
  }
  Outcome zym(const std::vector<std::string>& arguments) const { return zymOn(data, arguments); }
  std::string output(const std::vector<std::string>& arguments) const {
    const Outcome outcome = zym(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    return outcome.out;
  }
  void shell(const std::string& command) const {
    EXPECT_EQ(::system(("cd " + folder.path() + " && " + command).c_str()), 0) << command;
  }
  static std::size_t entriesOf(const std::string& place) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(place), fs::directory_iterator()));
  }

  TemporaryFolder folder;
  std::string data = folder / "data";
};

TEST_F(Exchange, WhatIsExportedIsReadAgain) {
  const std::string file = test::example("weissbier");
  (void)output({"import", file});
  const std::string title = output({"recipes", "--json"});
  fs::create_directory(folder / "out");
  for (const char* kind : {"wm2", "wmr", "xml", "rec", "htm"}) {
    EXPECT_THAT(output({"export", "--all", "--as", kind, "-o", folder / "out"}),
                HasSubstr(std::string(".") + kind));
  }
  const Outcome read = zymOn(folder / "other", {"import", folder / "out"});
  EXPECT_EQ(read.exitCode, 0) << read.out;
  EXPECT_THAT(read.out, HasSubstr("4 imported, 0 failed"));

  EXPECT_EQ(output({"export", "Cascade", "Fuggle", "--as", "ing", "-o", folder / "two.ing"}),
            (folder / "two.ing") + "\n");
  EXPECT_THAT(output({"import", "--dry-run", folder / "two.ing"}), HasSubstr("2 ingredients"));
  EXPECT_THAT(zymOn(folder / "other", {"import", folder / "two.ing"}).out,
              HasSubstr("1 imported, 0 failed"));
  EXPECT_EQ(zym({"export", "Cascade", "Safale S-04", "--as", "ing"}).exitCode, 2);
}

TEST_F(Exchange, GoesOnWhereOneFails) {
  (void)output({"new", "recipe", "Ale"});
  (void)output({"new", "recipe", "Stout"});
  (void)output({"group", "new", "Dark"});
  (void)output({"group", "add", "Dark", "Stout"});
  // A group is its recipes; a file that is named is replaced, one in a folder never.
  EXPECT_EQ(output({"export", "Dark", "--as", "xml", "-o", folder / "one.xml"}),
            (folder / "one.xml") + "\n");
  (void)output({"export", "Stout", "--as", "xml", "-o", folder / "one.xml"});
  (void)output({"export", "Stout", "Stout", "--as", "xml", "-o", folder.path()});
  EXPECT_TRUE(fs::exists(folder / "Stout-1.xml"));
  EXPECT_EQ(zym({"export", "Ale", "Dark", "--as", "xml", "-o", folder / "two.xml"}).exitCode, 2);
  for (const char* place : {"gone/a.xml", "one.xml/a.xml"}) {
    const Outcome failed = zym({"export", "Ale", "--as", "xml", "-o", folder / place});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_THAT(failed.err, HasSubstr("Ale: "));
  }
  EXPECT_THAT(zym({"import", folder.file("\xff.xml", "x"), "--json"}).out, HasSubstr("/.xml\""));
  EXPECT_THAT(zym({"import", "--dry-run", folder.file("n.ing", R"({"IngredientType": "Nut",
      "Ingredients": [{}]})")})
                  .out,
              HasSubstr("no ingredients"));
  for (const char* name : {"a.XML", "b.bsmx", "c.json"}) {
    EXPECT_THAT(zym({"import", folder.file(name, "x")}).out, HasSubstr("what is read ends in"));
  }
}

TEST_F(Exchange, ABackupBringsAllBack) {
  (void)output({"new", "recipe", "Ale"});
  (void)output({"image", "add", "Ale", folder.file("x.png", picture)});
  (void)output({"set", "GravityUnits", "1"});
  (void)output({"backup", folder / "all.tar.gz"});
  shell("tar tzf all.tar.gz >names");
  for (const char* place : {"new", "made"}) {
    if (place[0] == 'm') fs::create_directory(folder / place);
    const Outcome restored = zymOn(folder / place, {"restore", folder / "all.tar.gz"});
    EXPECT_EQ(restored.exitCode, 0) << restored.err;
    for (const std::vector<std::string>& question :
         {std::vector<std::string>{"recipes", "--json"}, {"settings"}}) {
      EXPECT_EQ(zymOn(folder / place, question).out, output(question));
    }
    for (const auto& image : fs::directory_iterator(folder / "data/Images")) {
      EXPECT_TRUE(fs::exists(fs::path(folder / place) / "Images" / image.path().filename()));
    }
  }
  EXPECT_THAT(zym({"restore", folder / "all.tar.gz"}).err, HasSubstr("holds data already"));
  EXPECT_EQ(zym({"restore", folder / "all.tar.gz", "--into", folder / "third"}).exitCode, 0);
  EXPECT_TRUE(fs::exists(folder / "third/Wortmeister.sqlite"));
}

TEST_F(Exchange, ABackupFindsItsPlace) {
  (void)output({"new", "recipe", "Ale"});
  // Its own folder is no trap, nor is one that a link or a longer way leads to.
  (void)output({"backup", data + "/all.tar.gz"});
  shell("mkdir sub there && ln -s there link && ! tar tzf data/all.tar.gz | grep zym");
  for (const char* place : {"sub/../up", "link/one", "slash/", "sub/", "a/b/c"}) {
    const Outcome restored =
        zymOn(folder / "any", {"restore", data + "/all.tar.gz", "--into", folder / place});
    EXPECT_EQ(restored.exitCode, 0) << place << restored.err;
    EXPECT_THAT(zymOn(folder / place, {"recipes"}).out, HasSubstr("Ale"));
  }
}

TEST_F(Exchange, OnlyAFileIsReplaced) {
  (void)output({"new", "recipe", "Ale"});
  (void)output({"backup", folder / "all.tar.gz"});
  shell("mkfifo pipe && echo mine >notes");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"restore", folder / "all.tar.gz", "--into", folder / "notes"},
        {"restore", folder / "pipe", "--into", folder / "new"},
        {"backup", folder / "pipe"},
        {"backup", data},
        {"export", "Ale", "--as", "xml", "-o", folder / "pipe"}}) {
    const Outcome refused = zym(arguments);
    EXPECT_EQ(refused.exitCode, 1) << arguments[0] << refused.out;
    EXPECT_THAT(refused.err, HasSubstr("zym: "));
  }
  shell(
      "test -p pipe && grep -q mine notes && test ! -e new && : >real.xml && ln -s real.xml "
      "link.xml");
  (void)output({"export", "Ale", "--as", "xml", "-o", folder / "link.xml"});
  EXPECT_TRUE(fs::is_symlink(folder / "link.xml") && fs::file_size(folder / "real.xml") > 0);
}

TEST_F(Exchange, ABackupThatHasNoRoomIsNotBlamed) {
  (void)output({"new", "recipe", "Ale"});
  (void)output({"backup", folder / "all.tar.gz"});
  fs::create_directory(folder / "place");
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit least{65536, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &least);
  const Outcome full = zym({"restore", folder / "all.tar.gz", "--into", folder / "place/data"});
  ::setrlimit(RLIMIT_FSIZE, &before);
  (void)std::signal(SIGXFSZ, handler);
  EXPECT_EQ(full.exitCode, 1);
  EXPECT_THAT(full.err, AllOf(HasSubstr("data': File too large"), Not(HasSubstr("no backup"))));
  EXPECT_EQ(entriesOf(folder / "place"), 0U);
}

TEST_F(Exchange, WhatIsNoSoundBackupChangesNothing) {
  (void)output({"new", "recipe", "Ale"});
  (void)output({"backup", folder / "all.tar.gz"});
  shell(
      "mkdir bad && head -c 1000 all.tar.gz >bad/cut && head -c 20000 all.tar.gz >bad/half && "
      ": >bad/empty && echo text >bad/text && mkdir t && cd t && tar xzf ../all.tar.gz && "
      "tar czf ../bad/up --transform 's,^Wort,../Wort,' Wortmeister.sqlite && "
      "ln -s /etc/passwd link && tar czf ../bad/link . && rm link && "
      "tar czf ../bad/none --exclude Wortmeister.sqlite . && "
      "printf 'no database' | dd of=Wortmeister.sqlite conv=notrunc bs=1 seek=5000 2>/dev/null && "
      "dd if=/dev/urandom of=Wortmeister.sqlite bs=1000 seek=100 count=200 conv=notrunc "
      "2>/dev/null && tar czf ../bad/damaged .");
  fs::create_directory(folder / "place");
  for (const auto& bad : fs::directory_iterator(folder / "bad")) {
    const Outcome refused = zym({"restore", bad.path().string(), "--into", folder / "place/data"});
    EXPECT_EQ(refused.exitCode, 1) << bad;
    EXPECT_THAT(refused.err, AllOf(HasSubstr("zym: "), Not(HasSubstr("what()")))) << bad;
    EXPECT_EQ(entriesOf(folder / "place"), 0U) << bad;
  }
}

}  // namespace
}  // namespace zym
