#include "platform/session.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarnby {
namespace {

using Variables = std::map<std::string, std::string>;

/// The variables a session reads, set to these and to nothing else for as long as this lives.
class Environment {
 public:
  explicit Environment(const Variables& variables) {
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_COLLATE", "LC_NUMERIC",
                             "LANG", "USER", "LOGNAME"}) {
      const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): these tests have one thread
      before_.emplace_back(name, value == nullptr ? std::nullopt : std::optional<std::string>(value));
      put(name, std::nullopt);
    }
    for (const auto& [name, value] : variables) put(name, value);
  }
  ~Environment() {
    for (const auto& [name, value] : before_) put(name, value);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  static void put(const std::string& name, const std::optional<std::string>& value) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): these tests have one thread
    const int failed = value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    ASSERT_EQ(failed, 0);
  }

  std::vector<std::pair<std::string, std::optional<std::string>>> before_;
};

Session session_with(const Variables& variables) {
  const Environment environment(variables);
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
      {"a relative HOME names nothing", {{"HOME", "h/me"}}, own, own + "/.config/tarnby-cleaner"},
      {"settings where they are asked for", {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "/c"}}, "/h", "/c/tarnby-cleaner"},
      {"not in a relative place", {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "c"}}, "/h", "/h/.config/tarnby-cleaner"},
      {"nor below the root", {{"HOME", "/h"}, {"XDG_CONFIG_HOME", ""}}, "/h", "/h/.config/tarnby-cleaner"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const Session session = session_with(c.variables);
    EXPECT_EQ(session.home_folder.path(), c.home);
    EXPECT_EQ(session.settings_folder.path(), c.settings);
  }
  EXPECT_EQ(session_with({{"USER", "somebody-else"}}).user_name, account->pw_name) << "the account decides, not a name";
}

TEST(Session, languages_come_in_order_and_once) {
  using Languages = std::vector<std::string>;
  struct Case {
    const char* why;
    Variables variables;
    Languages languages;
  };
  const Case cases[] = {
      {"nothing set", {}, {}},
      {"LANG alone", {{"LANG", "de_DE.UTF-8@euro"}}, {"de-DE"}},
      {"LANGUAGE goes first", {{"LANGUAGE", "fr_CA:fr"}, {"LANG", "en_US.UTF-8"}}, {"fr-CA", "fr", "en-US"}},
      {"the rest in their order",
       {{"LANG", "it_IT"}, {"LC_MESSAGES", "da_DK"}, {"LC_ALL", "nl_NL"}},
       {"nl-NL", "da-DK", "it-IT"}},
      {"none twice", {{"LANGUAGE", "de_DE"}, {"LC_ALL", "de_DE.UTF-8"}, {"LANG", "de_DE"}}, {"de-DE"}},
      {"C asks for untranslated texts", {{"LANGUAGE", "fr"}, {"LC_ALL", "C.UTF-8"}}, {}},
      {"an empty LC_ALL decides nothing", {{"LANGUAGE", "fr"}, {"LC_ALL", ""}, {"LANG", "da_DK"}}, {"fr", "da-DK"}},
      {"LANGUAGE alone is a wish all the same", {{"LANGUAGE", "fr"}}, {"fr"}},
      {"C among others adds nothing", {{"LANGUAGE", "C:sv"}, {"LC_MESSAGES", "sv_SE"}, {"LANG", "C"}}, {"sv", "sv-SE"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(session_with(c.variables).preferred_languages, c.languages);
  }
  EXPECT_EQ(languages_from_list(" en_us, ,POSIX,zh_Hans_CN,EN,C.UTF-8,,", ','),
            (Languages{"en-US", "zh-Hans-CN", "en"}));
}

TEST(Session, each_locale_category_has_its_own_variable) {
  const Session own = session_with({{"LANG", "a"}, {"LC_COLLATE", "b"}, {"LC_NUMERIC", "c"}, {"LC_ALL", ""}});
  EXPECT_EQ(own.collation_locale, "b");
  EXPECT_EQ(own.number_locale, "c");
  const Session all = session_with({{"LANG", "a"}, {"LC_COLLATE", "b"}, {"LC_NUMERIC", "c"}, {"LC_ALL", "d"}});
  EXPECT_EQ(all.collation_locale, "d");
  EXPECT_EQ(all.number_locale, "d");
  EXPECT_EQ(session_with({}).collation_locale, "");
}

}  // namespace
}  // namespace tarnby
