#pragma once

#include <string>

#include "zymcore/platform/PlistValue.h"

namespace zym {

/// A dictionary of that many keys, mostly numbers as text, some words.
inline PlistDictionary sampleRow(const std::string& name, int fields) {
  PlistDictionary row;
  for (int i = 0; i < fields; ++i) {
    const std::string key = name + "Field" + std::to_string(i);
    if (i % 4 == 3) {
      row.set(KeyName(key), "Some words, as they are found " + std::to_string(i));
    } else {
      row.setNumber(KeyName(key), 1234.5 / (i + 1));
    }
  }
  return row;
}

/// A document of the usual shape: 60 keys at the top and three lists of rows, 12 KB as JSON.
inline PlistDictionary sampleDocument() {
  PlistDictionary document = sampleRow("Document", 54);
  document.set(KeyName("flag"), true);
  document.set(KeyName("count"), 12);
  document.set(KeyName("share"), 0.75);
  for (const char* name : {"FirstRows", "SecondRows", "ThirdRows"}) {
    PlistArray rows;
    for (int i = 0; i < 7; ++i) rows.append(sampleRow(name, 14));
    document.set(KeyName(name), std::move(rows));
  }
  return document;
}

}  // namespace zym
