#pragma once

#include <string>
#include <string_view>

namespace zym {

/// The text of an XML document in UTF-8, without a byte-order mark, by what the bytes show:
///
/// - UTF-16 or UTF-32 by their mark or by the zeros in their first character;
/// - UTF-8 where at least half of what isn't ASCII is. The rest is taken for Windows-1252, but for
///   a character cut off by the end;
/// - otherwise the declared encoding, if it is one that extends ASCII, and Windows-1252 for want of
///   one or for its subset ISO-8859-1.
///
/// The text is that of the bytes, where they are UTF-8 already, or of `converted`.
[[nodiscard]] std::string_view textOfXML(std::string_view bytes, std::string& converted);

/// Whether the bytes begin with the declaration of an encoding that is known and not UTF-8.
[[nodiscard]] bool declaresOtherEncoding(std::string_view bytes);

}  // namespace zym
