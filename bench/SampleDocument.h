#pragma once

#include <cstdint>
#include <string>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// A document of some 12 KB as a property list: texts, numbers as text, dates, flags, and rows.
inline PlistDictionary sampleDocument(int number) {
  static constexpr KeyName fields[] = {
      KeyName("Alpha"),    KeyName("Amount"),   KeyName("Color"),    KeyName("Description"),
      KeyName("Duration"), KeyName("Extract"),  KeyName("Form"),     KeyName("Index"),
      KeyName("Maker"),    KeyName("Moisture"), KeyName("Name"),     KeyName("Notes"),
      KeyName("Percent"),  KeyName("Price"),    KeyName("Quantity"), KeyName("Unit")};
  static constexpr KeyName lists[] = {KeyName("FirstRows"), KeyName("SecondRows"),
                                      KeyName("ThirdRows"), KeyName("FourthRows")};
  static constexpr KeyName figures[] = {
      KeyName("Figure00"), KeyName("Figure01"), KeyName("Figure02"), KeyName("Figure03"),
      KeyName("Figure04"), KeyName("Figure05"), KeyName("Figure06"), KeyName("Figure07"),
      KeyName("Figure08"), KeyName("Figure09"), KeyName("Figure10"), KeyName("Figure11"),
      KeyName("Figure12"), KeyName("Figure13"), KeyName("Figure14"), KeyName("Figure15"),
      KeyName("Figure16"), KeyName("Figure17"), KeyName("Figure18"), KeyName("Figure19")};
  PlistDictionary document;
  document.set(KeyName("UUID"), "00000000-0000-4000-8000-" + std::to_string(100000000000 + number));
  document.set(KeyName("Title"), "Document number " + std::to_string(number));
  document.set(KeyName("Changed"), NSDate::dateWithTimeIntervalSinceReferenceDate(number));
  document.set(KeyName("Flag"), true);
  document.set(KeyName("Notes"), std::string(1500, 'n'));
  for (const KeyName figure : figures) document.set(figure, "1234.567890");
  for (const KeyName list : lists) {
    PlistArray rows;
    for (int i = 0; i < 8; ++i) {
      PlistDictionary row;
      for (const KeyName field : fields) row.set(field, "12.345678");
      row.set(KeyName("Identity"), "11111111-2222-4333-8444-555555555555");
      row.set(KeyName("Added"), NSDate::dateWithTimeIntervalSinceReferenceDate(i));
      row.set(KeyName("Remark"), "Something said about this row, of a usual length");
      row.set(KeyName("Order"), i);
      rows.append(std::move(row));
    }
    document.set(list, std::move(rows));
  }
  return document;
}

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

/// A document that JSON can hold, of the usual shape: 60 keys at the top and three lists of rows.
/// 12 KB.
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
