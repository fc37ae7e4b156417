#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <initializer_list>
#include <sstream>

#include "cli/context.h"
#include "cli/interrupt.h"
#include "cli/removal_report.h"
#include "tests/cli/cli_home.h"

namespace tarnby::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* question = "Remove 2 entries, 31 KB, for good? It does not go to the Trash. [y/N] ";

void make_home(CliHome& home) {
  home.tree().file("home/Library/Logs/a.log", 1'000).file("home/.Trash/old", 30'000).file("home/Documents/kept", 7);
}

std::size_t widest_line(const std::string& shown) {
  std::size_t widest = 0;
  std::size_t columns = 0;
  bool is_escape = false;
  for (const char c : shown) {
    if (c == '\n' || c == '\r') {
      columns = 0;
    } else if (c == '\x1b') {
      is_escape = true;
    } else if (is_escape) {
      is_escape = c == '[' || (c >= '0' && c <= '9');
    } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
      widest = std::max(widest, ++columns);
    }
  }
  return widest;
}

}  // namespace

TEST(Terminal, removes_only_after_a_yes) {
  struct Case {
    const char* why;
    const char* keys;
    int status;
    bool goes;
    const char* shown;
  };
  const Case cases[] = {
      {"y", "y\n", 0, true, "Removed 2 entries."},
      {"a whole yes", "yes\n", 0, true, "Removed 2 entries."},
      {"n", "n\n", 0, false, "Nothing was removed."},
      {"no answer is no", "\n", 0, false, "Nothing was removed."},
      {"neither is what only begins so", "yellow\n", 0, false, "Nothing was removed."},
      {"end of the input", "\x04", 0, false, "\nNothing was removed."},
      {"Ctrl-C", "\x03", 130, false, "interrupted; nothing was removed"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    CliHome home;
    make_home(home);
    const Snapshot before = home.snapshot();
    TerminalProgram program(home.command({"clean", "logs", "trash"}));
    ASSERT_TRUE(program.shows(question));
    EXPECT_EQ(home.snapshot(), before);
    program.type(c.keys);
    const ProgramResult result = program.finish();
    EXPECT_EQ(result.status, c.status);
    EXPECT_THAT(result.out, HasSubstr(c.shown));
    const std::set<std::string> gone = {"home/Library/Logs/a.log", "home/.Trash/old"};
    EXPECT_EQ(after_losing(home.snapshot(), gone), c.goes ? without(before, gone) : after_losing(before, gone));
    EXPECT_EQ(home.totally_cleaned(), c.goes ? 31'000 : 0);
  }
}

TEST(Terminal, does_not_ask_when_there_is_nothing_to_remove) {
  CliHome home;
  const ProgramResult result = TerminalProgram(home.command({"clean"})).finish();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("Removed 0 entries."));
}

TEST(Terminal, gives_an_object_also_to_a_no) {
  CliHome home;
  make_home(home);
  TerminalProgram program(home.command({"clean", "--json", "logs"}));
  ASSERT_TRUE(program.shows("[y/N] "));
  program.type("n\n");
  const ProgramResult result = program.finish();
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("{\"removed\":[],\"left\":[\"" + home.path("home/Library/Logs/a.log") +
                                    "\"],\"was_cleaned\":0,\"totally_cleaned\":0}\n"));
}

TEST(Terminal, fits_the_window_and_cuts_long_names) {
  CliHome home;
  home.tree()
      .file("home/.Trash/" + std::string(200, 'x'), 5'000)
      .file("home/.Trash/" + std::string(60, 'x') + "日本語", 1);
  std::string accents;
  for (int at = 0; at < 60; ++at) accents += "é" + std::string(1, 'a');
  home.tree().file("home/.Trash/" + accents, 1);
  for (int at = 0; at < 40; ++at) home.tree().file("home/Library/Logs/" + std::to_string(100 + at) + ".log", 1'000);
  for (const unsigned short columns : std::initializer_list<unsigned short>{80, 40, 200}) {
    SCOPED_TRACE(columns);
    const ProgramResult result = TerminalProgram(home.command({"scan", "--quiet"}), columns).finish();
    EXPECT_EQ(result.status, 0);
    const std::size_t table_end = result.out.find("\n\n\x1b[1mFound in all");
    ASSERT_NE(table_end, std::string::npos) << result.out;
    const std::size_t widest = widest_line(result.out.substr(0, table_end));
    EXPECT_LT(widest, columns);
    EXPECT_GE(widest + 4, std::min<std::size_t>(columns, 200)) << "cut more than needed";
    EXPECT_THAT(result.out, HasSubstr("… and 28 more"));
    EXPECT_EQ(result.out.find("\x1b[K"), std::string::npos) << "progress in spite of --quiet";
  }
}

TEST(Terminal, shows_progress_and_clears_it) {
  CliHome home;
  make_home(home);
  const ProgramResult result = TerminalProgram(home.command({"scan", "--json"})).finish();
  EXPECT_THAT(result.out, HasSubstr("Scan in \"Trash Bin\""));
  const auto last = result.out.rfind("\x1b[K");
  EXPECT_TRUE(Json::accept(result.out.substr(last + 3))) << result.out.substr(last);
  EXPECT_THAT(home.run({"scan"}).err, Not(HasSubstr("Scan in"))) << "progress where nobody watches";
}

// The signal comes from inside the removal, so it always comes at the same point.
TEST(Interrupt, during_a_removal_finishes_the_entry_in_hand_and_reports) {
  CliHome home;
  TempTree& tree = home.tree();
  tree.file("home/.Trash/1/a").file("home/.Trash/1/b").file("home/.Trash/2").file("home/.Trash/3");
  cli::watch_for_interrupts();
  cli::Invocation asked;
  asked.home = tree.path("home");
  asked.applications = tree.path("Applications");
  asked.dry_run = true;  // keeps the settings out of it
  PlainMainQueue queue;
  const auto platform = cli::platform_for(asked, queue);
  std::ostringstream out;
  std::ostringstream err;
  cli::Context context{asked, out, err, *platform, queue, false, false, false};
  cli::need_folders(context);

  const Url urls[] = {tree.url("home/.Trash/1"), tree.url("home/.Trash/none"), tree.url("home/.Trash/2"),
                      tree.url("home/.Trash/3")};
  const cli::StopOnInterrupt stop;
  const cli::RemovalReport report = cli::run_removal(context, urls, stop, [&](const std::atomic<bool>* stop_asked) {
    std::vector<Removal> results = platform->files.remove(std::span(urls).first(1), stop_asked);
    EXPECT_EQ(raise(SIGINT), 0);
    const std::vector<Removal> rest = platform->files.remove(std::span(urls).subspan(1), stop_asked);
    results.insert(results.end(), rest.begin(), rest.end());
    return results;
  });
  EXPECT_TRUE(report.was_interrupted);
  EXPECT_EQ(cli::status_of_removal(report), 130);
  EXPECT_THAT(report.removed, ElementsAre(urls[0]));
  ASSERT_EQ(report.left.size(), 2U);
  EXPECT_EQ(report.left[0].url, urls[2]);
  EXPECT_EQ(report.left[1].url, urls[3]);
  EXPECT_EQ(tree.listing(), (std::set<std::string>{"Applications/", "config/", "home/.Trash/2", "home/.Trash/3"}));
}

}  // namespace tarnby::test
