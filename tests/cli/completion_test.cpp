#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

namespace {

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// What bash offers for the last of these words.
std::vector<std::string> offered(const CliHome& home, const Words& words) {
  ProgramRun run = home.bare({});
  run.words = {"/bin/bash", "--norc", "-c",
               R"(source "$0"; COMP_WORDS=(tarnby-cleaner-cli "$@"); COMP_CWORD=$#; _tarnby_cleaner_cli
                  [[ ${#COMPREPLY[@]} -eq 0 ]] || printf '%s\n' "${COMPREPLY[@]}")",
               TARNBY_COMPLETION};
  run.words.insert(run.words.end(), words.begin(), words.end());
  run.environment["PATH"] = "/usr/bin:/bin";
  run.folder = home.path("");
  const ProgramResult result = run_program(run);
  EXPECT_EQ(result.err, "");
  std::vector<std::string> offers = lines_of(result.out);
  std::sort(offers.begin(), offers.end());
  return offers;
}

/// The first words of the lines of a help text that begin with two blanks, below these titles.
std::vector<std::string> listed(const std::string& help, const std::string& title) {
  std::vector<std::string> found;
  bool is_below = false;
  for (const std::string& line : lines_of(help)) {
    if (!line.starts_with("  ")) {
      is_below = line.starts_with(title);
    } else if (is_below) {
      found.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace

TEST(Completion, offers_what_the_help_lists) {
  CliHome home;
  const std::string help = home.run_bare({"--help"}).out;
  const auto commands = listed(help, "Commands:");
  EXPECT_THAT(commands, IsSupersetOf({"scan", "clean"}));
  EXPECT_EQ(offered(home, {""}), commands);
  EXPECT_EQ(offered(home, {"scan", "-"}), listed(help, "Options"));
  EXPECT_EQ(offered(home, {"clean", ""}), listed(home.run_bare({"clean", "--help"}).out, "Groups:"));
  EXPECT_EQ(offered(home, {"grant", ""}), listed(home.run_bare({"grant", "--help"}).out, "Names:"));

  std::vector<std::string> keys;
  const Json settings = home.run_bare_json({"settings"});
  for (const auto& [key, value] : settings.items()) {
    keys.push_back(key == "Uninstaller Orvane" ? "Uninstaller\\ Orvane" : key);
  }
  std::sort(keys.begin(), keys.end());
  EXPECT_EQ(offered(home, {"settings", ""}), keys);
}

TEST(Completion, knows_what_belongs_where) {
  CliHome home;
  home.tree().folder("My Folder").folder("Music").file("a file");
  struct Case {
    const char* why;
    Words words;
    std::vector<std::string> offers;
  };
  const Case cases[] = {
      {"the beginning of a command", {"s"}, {"scan", "settings"}},
      {"a command after an option and its value", {"--home", "/x", "--quiet", "ap"}, {"app", "apps"}},
      {"an option's value is no command", {"--home", "scan", "sc"}, {"scan"}},
      {"more than one group", {"clean", "logs", "tr"}, {"trash"}},
      {"folders and nothing else for a folder", {"scan", "--home", "M"}, {"Music", "My Folder"}},
      {"a folder after \"=\"", {"scan", "--home", "=", "Mu"}, {"Music"}},
      {"the second word of a grant is a folder", {"grant", "home", "M"}, {"Music", "My Folder"}},
      {"a setting for this run", {"--set", "Cac"}, {"Caches="}},
      {"no setting to type a value for", {"--set", "hom"}, {}},
      {"a value", {"settings", "Caches", ""}, {"false", "true"}},
      {"no words after a scan", {"scan", ""}, {}},
      {"nothing of that beginning", {"xyz"}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    EXPECT_EQ(offered(home, c.words), c.offers);
  }
}

}  // namespace tarnby::test
