#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zym {

class XMLTreeBuilder;

/// Reads XML that may be anything but XML into a tree, in time that grows with the length of the
/// text. Of well-formed XML it reads the elements and texts that any reader does, but that entities
/// which the document type declares stay as they are spelled. Otherwise: what can't be a tag is
/// text; an end tag belongs to the nearest element of its name; one that belongs to none is passed
/// over, unless it is the misspelled end of an element that holds text and markup follows; unknown
/// entities stay as they are spelled; characters that XML doesn't allow are left out.
class XMLReader {
 public:
  /// The text is UTF-8 and stays where it is while it is read.
  XMLReader(std::string_view text, XMLTreeBuilder& tree) noexcept : text_(text), tree_(tree) {}

  void read();
  /// What the first thing was that isn't XML, and its line; empty when there was none.
  [[nodiscard]] const std::string& damage() const noexcept { return damage_; }

 private:
  /// Finds the next of a mark. It is asked for places that never go back, so that a mark that isn't
  /// there is looked for once.
  struct Mark {
    std::string_view mark;
    std::size_t next = 0;
    std::size_t find(std::string_view text, std::size_t from) noexcept;
  };

  // Each takes what begins here. Those that answer false leave it, since it isn't what it seems.
  [[nodiscard]] bool readMarkup();
  [[nodiscard]] bool readStartTag();
  [[nodiscard]] bool readEndTag();
  [[nodiscard]] bool readCDATA();
  [[nodiscard]] bool skipComment();
  [[nodiscard]] bool skipInstruction();
  [[nodiscard]] bool skipDocumentType();
  [[nodiscard]] bool skipBroken(std::string_view what);
  void readText();
  void readReference();

  void endElement(std::string_view name);
  void addText(std::string_view text);
  void addCharacters(std::string_view text);
  void damage(std::string_view what, std::string_view name, std::string_view end);

  [[nodiscard]] bool isAt(std::size_t place, std::string_view mark) const noexcept;
  [[nodiscard]] std::size_t endOfName(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfBlanks(std::size_t place) const noexcept;
  [[nodiscard]] std::size_t endOfAttribute(std::size_t place);
  [[nodiscard]] std::size_t nextBracket(std::size_t place) const noexcept;

  std::string_view text_;
  XMLTreeBuilder& tree_;
  std::size_t at_ = 0;
  Mark commentEnd_{"-->"};
  Mark instructionEnd_{"?>"};
  Mark CDATAEnd_{"]]>"};
  bool hasDocumentType_ = false;
  std::string damage_;
};

}  // namespace zym
