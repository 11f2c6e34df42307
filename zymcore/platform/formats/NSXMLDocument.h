#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "zymcore/platform/formats/NSXMLNode.h"
#include "zymcore/platform/values/NSData.h"
#include "zymcore/platform/values/NSError.h"

namespace zym {

using NSXMLNodeOptions = std::uint64_t;
/// Imperfect XML is mended as far as it can be. Documents are read in no other way.
inline constexpr NSXMLNodeOptions NSXMLDocumentTidyXML = 1024;

/// The elements and texts of an XML document; attributes aren't kept. A copy shares them.
/// Any thread.
class NSXMLDocument {
 public:
  // What is read at most; more is refused. Time and memory grow with the bytes, whatever they are.
  static constexpr std::size_t mostBytes = 64U << 20U;
  static constexpr std::size_t mostElements = 8'000'000;
  /// Different names of elements.
  static constexpr std::size_t mostNames = 65'536;
  /// Elements within elements.
  static constexpr std::size_t mostLevels = 4'096;

  /// Nothing but the bytes is ever read. Document types are passed over, so that the only entities
  /// are the predefined ones and, for want of better, those of HTML 4; any other stays as it is
  /// spelled. The encoding is what the bytes show: UTF-16, UTF-8, else the single-byte encoding
  /// that is declared, or Windows-1252.
  ///
  /// Absent when there is no element in the bytes and when they are more than is read. The error
  /// says why, and also what was mended first, and in which line, where a document is answered.
  /// Throws `NSInvalidArgumentException` for options that aren't `NSXMLDocumentTidyXML`.
  [[nodiscard]] static std::optional<NSXMLDocument> initWithData_options(const NSData& data,
                                                                         NSXMLNodeOptions options,
                                                                         NSError* error = nullptr);

  /// The first element. Others beside it, which XML forbids, are its siblings.
  [[nodiscard]] NSXMLNode rootElement() const noexcept { return {*tree_, 0}; }

 private:
  explicit NSXMLDocument(std::shared_ptr<const XMLTree> tree) noexcept : tree_(std::move(tree)) {}

  std::shared_ptr<const XMLTree> tree_;
};

}  // namespace zym
