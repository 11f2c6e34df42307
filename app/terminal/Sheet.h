#pragma once

#include <ostream>
#include <string_view>

#include "app/terminal/Table.h"

namespace zym::host {

/// Writes a sheet, part by part.
class Sheet {
 public:
  /// Whether headings may be set off by more than their place.
  enum class Look { Plain, Terminal };

  Sheet(std::ostream& out, Look look) : out_(out), look_(look) {}

  void title(std::string_view text);
  /// A line below the title.
  void remark(std::string_view text);
  /// A heading and the table below it; nothing for an empty table.
  void section(std::string_view heading, const Table& table);
  /// A heading and a text of any origin below it, its lines kept and broken where they don't fit;
  /// nothing for a blank text.
  void section(std::string_view heading, std::string_view text);

 private:
  void heading(std::string_view text);

  std::ostream& out_;
  Look look_;
};

}  // namespace zym::host
