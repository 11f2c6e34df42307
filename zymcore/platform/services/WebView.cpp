#include "zymcore/platform/services/WebView.h"

#include <glib.h>

#include <algorithm>
#include <string_view>

#include "zymcore/platform/services/internal/Browser.h"
#include "zymcore/platform/text/NSString.h"
#include "zymcore/platform/values/NSCocoaErrors.h"
#include "zymcore/platform/values/NumberText.h"
#include "zymcore/platform/values/PlistValue.h"

namespace zym {
namespace {

constexpr double pixelsPerInch = 96;
constexpr double mostInches = 200;

/// A page of the browser, closed when this ends.
class Page {
 public:
  explicit Page(Browser& browser) : browser_(browser) {
    target_ = browser.call("Target.createTarget", {{KeyName("url"), "about:blank"}})
                  .stringValue(KeyName("targetId"));
    session_ = browser
                   .call("Target.attachToTarget",
                         {{KeyName("targetId"), target_}, {KeyName("flatten"), true}})
                   .stringValue(KeyName("sessionId"));
  }
  ~Page() {
    if (isLost_) return;  // with its browser, which is ended
    try {
      browser_.call("Target.closeTarget", {{KeyName("targetId"), target_}});
    } catch (const std::exception&) {
      // The browser that fails here fails the next page too, and is ended then.
    }
  }
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;

  PlistDictionary call(std::string_view method, PlistDictionary parameters) {
    isLost_ = true;
    PlistDictionary answer = browser_.call(method, std::move(parameters), session_);
    isLost_ = false;
    return answer;
  }

 private:
  Browser& browser_;
  std::string target_;
  std::string session_;
  bool isLost_ = false;  // the browser failed to answer
};

// What a page says of its sheet, for paper, would go before what is asked of the browser.
constexpr const char* ownSheet = "<style>@page{margin:0!important;size:auto!important}</style>";

void load(Page& page, const std::string& html, double width) {
  page.call("Emulation.setScriptExecutionDisabled", {{KeyName("value"), true}});
  page.call("Network.emulateNetworkConditions", {{KeyName("offline"), true},
                                                 {KeyName("latency"), 0},
                                                 {KeyName("downloadThroughput"), 0},
                                                 {KeyName("uploadThroughput"), 0}});
  page.call("Emulation.setEmulatedMedia", {{KeyName("media"), "print"}});
  page.call("Emulation.setDeviceMetricsOverride", {{KeyName("width"), static_cast<int>(width)},
                                                   {KeyName("height"), 1},
                                                   {KeyName("deviceScaleFactor"), 1},
                                                   {KeyName("mobile"), false}});
  const PlistDictionary tree = page.call("Page.getFrameTree", {});
  const PlistDictionary* top = tree.dictionary(KeyName("frameTree"));
  const PlistDictionary* frame = top ? top->dictionary(KeyName("frame")) : nullptr;
  if (!frame) throw BrowserFailure("the browser has no page");
  page.call("Page.setDocumentContent", {{KeyName("frameId"), frame->stringValue(KeyName("id"))},
                                        {KeyName("html"), html + ownSheet}});
}

double heightOf(Page& page) {
  const PlistDictionary metrics = page.call("Page.getLayoutMetrics", {});
  const PlistDictionary* size = metrics.dictionary(KeyName("cssContentSize"));
  return size ? size->doubleValue(KeyName("height")) : 0;
}

std::string printed(Page& page, double width, double height) {
  const PlistDictionary answer =
      page.call("Page.printToPDF", {{KeyName("printBackground"), true},
                                    {KeyName("paperWidth"), width / pixelsPerInch},
                                    {KeyName("paperHeight"), height / pixelsPerInch},
                                    {KeyName("marginTop"), 0},
                                    {KeyName("marginBottom"), 0},
                                    {KeyName("marginLeft"), 0},
                                    {KeyName("marginRight"), 0}});
  std::string data(answer.stringValue(KeyName("data")));
  gsize length = 0;
  if (!data.empty()) g_base64_decode_inplace(data.data(), &length);
  data.resize(length);
  if (!data.starts_with("%PDF")) throw BrowserFailure("the browser printed nothing");
  return data;
}

bool hasOneSheet(std::string_view pdf) {
  const std::size_t sheets = pdf.find("/Type /Pages");
  const std::size_t count = pdf.find("/Count ", sheets);
  return count != std::string_view::npos && integerValue(pdf.substr(count + 7, 10)) == 1;
}

std::string pdfOf(const std::string& html, double width) {
  Page page(Browser::shared());
  load(page, html, width);
  const double height = heightOf(page);
  // A sheet of the very height yields a second one now and then.
  for (double more = 1;; more *= 4) {
    const double tall = std::min(height + more, mostInches * pixelsPerInch);
    std::string pdf = printed(page, width, tall);
    if (hasOneSheet(pdf) || tall < height + more || more > 64) return pdf;
  }
}

}  // namespace

std::optional<std::string> WebView::dataWithPDF(NSError* error) const {
  if (!isUTF8(html_)) {
    fail(error, NSCocoaErrorDomain, NSFileWriteUnknownError, "The page is no text in UTF-8.");
    return std::nullopt;
  }
  std::string reason;
  for (int attempt = 0; attempt < 2; ++attempt) {
    try {
      return pdfOf(html_, width_);
    } catch (const BrowserAbsent& absent) {
      fail(error, NSCocoaErrorDomain, NSFileNoSuchFileError,
           std::string("A PDF needs the package ") + absent.what() + ", which isn't installed.");
      return std::nullopt;
    } catch (const BrowserFailure& failure) {
      reason = failure.what();
      Browser::end();
    }
  }
  fail(error, NSCocoaErrorDomain, NSFileWriteUnknownError,
       "The page can't be made a PDF: " + reason + ".");
  return std::nullopt;
}

}  // namespace zym
