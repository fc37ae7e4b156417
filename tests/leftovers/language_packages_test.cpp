#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "leftovers/remainders.h"
#include "platform/platform.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Paths = std::vector<std::string>;

/// The names of the folders that are listed for an application of this identifier.
Paths listed(const Paths& languages, const std::string& identifier = "com.example.a") {
  test::TestPlatform user;
  const_cast<Session&>(user.platform.session).preferred_languages = languages;
  user.application("Applications/A.app", identifier);
  for (const char* name : {"Base.lproj", "DE.LPROJ", "Dutch.lproj", "English.lproj", "German.old.lproj",
                           "Portuguese.lproj", "base.lproj", "de.lproj", "de.strings", "en_GB.lproj", "es.lproj",
                           "fr.lproj", "fr_CA.lproj", "nl.lproj", "pt_BR.lproj", "slovenian.lproj", "zh_es.lproj"}) {
    user.tree.folder("Applications/A.app/Contents/Resources/" + std::string(name));
  }
  user.tree.folder("Applications/A.app/Contents/Resources/.nl.lproj");
  const Application inventory(user.platform);
  const Cache cache(user.platform, inventory);
  Remainders remainders(user.platform, cache);
  EXPECT_THAT(remainders.language_packages(), IsEmpty()) << "no search has found applications yet";
  remainders.remianders();
  Paths names;
  for (const Url& package : remainders.language_packages()) names.emplace_back(package.last_path_component());
  return names;
}

TEST(LanguagePackages, are_what_the_tests_meet_each_as_often_as_they_meet_it) {
  EXPECT_THAT(listed({"en-US"}),
              ElementsAre("DE.LPROJ", "Portuguese.lproj", "base.lproj", "de.lproj", "es.lproj", "fr.lproj",
                          "fr_CA.lproj", "nl.lproj", "pt_BR.lproj", "zh_es.lproj", "zh_es.lproj"))
      << "what holds \"en\" stays, for whatever reason, and so do languages written in full";
  EXPECT_THAT(listed({"fr-CA", "zh-Hans-CN", "nl", "pt"}),
              ElementsAre("DE.LPROJ", "Portuguese.lproj", "base.lproj", "de.lproj", "es.lproj", "zh_es.lproj"))
      << "Portuguese holds \"es\"";
  EXPECT_THAT(listed({"de", "es", "fr", "nl", "pt", "zh", "ba"}), ElementsAre("DE.LPROJ")) << "codes are exact";
}

TEST(LanguagePackages, leave_the_systems_applications_alone_but_for_its_office_suite) {
  const std::pair<const char*, bool> cases[] = {
      {"com.apple.Safari", false}, {"com.apple.iWork.Pages", true}, {"", false}};
  for (const auto& [identifier, is_examined] : cases) {
    EXPECT_EQ(listed({"en"}, identifier).empty(), !is_examined) << identifier;
  }
}

}  // namespace
}  // namespace tarnby
