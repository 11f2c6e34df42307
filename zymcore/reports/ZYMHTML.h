#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "zymcore/platform/values/PlistValue.h"

namespace zym {

/// Pages: templates of the host, filled with what is worked out here.
///
/// A template is a resource of the main bundle of type "html". A marker in it, "<*KEYNAME=Key>",
/// stands for the value under that key (`PageKeys.h`); words are values as well, so a template
/// holds none of its own. Figures are in the user's units, words in the user's language. The texts
/// of documents are text and never markup: they are escaped as they become values, and a marker in
/// one prints as what it is. What can't be shown as a number prints as "-".
///
/// A template that is missing gives an empty page, or an empty table where it is that of a row.
/// Nothing fails and nothing is reported. Main thread, but where it says otherwise.
class ZYMHTML {
 public:
  ZYMHTML() = delete;

  // Filling in. Any thread.

  /// The text with each marker replaced by its value: the first one, until there is none. So a
  /// marker in a value is replaced in turn. An unknown key, or a value that is no text, leaves
  /// nothing. A marker without an end stays, with all that follows; so does what is left when
  /// values of 64 MB have been put in, as when a value names itself. Absent values, or none, leave
  /// the text as it is; an absent text is "".
  [[nodiscard]] static std::string replaceKeysInString_fromDictionary(
      std::optional<std::string_view> text, const PlistDictionary* values);
  /// Adds "FontName", "Viewport" and "ZoomFactor".
  static void insertHTMLHeader(PlistDictionary& values);
  /// The array under `name` in the property list of that name, sorted by what its dictionaries have
  /// under the key; as it is for the key "". Absent when there is none.
  [[nodiscard]] static std::optional<PlistArray> loadConfigFileNamed_sortedOnKey(
      std::string_view name, std::string_view key);
  /// As the people of the locale write it, rounded half to even.
  [[nodiscard]] static std::string trimToOneDecimalPlace(const PlistValue* value);
  [[nodiscard]] static std::string trimToOneDecimalPlaceAppendingPercent(const PlistValue* value);

  // Sheets. The document is recalculated in place and its additions are sorted.

  [[nodiscard]] static std::string renderRecipeToHTMLForWeb(PlistDictionary& recipe);
  [[nodiscard]] static std::string renderBatchToHTMLForWeb(PlistDictionary& batch);
  /// Plain text: nothing is escaped.
  [[nodiscard]] static std::string renderRecipeToStringForClipboard(PlistDictionary& recipe);
  /// 0 a recipe, 1 a batch, 2 a recipe and 3 a batch for the clipboard.
  [[nodiscard]] static std::string renderItemToHTML_type(PlistDictionary& item, std::int64_t type);

  // The brew day.

  /// What to weigh, heat, add and do, in order, with the water and heat of the mash worked out.
  /// The batch stays as it is. Reads "Boiling Point".
  [[nodiscard]] static std::string renderToHTMLBatchInstructions(const PlistDictionary& batch);
  /// Stores a list of the additions under `arrayKey` that are made at that time, each with the lots
  /// it takes; "" when there are none. The title is a text of the page.
  static void processAdditionFromRecipe_forWhen_arrayKey_intoKey_inDictionary_withTitle(
      const PlistDictionary& recipe, std::string_view when, KeyName arrayKey, KeyName intoKey,
      PlistDictionary& values, std::optional<std::string_view> title);
  static void processHopAdditionFromRecipe_forWhen_intoKey_inDictionary_withTitle(
      const PlistDictionary& recipe, std::string_view when, KeyName intoKey,
      PlistDictionary& values, std::optional<std::string_view> title);

  // Stock. Records of inventory items, of one type of ingredient; "" without a template.

  using Renderer = std::function<std::string(const PlistDictionary& record)>;
  [[nodiscard]] static std::string renderToHTMLInventoryItems_ofIngredientType(
      const PlistArray& items, std::string_view type);
  /// A list of the items, each with its lots.
  [[nodiscard]] static std::string inventoryItems_itemRenderer_batchRenderer(
      const PlistArray& items, const Renderer& itemRenderer, const Renderer& batchRenderer);
  static void processFermentableInventoryItems_intoTemplateValues(const PlistArray& items,
                                                                  PlistDictionary& values);
  static void processHopInventoryItems_intoTemplateValues(const PlistArray& items,
                                                          PlistDictionary& values);
  static void processOtherIngredientInventoryItems_intoTemplateValues(const PlistArray& items,
                                                                      PlistDictionary& values);
  static void processYeastInventoryItems_intoTemplateValues(const PlistArray& items,
                                                            PlistDictionary& values);

  // What can be brewed. Any thread.

  /// Of a dictionary with "brewToday", "needOne", "needTwo" and "needThree", each an array of
  /// entries: "RecipeTitle", and in "Ingredient" the rows of what is short.
  [[nodiscard]] static std::string renderToHTMLSuggestABeer(const PlistDictionary& groups);
  /// A list of one of those arrays; null for none.
  [[nodiscard]] static std::string parseSuggestABeerEntry(const PlistArray* entries);
  /// The words of the page, translated, under their keys.
  [[nodiscard]] static PlistDictionary suggestABeerLocalization();
};

}  // namespace zym
