#include "platform/session.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tarnby {
namespace {

using Variables = std::map<std::string, std::string>;

/// The session where the variables it reads have these values and no others.
Session session_with(const Variables& variables) {
  for (const char* name : {"HOME", "XDG_CONFIG_HOME", "LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_COLLATE", "LC_NUMERIC",
                           "LANG", "USER", "LOGNAME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"}) {
    const auto given = variables.find(name);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): these tests have one thread
    const int failed = given == variables.end() ? unsetenv(name) : setenv(name, given->second.c_str(), 1);
    EXPECT_EQ(failed, 0);
  }
  return current_session();
}

TEST(Session, folders_come_from_absolute_paths_only) {
  const passwd* account = getpwuid(geteuid());  // NOLINT(concurrency-mt-unsafe): these tests have one thread
  ASSERT_NE(account, nullptr);
  const std::string own = account->pw_dir;
  struct Case {
    const char* why;
    Variables variables;
    std::string home;
    std::string settings;
  };
  const Case cases[] = {
      {"HOME is believed", {{"HOME", "/h/me/"}}, "/h/me", "/h/me/.config/tarnby-cleaner"},
      {"no HOME: the account's", {}, own, own + "/.config/tarnby-cleaner"},
      {"an empty HOME is not the root", {{"HOME", ""}}, own, own + "/.config/tarnby-cleaner"},
      {"settings where they are asked for", {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "/c"}}, "/h", "/c/tarnby-cleaner"},
      {"not in a relative place", {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "c"}}, "/h", "/h/.config/tarnby-cleaner"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const Session session = session_with(c.variables);
    EXPECT_EQ(session.home_folder.path(), c.home);
    EXPECT_EQ(session.settings_folder.path(), c.settings);
  }
  EXPECT_EQ(session_with({{"XDG_RUNTIME_DIR", "/run/user/1"}}).runtime_folder, Url::file("/run/user/1"));
  EXPECT_TRUE(session_with({{"XDG_RUNTIME_DIR", "run"}}).runtime_folder.empty());
  EXPECT_EQ(session_with({{"XDG_CACHE_HOME", "c/"}}).base_folders.cache, "c/") << "as it is said; who uses it decides";
  EXPECT_EQ(session_with({{"USER", "somebody-else"}}).user_name, account->pw_name) << "the account decides, not a name";
}

TEST(Session, languages_come_in_order_and_once) {
  using Languages = std::vector<std::string>;
  const std::pair<Variables, Languages> cases[] = {
      {{{"LANGUAGE", "fr_CA:fr"}, {"LC_ALL", ""}, {"LANG", "en_US.UTF-8"}}, {"fr-CA", "fr", "en-US"}},
      {{{"LANG", "it_IT"}, {"LC_MESSAGES", "da_DK"}, {"LC_ALL", "nl_NL@euro"}}, {"nl-NL", "da-DK", "it-IT"}},
      {{{"LANGUAGE", "de_DE"}, {"LC_ALL", "de_DE.UTF-8"}, {"LANG", "de_DE"}}, {"de-DE"}},
      {{{"LANGUAGE", "fr"}, {"LC_ALL", "C.UTF-8"}}, {}},
  };
  for (const auto& [variables, languages] : cases) EXPECT_EQ(session_with(variables).preferred_languages, languages);
}

}  // namespace
}  // namespace tarnby
