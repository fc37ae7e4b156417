#include <gtest/gtest.h>

#include <sstream>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

namespace {

using Offers = std::set<std::string>;

/// What bash offers for the last of these words.
Offers offered(const CliHome& home, const Words& words) {
  ProgramRun run = home.bare(words);
  run.words.front() = TARNBY_COMPLETION;
  const std::string script = R"(source "$0"; COMP_WORDS=(tarnby-cleaner-cli "$@"); COMP_CWORD=$#; _tarnby_cleaner_cli
                                printf '%s\n' "${COMPREPLY[@]}")";
  run.words.insert(run.words.begin(), {"/bin/bash", "--norc", "-c", script});
  std::istringstream lines(run_program(run).out);
  Offers offers;
  for (std::string line; std::getline(lines, line);) offers.insert(line);
  return offers;
}

/// The first words of the lines that are indented by two blanks, below titles that begin so.
Offers listed(const ProgramResult& help, const std::string& title) {
  std::istringstream lines(help.out);
  Offers found;
  bool is_below = false;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("  ")) is_below = line.starts_with(title);
    if (is_below && line.starts_with("  ")) found.insert(line.substr(2, line.find(' ', 2) - 2));
  }
  return found;
}

}  // namespace

TEST(Completion, offers_what_the_help_lists) {
  CliHome home;
  const ProgramResult help = home.run_bare({"--help"});
  const std::pair<Words, Offers> cases[] = {
      {{""}, listed(help, "Commands:")},
      {{"scan", "-"}, listed(help, "Options")},
      {{"clean", "logs", ""}, listed(home.run_bare({"clean", "--help"}), "Groups:")},
      {{"cleanup", ""}, listed(home.run_bare({"cleanup", "--help"}), "Categories:")},
      {{"grant", ""}, listed(home.run_bare({"grant", "--help"}), "Names:")},
      {{"--home", "scan", "--quiet", "ap"}, {"app", "apps"}},
      {{"settings", "Caches", ""}, {"false", "true"}},
  };
  for (const auto& [words, offers] : cases) EXPECT_EQ(offered(home, words), offers);
  EXPECT_EQ(offered(home, {"settings", ""}).size(), home.bare_json({"settings"}).size());
}

}  // namespace tarnby::test
