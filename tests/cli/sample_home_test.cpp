#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::HasSubstr;

namespace {

ProgramResult make_sample(const std::string& folder) {
  return run_program({{TARNBY_SAMPLE_HOME, folder}, {{"USER", "zoe"}, {"LANG", "C.UTF-8"}}});
}

/// What a tree holds, without the moments, which are counted back from now.
std::map<std::string, std::string> contents_of(const std::string& folder) {
  std::map<std::string, std::string> contents;
  for (const auto& [entry, told] : snapshot_of(folder)) {
    contents.emplace(entry, told.substr(0, told.rfind(", changed ")));
  }
  return contents;
}

}  // namespace

TEST(SampleHome, is_the_same_wherever_it_is_made) {
  TempTree tree;
  tree.folder("empty");
  for (const char* folder : {"empty", "new/below"}) {
    const ProgramResult made = make_sample(tree.path(folder));
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_EQ(made.err, "");
  }
  const auto contents = contents_of(tree.path("empty"));
  EXPECT_GT(contents.size(), 200U);
  EXPECT_EQ(contents_of(tree.path("new/below")), contents);
}

TEST(SampleHome, replaces_nothing) {
  TempTree tree;
  tree.file("full/kept", 1).file("file", 1).folder("other").link("link", "other");
  const auto before = tree.listing();
  for (const char* place : {"full", "file"}) {
    SCOPED_TRACE(place);
    const ProgramResult result = make_sample(tree.path(place));
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(place));
    EXPECT_EQ(tree.listing(), before);
  }
}

TEST(SampleHome, names_commands_that_the_program_runs) {
  CliHome home;
  const ProgramResult made = make_sample(home.path("it's here"));
  std::istringstream lines(made.out);
  int commands = 0;
  for (std::string line; std::getline(lines, line);) {
    const std::string start = "  tarnby-cleaner-cli ";
    if (!line.starts_with(start)) continue;
    SCOPED_TRACE(line);
    ++commands;
    const std::string words = line.substr(start.size());
    ProgramRun run = home.bare({});
    run.words = {"/bin/sh", "-c", std::string(TARNBY_CLI) + " " + words};
    const ProgramResult result = run_program(run);
    // "clean" as it stands wants to ask somebody.
    EXPECT_EQ(result.status, words.starts_with("clean --home") ? 2 : 0) << result.err;
  }
  EXPECT_GE(commands, 5);
}

}  // namespace tarnby::test
