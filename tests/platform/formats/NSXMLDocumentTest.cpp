#include "tests/support/Test.h"
#include "zymcore/platform/formats/NSXMLDocument.h"

namespace zym {
namespace {

std::optional<NSXMLDocument> open(std::string_view bytes, NSError* error = nullptr) {
  return NSXMLDocument::initWithData_options(NSData(bytes), NSXMLDocumentTidyXML, error);
}

// The elements from the node on as "name(children)" and a leaf's text as "name=text".
std::string outline(const NSXMLNode& node) {
  std::string text(node.name());
  if (!node.children().firstObject()) {
    text += "=" + std::string(node.stringValue());
  } else {
    text += "(" + outline(*node.children().firstObject()) + ")";
  }
  if (const auto next = node.nextSibling()) text += " " + outline(*next);
  return text;
}

struct Case {
  std::string_view bytes;
  std::string_view outline;
  std::string_view damage;  // empty for what is well-formed
};

using namespace std::string_view_literals;

constexpr Case cases[] = {
    // Well-formed.
    {"<a>x<b>y</b>z<c/></a >", "a(b=y c=)", ""},
    {"<a x = '>' y=\"/>\"\n/>", "a=", ""},
    {"<?xml version='1.0'?><?p a>b?><!-- <b> --><a>x<!-- - -->y<?q?>z</a><!-- -->\n", "a=xyz", ""},
    {"<a><![CDATA[<&]]]]>&lt;&amp;&gt;&quot;&apos;&#65;&#x1F37A;</a>", "a=<&]]<&>\"'A🍺", ""},
    {"<a><![CDATA[x<![CDATA[y]]>z</a>", "a=x<![CDATA[yz", ""},
    {"<!DOCTYPE a [<?p don't>?>]><a>&b;</a>", "a=&b;", "line 1: an \"&\" that begins no entity"},
    {"<!DOCTYPE a [<!-- ' > --><!ENTITY b '>]'>]><a>\r\n\r</a>", "a=\n\n", ""},
    {"<é:_-.1>ü</é:_-.1>", "é:_-.1=ü", ""},
    // Other encodings, and a character that the end cuts off.
    {"<a>\x80\xE9</a>", "a=€é", ""},
    {"<?xml version='1.0' encoding='ISO-8859-2'?><a>\xB1</a>", "a=ą", ""},
    {"<a>ü\xC3", "a=ü", "line 1: the text ends within <a>"},
    // Tags that match none, cross or never end.
    {"<a><b>x</bb>\n<c/></a>", "a(b=x c=)", "line 1: </bb> ends no element"},
    {"<a>x</br>y</a>", "a=xy", "line 1: </br> ends no element"},
    {"<a><b>x<c>y</c><d/></a>", "a(b=x c=y d=)",
     "line 1: </a> ends an element that isn't the innermost"},
    {"<a><b><c/><b/><d/></a>", "a(b(c=) b= d=)",
     "line 1: </a> ends an element that isn't the innermost"},
    {"<a>\n<b>x", "a(b=x)", "line 2: the text ends within <b>"},
    {"<a/><b/>", "a= b=", "line 1: a second root element <b>"},
    {"<a><b>x</b<c/></a", "a(b=x c=)", "line 1: no end of the tag </b"},
    // Tags that are none.
    {"<a>1 < 2 <3 <b c> <></a>", "a=1 < 2 <3 <b c> <>", "line 1: a \"<\" that begins no tag"},
    {"<a b=c/d e=f/>", "a=", "line 1: the attribute b without quotes"},
    {"<a b=\"c><d/></a>", "a(d=)", "line 1: the attribute b without quotes"},
    {"<a>&b; & &#0; &#xD800;&#99999999999;&#x;</a>", "a=&b; &  &#x;",
     "line 1: an \"&\" that begins no entity"},
    {"<a>&nbsp;&eacute;&diams;&Eacut;</a>", "a=\u00A0é♦&Eacut;",
     "line 1: the entity nbsp, which isn't declared"},
    {"<a>\1\0b</a>"sv, "a=b", "line 1: a character that XML doesn't allow"},
    // What has no end.
    {"<a><!-- b<c/></a>", "a(c=)", "line 1: a comment without an end"},
    {"<a><![CDATA[b</a><c>d</c>", "a=b c=d", "line 1: a CDATA section without an end"},
    {"<?xml version=\"1.0\"<a/>", "a=", "line 1: a processing instruction without an end"},
    {"<!DOCTYPE a [ <a>x</a>", "a=x", "line 1: a document type without an end"},
    // Around the element.
    {"x<a/>", "a=", "line 1: text outside all elements"},
    {"\n<?xml version='1.0'?><a/>", "a=", "line 2: a declaration after the beginning"},
};

TEST(NSXMLDocument, MendsWhatItMay) {
  for (const Case& each : cases) {
    SCOPED_TRACE(each.bytes);
    NSError error;
    const auto tidied = open(each.bytes, &error);
    ASSERT_TRUE(tidied) << error.localizedDescription;
    EXPECT_EQ(outline(tidied->rootElement()), each.outline);
    EXPECT_EQ(error.localizedDescription, each.damage);
  }
}

std::string repeated(std::string_view text, std::size_t count) {
  std::string all;
  all.reserve(text.size() * count);
  while (count-- > 0) all += text;
  return all;
}

struct Bound {
  std::string bytes;
  const char* refusal;  // null for what is read
};

// Each of these keeps a careless reader busy for minutes, or takes all memory or stack.
TEST(NSXMLDocument, StaysWithinBounds) {
  std::string attributes = "<a";
  for (int i = 0; i < 500'000; ++i) attributes += " b" + std::to_string(i) + "=''";
  std::string names = "<a>";
  for (int i = 0; i < 70'000; ++i) names += "<b" + std::to_string(i) + "/>";
  const Bound bounds[] = {
      {"<a>" + repeated("x", 10'000'000) + "</a>", nullptr},
      {repeated("<a>", 100'000), "elements nested deeper than 4096"},
      {"<r>" + repeated("<a/>", 8'000'000), "more than 8000000 elements"},
      {std::move(names), "more than 65536 names of elements"},
      {attributes + "/>", nullptr},
      {attributes, "no element of XML"},
      {repeated("<a>", 4'000) + repeated("</b>", 2'000'000), nullptr},
      {"<a>" + repeated(" ", 4'000'000) + repeated("</b>", 1'000'000), nullptr},
      {"<a>" + repeated("<!--", 2'000'000), nullptr},
      {"<a>" + repeated("<![CDATA[", 1'000'000) + "]]>", nullptr},
      {"<a>" + repeated("<?", 4'000'000), nullptr},
      {"<a>" + repeated("<!DOCTYPE [", 1'000'000), nullptr},
      {"<a>" + repeated("<b c=\"", 1'000'000), nullptr},
      {"<a>" + repeated("&x;", 20'000'000), nullptr},
      {repeated("<a>x", 4'000) + repeated("<b/>", 100'000) + "</c></a>", nullptr},
      {repeated("x", (64U << 20U) + 1), "more than 64 MB of XML"},
  };
  for (const Bound& bound : bounds) {
    SCOPED_TRACE(bound.bytes.substr(0, 20));
    NSError error;
    const auto document = open(bound.bytes, &error);
    EXPECT_EQ(document.has_value(), bound.refusal == nullptr);
    if (bound.refusal) {
      EXPECT_THAT(error.localizedDescription, testing::EndsWith(bound.refusal));
    }
  }
}

}  // namespace
}  // namespace zym
