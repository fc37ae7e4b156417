#include "text/localization.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/support/temp_tree.h"
#include "text/property_list.h"
#include "text/text.h"

namespace tarnby {
namespace {

using Languages = std::vector<std::string>;

std::string table_saying(const std::string& text) {
  return write_xml_property_list(PropertyList::Dictionary{{"Remove", text}});
}

TEST(Localization, the_first_preferred_language_with_a_sound_table_is_spoken) {
  test::TempTree tree;
  tree.content("de.plist", table_saying("Löschen")).content("zh-Hans.plist", table_saying("移除"));
  tree.content("fr.plist", "<plist><dict><key>Remove</key>").content("es.plist", "");
  struct Case {
    Languages preferred;
    const char* text;
  };
  const Case cases[] = {
      {{}, "Remove"},
      {{"de"}, "Löschen"},
      {{"de-AT"}, "Löschen"},
      {{"it-IT", "de-CH"}, "Löschen"},
      {{"en-GB", "de"}, "Remove"},
      {{"den"}, "Remove"},
      {{"fr"}, "Remove"},
      {{"es", "fr", "de"}, "Löschen"},
      {{"zh"}, "移除"},
      {{"zh-CN"}, "移除"},
      {{"zh-SG"}, "移除"},
      {{"zh-Hans-HK"}, "移除"},
      {{"zh-TW"}, "Remove"},
      {{"zh-Hant-CN"}, "Remove"},
      {{"../x/de", ""}, "Remove"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.preferred));
    EXPECT_EQ(Localization::for_languages(c.preferred, tree.url()).text("Remove"), c.text);
  }
  EXPECT_EQ(Localization::for_languages(Languages{"de"}, tree.url("nowhere")).text("Remove"), "Remove");
}

TEST(Localization, values_take_their_places_in_any_order) {
  const Localization swapped({{"%@ in %@ entries|other", "%2$@件で%1$@"}, {"100%, %@", "%@ (100%)"}}, "ja");
  const std::string two[] = {"1 MB", "3"};
  EXPECT_EQ(swapped.plural(3, "%@ in one entry", "%@ in %@ entries", two), "3件で1 MB");
  EXPECT_EQ(swapped.text("100%, %@", two), "1 MB (100%)");
  EXPECT_EQ(Localization().plural(1, "%@ in one entry", "%@ in %@ entries", two), "1 MB in one entry");
}

TEST(Localization, plurals_take_the_form_of_the_language_and_else_the_usual_one) {
  const Localization polish(
      {{"%@ files|one", "%@ plik"}, {"%@ files|few", "%@ pliki"}, {"%@ files|other", "%@ plików"}}, "pl");
  const auto said = [&](std::int64_t count) {
    const std::string values[] = {std::to_string(count)};
    return polish.plural(count, "%@ file", "%@ files", values);
  };
  EXPECT_EQ(said(1), "1 plik");
  EXPECT_EQ(said(22), "22 pliki");
  EXPECT_EQ(said(5), "5 plików") << "the table lacks the form \"many\"";
  for (const auto& [language, of_none, of_one, of_two] :
       std::initializer_list<std::array<const char*, 4>>{{"en", "other", "one", "other"},
                                                         {"fr", "one", "one", "other"},
                                                         {"ja", "other", "other", "other"},
                                                         {"zh-Hans", "other", "other", "other"},
                                                         {"ar", "zero", "one", "two"},
                                                         {"", "other", "other", "other"}}) {
    EXPECT_EQ(plural_category(language, 0), of_none) << language;
    EXPECT_EQ(plural_category(language, 1), of_one) << language;
    EXPECT_EQ(plural_category(language, 2), of_two) << language;
  }
}

TEST(Localization, byte_counts_take_the_units_of_the_language_and_the_numbers_of_the_locale) {
  const Localization french({{"%@ GB", "%@ Go"}, {"%@ bytes|one", "%@ octet"}, {"%@ bytes|other", "%@ octets"}}, "fr");
  const Text text("C", "fr_FR", french);
  EXPECT_EQ(text.byte_count(1'500'000'000), "1,5 Go");
  EXPECT_EQ(text.byte_count(-1), "-1 octet");
  EXPECT_EQ(text.byte_count(2), "2 octets");
  EXPECT_EQ(text.byte_count(0), "Zero KB") << "what the table lacks stays English";
}

}  // namespace
}  // namespace tarnby
