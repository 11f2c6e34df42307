#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "zymcore/interchange/xmlnodes/GDataXMLDocument.h"

namespace zym {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Node = GDataXMLNode;
using Element = GDataXMLElement;
using Document = GDataXMLDocument;

std::unique_ptr<Document> parsed(std::string_view text) {
  return Document::initWithXMLString_options(text, 0);
}

template <class Nodes>
std::vector<std::string> textsOf(const Nodes& nodes) {
  std::vector<std::string> texts;
  for (const auto& node : nodes) texts.push_back(node->XMLString());
  return texts;
}

TEST(GDataXMLDocument, WritesWhatItReads) {
  const std::pair<const char*, const char*> cases[] = {
      {"<a> <b>x</b>\n\t<b/> </a>", "<a><b>x</b><b/></a>"},
      {"<a><![CDATA[<&>]]></a>", "<a>&lt;&amp;&gt;</a>"},
      {"<a b='1' c=\"&quot;\"/>", "<a b=\"1\" c=\"&quot;\"/>"},
      {"<a xmlns='u' xmlns:p='v'><p:b p:c='1'/></a>",
       "<a xmlns=\"u\" xmlns:p=\"v\"><p:b p:c=\"1\"/></a>"},
      {"<a>\xC3\xA4 <!-- c --> <?pi x?> mixed</a>", "<a>\xC3\xA4 <!-- c --> <?pi x?> mixed</a>"},
      {"<!DOCTYPE a [<!ENTITY e 'text'>]><a>&e;</a>", "<a>&e;</a>"},
  };
  for (const auto& [text, written] : cases) {
    const auto document = parsed(text);
    ASSERT_TRUE(document) << text;
    EXPECT_EQ(document->rootElement()->XMLString(), written);
    const auto element = Element::initWithXMLString(text);
    ASSERT_TRUE(element);
    EXPECT_EQ(element->copy()->XMLString(), element->XMLString());
  }
  const auto document = parsed("<a/>");
  document->setVersion("1.1");
  document->setCharacterEncoding("ISO-8859-1");
  document->rootElement()->setStringValue("\xC3\xA4<");
  EXPECT_EQ(document->XMLData(),
            "<?xml version=\"1.1\" encoding=\"ISO-8859-1\"?>\n<a>\xE4&lt;</a>\n");
}

TEST(GDataXMLDocument, RefusesWhatIsNoneOrCostsTooMuch) {
  std::string manyAttributes = "<a";
  for (int i = 0; i < 200000; ++i) manyAttributes += " a" + std::to_string(i) + "=''";
  std::string laughs = "<!DOCTYPE a [<!ENTITY l0 'lol'>";
  for (int i = 1; i < 12; ++i) {
    laughs += "<!ENTITY l" + std::to_string(i) + " '";
    for (int k = 0; k < 10; ++k) laughs += "&l" + std::to_string(i - 1) + ";";
    laughs += "'>";
  }
  const std::string big = "<!DOCTYPE a [<!ENTITY e '" + std::string(100000, 'x') + "'>]><a>";
  std::string references;
  for (int i = 0; i < 1000; ++i) references += "&e;";
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  const auto begin = std::chrono::steady_clock::now();
  for (const std::string& text :
       {std::string(), std::string("text"), std::string("<a>"), std::string("<a></b>"),
        std::string("<a b='1' b='2'/>"), manyAttributes + "/>", laughs + "]><a>&l11;</a>",
        std::string("<!DOCTYPE a [<!ENTITY e '&e;'>]><a b='&e;'/>"), big + references + "</a>",
        deep}) {
    NSError error;
    EXPECT_FALSE(Document::initWithData_options(text, 0, &error)) << text.substr(0, 60);
    EXPECT_EQ(error.code, -1);
    EXPECT_FALSE(Element::initWithXMLString(text));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST(GDataXMLNode, TellsWhatItIs) {
  const auto document = parsed(
      "<p:a xmlns:p='u' xmlns='d' xml:lang='de' x='1'>t<!--c--><?i n?><b/><c>1<d>2</d></c></p:a>");
  const auto root = document->rootElement();
  const struct {
    GDataXMLNodeKind kind;
    const char *name, *value;
  } cases[] = {{GDataXMLNodeKind::Text, "text", "t"},
               {GDataXMLNodeKind::Comment, "comment", "c"},
               {GDataXMLNodeKind::ProcessingInstruction, "i", "n"},
               {GDataXMLNodeKind::Element, "b", ""},
               {GDataXMLNodeKind::Element, "c", "12"}};
  ASSERT_EQ(root->childCount(), std::size(cases));
  Node::Pointer node = root->childAtIndex(0);
  for (std::size_t i = 0; i < std::size(cases); ++i, node = node->nextSibling()) {
    EXPECT_TRUE(node->isEqual(root->childAtIndex(i).get()));
    EXPECT_EQ(node->kind(), cases[i].kind);
    EXPECT_EQ(node->name() ? *node->name() : "-", cases[i].name);
    EXPECT_EQ(node->stringValue(), cases[i].value);
  }
  EXPECT_EQ(node, nullptr);
  EXPECT_EQ(root->childAtIndex(5), nullptr);
  EXPECT_EQ(*root->name(), "p:a");
  EXPECT_EQ(root->localName() + root->prefix() + root->URI().value(), "apu");
  EXPECT_EQ(root->childAtIndex(3)->URI(), "d");
  EXPECT_THAT(textsOf(root->namespaces()), ElementsAre("xmlns:p=\"u\"", "xmlns=\"d\""));
  EXPECT_EQ(root->namespaces()[1]->qualifiedName(), "");
  EXPECT_EQ(root->namespaces()[0]->stringValue(), "u");
  EXPECT_EQ(root->attributes()[0]->prefix(), "xml");
  EXPECT_EQ(root->resolvePrefixForNamespaceURI("d"), "");
  EXPECT_EQ(root->resolvePrefixForNamespaceURI("u"), "p");
  EXPECT_EQ(root->resolvePrefixForNamespaceURI("none"), std::nullopt);
  // Equal names of a document are one text.
  const auto two = parsed("<a><b/><b/></a>");
  EXPECT_EQ(two->rootElement()->childAtIndex(0)->name(),
            two->rootElement()->childAtIndex(1)->name());
  EXPECT_FALSE(root->isEqual(nullptr));
  EXPECT_FALSE(root->isEqual(two->rootElement().get()));
  EXPECT_TRUE(two->rootElement()->isEqual(Element::initWithXMLString("<a x='1'>1<c/></a>").get()));
  EXPECT_EQ(Node::hash(), Node::hash());

  EXPECT_EQ(Node::localNameForName("a:b:c"), "b:c");
  EXPECT_EQ(Node::localNameForName("a:"), "a:");
  EXPECT_EQ(Node::prefixForName("a:b:c"), "a");
  EXPECT_EQ(Node::prefixForName("a"), std::nullopt);
}

TEST(GDataXMLElement, IsBuiltWithTheNamespacesOfItsTree) {
  const auto root = Node::elementWithName("r");
  root->addNamespace(*Node::namespaceWithName_stringValue("p", "u"));
  root->addNamespace(*Node::namespaceWithName_stringValue("p", "other"));
  root->addNamespace(*Node::namespaceWithName_stringValue("", "d"));
  root->addChild(*Node::elementWithName_URI("x:a", "u"));
  root->addChild(*Node::elementWithName_URI("b", "nowhere"));
  root->addChild(*Node::elementWithName("p:c"));
  root->addChild(*Node::elementWithName("q:d"));
  root->addChild(*Node::attributeWithName_stringValue("k", "<1>"));
  root->addAttribute(*Node::attributeWithName_URI_stringValue("l", "u", "2"));
  root->addAttribute(*Node::attributeWithName_stringValue("k", "again"));
  root->addChild(*Node::textWithStringValue("a&b"));
  // A declaration that the tree has already goes.
  root->addChild(*Element::initWithXMLString("<p:e xmlns:p='u' xmlns:z='w'><p:f/></p:e>"));
  EXPECT_EQ(
      root->XMLString(),
      "<r xmlns:p=\"u\" xmlns=\"d\" k=\"&lt;1&gt;\" p:l=\"2\"><p:a/><{nowhere}:b/><p:c/><q:d/>"
      "a&amp;b<p:e xmlns:z=\"w\"><p:f/></p:e></r>");
  EXPECT_THAT(textsOf(root->elementsForName("p:a")), ElementsAre("<p:a/>"));
  EXPECT_THAT(textsOf(root->elementsForName("q:d")), ElementsAre("<q:d/>"));
  EXPECT_THAT(textsOf(root->elementsForLocalName_URI("c", "u")), ElementsAre("<p:c/>"));
  EXPECT_THAT(textsOf(root->elementsForLocalName_URI("b", "nowhere")),
              ElementsAre("<{nowhere}:b/>"));
  EXPECT_THAT(root->elementsForName("a"), IsEmpty());
  EXPECT_EQ(root->attributeForName("k")->stringValue(), "<1>");
  EXPECT_EQ(root->attributeForName("p:l")->stringValue(), "2");
  EXPECT_EQ(root->attributeForLocalName_URI("l", "u"), root->attributes()[1]);
  EXPECT_EQ(root->attributeForName("none"), nullptr);

  root->setNamespaces({Node::namespaceWithName_stringValue("p", "new")});
  EXPECT_EQ(root->childAtIndex(0)->URI(), "new") << "what had the prefix has the new one";
  root->removeChild(*root->childAtIndex(5));
  EXPECT_EQ(root->childCount(), 5U);
  const auto stranger = Node::elementWithName("s");
  root->removeChild(*stranger);
  EXPECT_EQ(Document::initWithRootElement(*root)->rootElement()->childCount(), 5U);
}

TEST(GDataXMLNode, FindsByXPath) {
  const std::string text =
      "<r xmlns='d' xmlns:p='u'><p:a i='1'/><b><p:a i='2'>x</p:a></b><c>1</c><c>2</c></r>";
  const auto document = parsed(text);
  const auto found = [&](const char* xpath) {
    const auto nodes = document->nodesForXPath(xpath);
    return nodes ? textsOf(*nodes) : std::vector<std::string>{"failed"};
  };
  EXPECT_THAT(found("//p:a/@i"), ElementsAre("i=\"1\"", "i=\"2\""));
  EXPECT_THAT(found("//_def_ns:c[2]/text()"), ElementsAre("2"));
  EXPECT_THAT(found("//c"), IsEmpty());
  EXPECT_THAT(found("count(//p:a)"), IsEmpty());
  EXPECT_EQ(found("//p:a/namespace::*").size(), 4U) << "without xml's own";
  const PlistDictionary names{{KeyName("n"), "d"}};
  EXPECT_EQ(document->nodesForXPath_namespaces("//n:c", &names)->size(), 2U);
  EXPECT_EQ(document->rootElement()->childAtIndex(1)->nodesForXPath("*")->size(), 1U);

  NSError error;
  EXPECT_FALSE(document->nodesForXPath("//[", &error));
  EXPECT_NE(error.code, 0);
  EXPECT_FALSE(document->nodesForXPath("//q:a", &error));
  // A tree without a document is queried as one, and is as it was afterwards.
  const auto alone = Element::initWithXMLString("<a><b/><b/></a>");
  const auto first = alone->childAtIndex(0);
  EXPECT_EQ(first->nodesForXPath("/a/b")->size(), 2U);
  EXPECT_EQ(alone->XMLString(), "<a><b/><b/></a>");
  const auto declared = Node::namespaceWithName_stringValue("p", "u");
  EXPECT_FALSE(declared->nodesForXPath("*", &error));
  EXPECT_EQ(error.userInfo.stringValue(KeyName("error")), "invalid node");
}

/// What a tree of elements and texts is, without libxml2.
struct Plain {
  std::string name;
  std::vector<Plain> children;

  [[nodiscard]] std::size_t size() const {
    std::size_t sum = 1;
    for (const Plain& child : children) sum += child.size();
    return sum;
  }
  [[nodiscard]] std::string text() const {
    std::string inner;
    for (const Plain& child : children) inner += child.text();
    return inner.empty() ? "<" + name + "/>" : "<" + name + ">" + inner + "</" + name + ">";
  }
};

TEST(GDataXMLElement, StaysWhatAPlainTreeSays) {
  std::mt19937 random(7);
  const auto upTo = [&](std::size_t n) { return random() % n; };
  for (int round = 0; round < 200; ++round) {
    const auto root = Node::elementWithName("r");
    Plain plain{"r", {}};
    for (int step = 0; step < 40; ++step) {
      // Some element on a random way down.
      std::shared_ptr<GDataXMLElement> at = root;
      Plain* same = &plain;
      while (!same->children.empty() && upTo(3) != 0) {
        const std::size_t i = upTo(same->children.size());
        at = std::static_pointer_cast<GDataXMLElement>(at->childAtIndex(i));
        same = &same->children[i];
      }
      const std::size_t deed = upTo(4);
      if (deed == 0 && !same->children.empty()) {
        const std::size_t i = upTo(same->children.size());
        at->removeChild(*at->childAtIndex(i));
        same->children.erase(same->children.begin() + static_cast<std::ptrdiff_t>(i));
      } else if (deed == 1) {
        if (root->XMLString().size() > 4000) continue;
        const Plain whole = plain;
        at->addChild(*root);
        same->children.push_back(whole);
      } else {
        const std::string name(1, static_cast<char>('a' + upTo(4)));
        at->addChild(*Node::elementWithName(name));
        same->children.push_back({name, {}});
      }
      ASSERT_EQ(root->XMLString(), plain.text());
    }
    EXPECT_EQ(root->nodesForXPath("//*")->size(), plain.size());
  }
}

}  // namespace
}  // namespace zym
