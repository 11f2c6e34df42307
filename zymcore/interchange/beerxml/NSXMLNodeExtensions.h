#pragma once

#include <optional>
#include <string_view>

#include "zymcore/platform/formats/NSXMLNode.h"

namespace zym {

/// The first of that very name among the node and the siblings after it; absent when there is none,
/// or no node to begin with.
[[nodiscard]] std::optional<NSXMLNode> siblingWithName(std::optional<NSXMLNode> node,
                                                       std::string_view name) noexcept;

}  // namespace zym
