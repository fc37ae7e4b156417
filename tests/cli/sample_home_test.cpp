#include <gtest/gtest.h>

#include <sstream>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

TEST(SampleHome, has_something_for_each_group_and_for_the_commands_it_names) {
  CliHome home;
  std::istringstream lines(home.use_sample());
  const Json scan = home.json({"scan"});
  for (const Json& group : scan["groups"]) EXPECT_GT(group["size"], 0) << group["type"];
  int commands = 0;
  const std::string start = "  tarnby-cleaner-cli ";
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(start)) continue;
    ++commands;
    const std::string words = line.substr(start.size());
    const ProgramResult result = run_program(after_shell("\"$0\" " + words + "; exit;", home.bare({})));
    // "clean" as it stands wants to ask somebody.
    EXPECT_EQ(result.status, words.starts_with("clean --home") ? 2 : 0) << line << result.err;
  }
  EXPECT_GE(commands, 5);
}

TEST(SampleHome, replaces_nothing) {
  TempTree tree;
  tree.file("full/kept", 1).file("file", 1);
  for (const char* place : {"full", "file"}) {
    EXPECT_EQ(run_program({{TARNBY_SAMPLE_HOME, tree.path(place)}, {}}).status, 2) << place;
  }
  EXPECT_EQ(tree.listing(), (std::set<std::string>{"full/kept", "file"}));
}

}  // namespace tarnby::test
