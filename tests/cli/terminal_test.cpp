#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <csignal>
#include <sstream>

#include "cli/context.h"
#include "cli/interrupt.h"
#include "cli/removal_report.h"
#include "platform/platform.h"
#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(Terminal, removes_only_after_a_yes) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the thread sanitizer holds a signal back while the program waits for an answer";
#endif
  struct Case {
    const char* why;
    const char* keys;
    int status;
    bool goes;
    const char* shown;
  };
  const Case cases[] = {
      {"y", "y\n", 0, true, "Removed 2 entries."},
      {"n", "n\n", 0, false, "Nothing was removed."},
      {"no answer is no", "\n", 0, false, "Nothing was removed."},
      {"neither is what only begins so", "yellow\n", 0, false, "Nothing was removed."},
      {"end of the input", "\x04", 0, false, "\nNothing was removed."},
      {"Ctrl-C", "\x03", 130, false, "interrupted; nothing was removed"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    CliHome home;
    home.tree().file("home/Library/Logs/a.log", 1'000).file("home/.Trash/old", 30'000).file("home/kept", 7);
    const Snapshot before = home.snapshot();
    TerminalProgram program(home.command({"clean", "logs", "trash"}));
    ASSERT_TRUE(program.shows("Remove 2 entries, 31 KB, for good? It does not go to the Trash. [y/N] "));
    EXPECT_EQ(home.snapshot(), before);
    program.type(c.keys);
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.status, c.status);
    EXPECT_THAT(result.out, HasSubstr(c.shown));
    const std::set<std::string> gone = {home.path("home/Library/Logs/a.log"), home.path("home/.Trash/old")};
    EXPECT_EQ(after_losing(home.snapshot(), gone), c.goes ? without(before, gone) : after_losing(before, gone));
    EXPECT_EQ(home.totally_cleaned(), c.goes ? 31'000 : 0);
  }
}

TEST(Terminal, shows_progress_and_clears_it_before_the_result) {
  CliHome home;
  const ProgramResult result = TerminalProgram(home.command({"scan", "--json"})).finish();
  EXPECT_THAT(result.out, HasSubstr("Scan in \"Trash Bin\""));
  EXPECT_TRUE(Json::accept(result.out.substr(result.out.rfind("\x1b[K") + 3))) << result.out;
}

TEST(Terminal, shows_bold_and_progress_where_they_can_be_shown_and_are_wanted) {
  CliHome home;
  home.tree().file("home/.Trash/a", 1);
  const auto shown = [&](const char* name, const char* value) {
    ProgramRun run = home.command({"scan"});
    run.environment[name] = value;
    return TerminalProgram(run).finish().out;
  };
  const char* bold = "\x1b[1m";
  const char* rewritten = "\x1b[K";
  EXPECT_THAT(shown("TERM", "xterm"), testing::AllOf(HasSubstr(bold), HasSubstr(rewritten)));
  EXPECT_THAT(shown("NO_COLOR", "1"), testing::AllOf(Not(HasSubstr(bold)), HasSubstr(rewritten)));
  EXPECT_THAT(shown("NO_COLOR", ""), HasSubstr(bold)) << "empty is as if it were not there";
  EXPECT_THAT(shown("TERM", "dumb"), Not(HasSubstr("\x1b")));
}

TEST(Terminal, reports_a_removal_before_it_waits_for_the_settings_and_tells_when_they_cannot_be_written) {
  CliHome home;
  home.tree().file("home/.Trash/a", 1'000).folder("config/tarnby-cleaner");
  const std::string lock = home.path("config/tarnby-cleaner/settings.plist.lock");
  Descriptor held(open(lock.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600));
  ASSERT_EQ(flock(held.get(), LOCK_EX), 0);
  TerminalProgram program(home.command({"clean", "trash", "--yes"}));
  EXPECT_TRUE(program.shows("Removed 1 entry.")) << "somebody else holds the settings";
  held.reset();
  EXPECT_EQ(program.finish().status, 0);

  held = Descriptor(open(lock.c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(flock(held.get(), LOCK_EX), 0);
  home.tree().file("home/.Trash/b", 1'000);
  TerminalProgram interrupted(home.command({"clean", "trash", "--yes"}));
  EXPECT_TRUE(interrupted.shows("Removed 1 entry."));
  interrupted.type("\x03");
  const ProgramResult end = interrupted.finish();
  EXPECT_EQ(end.status, 0) << "all went before the interrupt";
  EXPECT_THAT(end.out, testing::ContainsRegex("Removed 1 entry[^$]*could not be saved"));

  CliHome other;
  other.tree().file("home/.Trash/a", 1'000).file("config/tarnby-cleaner");
  const ProgramResult result = other.run({"clean", "trash", "--yes"});
  EXPECT_EQ(result.out, "Removed 1 entry.\n1 KB cleaned.\n");
  EXPECT_THAT(result.err,
              testing::MatchesRegex("tarnby-cleaner-cli: the total of all runs could not be saved[^\n]+\n"));
}

TEST(Terminal, recommends_what_works_as_it_is_typed) {
  CliHome home;
  EXPECT_THAT(TerminalProgram(home.command({"scan"})).finish().out, Not(HasSubstr("Remove all of it")))
      << "there is nothing to remove";
  home.tree().file("home/.Trash/a", 1);
  const std::string shown = TerminalProgram(home.command({"scan"}), 400).finish().out;
  const auto begin = shown.find("List what would go:") + 19;
  const std::string typed = shown.substr(begin, shown.find('\n', begin) - begin);
  ProgramRun shell = home.bare({});
  shell.words = {"/bin/sh", "-c", typed};
  EXPECT_THAT(run_program(shell).out, HasSubstr("Would remove 1 entry")) << typed;

  const std::string help = home.run_bare({"--help"}).out;
  const bool are_there = access("/Applications", F_OK) == 0;
  EXPECT_EQ(help.find("grant Applications /Applications") != std::string::npos, are_there) << help;
}

// The signal comes from inside the removal, so it always comes at the same point.
TEST(Interrupt, during_a_removal_finishes_the_entry_in_hand_and_reports) {
  CliHome home;
  TempTree& tree = home.tree();
  tree.file("home/.Trash/1/a").file("home/.Trash/1/b").file("home/.Trash/2");
  cli::watch_for_interrupts();
  cli::Invocation asked;
  asked.home = tree.path("home");
  asked.applications = tree.path("Applications");
  asked.dry_run = true;  // keeps the settings out of it
  PlainMainQueue queue;
  const cli::RunPlatform made = cli::platform_for(asked, queue);
  const auto& platform = made.platform;
  std::ostringstream out;
  cli::Context context{asked, out, out, *platform, made.settings, queue, false, false, false};
  cli::need_folders(context);

  const Url urls[] = {tree.url("home/.Trash/1"), tree.url("home/.Trash/2")};
  const cli::StopOnInterrupt stop;
  const cli::RemovalReport report = cli::run_removal(context, urls, stop, [&](const RemovalOptions& options) {
    std::vector<Removal> results = platform->files.remove(std::span(urls).first(1), options);
    EXPECT_EQ(raise(SIGINT), 0);
    results.push_back(platform->files.remove(std::span(urls).subspan(1), options).front());
    return results;
  });
  EXPECT_EQ(cli::status_of_removal(report), 130);
  EXPECT_THAT(report.removed, ElementsAre(urls[0]));
  ASSERT_EQ(report.left.size(), 1U);
  EXPECT_EQ(report.left[0].url, urls[1]);
  EXPECT_EQ(tree.listing(), (std::set<std::string>{"Applications/", "config/", "home/.Trash/2"}));
}

}  // namespace tarnby::test
