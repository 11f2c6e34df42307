#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/support/Child.h"
#include "tests/support/TemporaryFolder.h"
#include "zymcore/platform/services/WebView.h"
#include "zymcore/platform/services/internal/Browser.h"
#include "zymcore/platform/values/NSCocoaErrors.h"

namespace zym {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class WebViewTest : public ::testing::Test {
 protected:
  WebViewTest() { ::setenv("TMPDIR", folder_.path().c_str(), 1); }
  ~WebViewTest() override {
    Browser::end();
    Browser::setPatience(30);
    ::unsetenv("TMPDIR");
  }

  static std::optional<std::string> pdfOf(const std::string& html, NSError* error = nullptr) {
    WebView view(600);
    view.loadHTMLString(html);
    return view.dataWithPDF(error);
  }
  /// What a command prints of the file, which it names "page.pdf".
  std::string seenBy(const std::string& command, const std::string& pdf) const {
    putFile(folder_ / "page.pdf", pdf);
    (void)::system(("cd " + folder_.path() + " && " + command + " >seen").c_str());
    std::ifstream file(folder_ / "seen", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// The group of the browser that runs: the only child of the shell that watches it.
  static pid_t browserOf(pid_t watch) {
    const std::string name = std::to_string(watch);
    std::ifstream children("/proc/" + name + "/task/" + name + "/children");
    pid_t child = 0;
    children >> child;
    return child;
  }
  static bool comesTrue(const std::function<bool()>& predicate) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!predicate() && std::chrono::steady_clock::now() < limit) std::this_thread::yield();
    return predicate();
  }
  /// Whether no process of the group runs; one that ended may still wait for its parent to see it.
  static bool isGone(pid_t group) {
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
      std::ifstream file(process.path() / "stat");
      std::string stat;
      std::getline(file, stat);
      std::istringstream fields(stat.substr(stat.rfind(')') + 1));
      char state = 'Z';
      pid_t parent = 0;
      pid_t own = 0;
      fields >> state >> parent >> own;
      if (own == group && state != 'Z') return false;
    }
    return true;
  }

  TemporaryFolder folder_;
};

TEST_F(WebViewTest, PrintsOneSheetOfThePagesOwnHeight) {
  for (const int height : {31, 335, 775, 4999}) {
    const auto pdf = pdfOf(
        "<style>@page{margin:5cm;size:A6}@media screen{p{height:9cm}}</style><body "
        "style='margin:0;background:#ff8000'><div "
        "style='height:" +
        std::to_string(height) + "px'>Br\xC3\xA4u " + std::to_string(height) +
        "</div><p style='margin:0'></p>");
    ASSERT_TRUE(pdf);
    EXPECT_LT(pdf->size(), pdf->rfind("%%EOF") + 8);
    EXPECT_THAT(seenBy("pdfinfo page.pdf", *pdf), HasSubstr("Pages:           1\n"));
    EXPECT_THAT(
        seenBy("pdfinfo page.pdf", *pdf),
        HasSubstr("Page size:       450 x " + std::to_string((height + 1) * 3 / 4) + " pts"));
    EXPECT_THAT(seenBy("pdftotext page.pdf -", *pdf),
                HasSubstr("Br\xC3\xA4u " + std::to_string(height)));
    EXPECT_THAT(seenBy("pdftoppm -r 20 page.pdf", *pdf), HasSubstr(std::string("\xFF\x80\x00", 3)))
        << "its background";
  }
}

TEST_F(WebViewTest, NothingOfThePageRunsOrIsFetched) {
  putFile(folder_ / "secret.html", "SECRET");
  const auto pdf = pdfOf(
      "<body onload='document.body.innerText=\"EVIL\"'>plain<script>document.write('EVIL')</script>"
      "<meta http-equiv=refresh content='0;url=file://" +
      (folder_ / "secret.html") + "'><iframe src='file://" + (folder_ / "secret.html") +
      "'></iframe><iframe srcdoc='<script>document.write(\"EVIL\")</script>'></iframe>"
      "<img src='http://127.0.0.1:1/x.png' alt='no' onerror='document.write(\"EVIL\")'>");
  ASSERT_TRUE(pdf);
  const std::string text = seenBy("pdftotext page.pdf -", *pdf);
  EXPECT_THAT(text, HasSubstr("plain"));
  EXPECT_THAT(text, Not(HasSubstr("EVIL")));
  EXPECT_THAT(text, Not(HasSubstr("SECRET")));
}

TEST_F(WebViewTest, ABrowserThatCrashedOrHangsIsStartedOnceMore) {
  for (const int signal : {SIGKILL, SIGSTOP}) {
    ASSERT_TRUE(pdfOf("one"));
    const pid_t watch = Browser::shared().process();
    const pid_t group = browserOf(watch);
    ASSERT_GT(group, 1);
    Browser::setPatience(signal == SIGSTOP ? 2 : 30);
    ::kill(-group, signal);
    const auto again = pdfOf("two");
    ASSERT_TRUE(again) << signal;
    EXPECT_THAT(seenBy("pdftotext page.pdf -", *again), HasSubstr("two"));
    EXPECT_NE(Browser::shared().process(), watch);
    EXPECT_TRUE(comesTrue([&] { return isGone(group); }));
  }
}

TEST_F(WebViewTest, WhatIsNoTextFailsWithAReason) {
  NSError error;
  EXPECT_FALSE(pdfOf("\xFF", &error));
  EXPECT_EQ(error.localizedDescription, "The page is no text in UTF-8.");
}

TEST_F(WebViewTest, ABrowserThatAlwaysEndsFailsWithAReason) {
  const std::string path = ::getenv("PATH");
  const std::string program = folder_ / "chromium-headless-shell";
  putFile(program, "#!/bin/sh\necho >>\"$TMPDIR/starts\"\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  ::setenv("PATH", (folder_.path() + ":" + path).c_str(), 1);
  NSError error;
  EXPECT_FALSE(pdfOf("one", &error));
  ::setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(error.localizedDescription, "The page can't be made a PDF: the browser has ended.");
  EXPECT_EQ(std::filesystem::file_size(folder_ / "starts"), 2U) << "started once more";
}

TEST_F(WebViewTest, AMachineWithoutTheBrowserIsToldThePackage) {
  const std::string path = ::getenv("PATH");
  ::setenv("PATH", folder_.path().c_str(), 1);
  NSError error;
  EXPECT_FALSE(pdfOf("one", &error));
  ::setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(error.code, NSFileNoSuchFileError);
  EXPECT_THAT(error.localizedDescription, HasSubstr("chromium-headless-shell"));
}

TEST_F(WebViewTest, NothingIsLeftOfABrowserWhoseProcessIsKilled) {
  for (const bool hangs : {false, true}) {
    Child child([](int pipe) {
      if (pdfOf("one")) Child::tell(pipe, Browser::shared().process());
      ::pause();
    });
    const auto watch = child.hear(60000);
    ASSERT_TRUE(watch);
    const pid_t group = browserOf(static_cast<pid_t>(*watch));
    ASSERT_GT(group, 1);
    if (hangs) ::kill(-group, SIGSTOP);
    child.kill();
    EXPECT_TRUE(comesTrue([&] { return isGone(group); }));
    EXPECT_TRUE(comesTrue([&] { return std::filesystem::is_empty(folder_.path()); }))
        << "its profile";
  }
}

}  // namespace
}  // namespace zym
