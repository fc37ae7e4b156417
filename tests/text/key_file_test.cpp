#include "text/key_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnby {
namespace {

TEST(KeyFile, reads_what_programs_write) {
  const auto file = KeyFile::parse(
      "\xEF\xBB\xBF# comment\r\n"
      "before=any group\n"
      "[Group One]\r\n"
      "  Key = a value  \r\n"
      "Key=not the first\n"
      "Key[de]=ein Wert\n"
      "Path=/a=b;c\n"
      "Empty=\n"
      "; comment=1\n"
      "=no key\n"
      "no equals sign\n"
      "[not closed\n"
      "Still=here\n"
      "[Other]\n"
      "Escaped=\\stab\\tline\\nreturn\\rslash\\\\n\\x\\\n"
      "[Group One]\n"
      "Later=same group\n"
      "Last=without an end");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->groups(), (std::vector<std::string>{"", "Group One", "Other"}));
  EXPECT_EQ(file->value("", "before"), "any group");
  EXPECT_EQ(file->value("Group One", "Key"), "a value");
  EXPECT_EQ(file->value("Group One", "Path"), "/a=b;c");
  EXPECT_EQ(file->value("Group One", "Empty"), "");
  EXPECT_EQ(file->value("Group One", "Still"), "here");
  EXPECT_EQ(file->value("Group One", "Later"), "same group");
  EXPECT_EQ(file->value("Group One", "Last"), "without an end");
  EXPECT_EQ(file->value("Other", "Escaped"), " tab\tline\nreturn\rslash\\n\\x\\");
  EXPECT_EQ(file->value("Other", "Key"), std::nullopt);
  EXPECT_EQ(file->value("No group", "Key"), std::nullopt);
}

TEST(KeyFile, refuses_what_no_program_writes) {
  std::string groups;
  for (int group = 0; group < 2'000; ++group) groups += "[" + std::to_string(group) + "]\na=b\n";
  std::string lines;
  for (int line = 0; line < 30'000; ++line) lines += "a=b\n";
  EXPECT_FALSE(KeyFile::parse(groups));
  EXPECT_FALSE(KeyFile::parse(lines));
  EXPECT_FALSE(KeyFile::parse(std::string(2U << 20U, ' ')));
  EXPECT_TRUE(KeyFile::parse(""));
}

TEST(KeyFile, locales_are_ranked_by_what_a_person_wants) {
  const std::vector<std::string> wanted = {"de-AT", "fr-CA", "en-US", "ja-JP"};
  const std::pair<const char*, std::optional<std::size_t>> cases[] = {
      {"de_AT", 0},  {"de_AT.UTF-8", 0}, {"de", 1}, {"fr_CA", 2}, {"fr", 3},        {"en_US", 4},  {"en", 5},
      {"de_CH", {}}, {"fr_FR", {}},      {"d", {}}, {"", {}},     {"de@latin", {}}, {"ja_JP", {}},  // texts without a
                                                                                                    // locale are
                                                                                                    // English, which is
                                                                                                    // wanted before
                                                                                                    // Japanese
  };
  for (const auto& [locale, rank] : cases) EXPECT_EQ(locale_rank(locale, wanted), rank) << locale;
}

}  // namespace
}  // namespace tarnby
