#include "tests/cli/cli_home.h"

#include <gmock/gmock.h>

#include "platform/session.h"

namespace tarnby::test {

void expect_refused(const ProgramResult& result, int status, const std::string& told) {
  EXPECT_EQ(result.status, status);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::MatchesRegex("tarnby-cleaner-cli: [^\n]+\n"));
  EXPECT_THAT(result.err, testing::HasSubstr(told));
}

Json json_of(const ProgramResult& result) {
  EXPECT_EQ(std::pair(result.status, result.err), std::pair(0, std::string()));
  EXPECT_EQ(result.out.find('\n'), result.out.size() - 1) << result.out;
  return Json::parse(result.out);  // throws at what is not UTF-8
}

std::string CliHome::use_sample() {
  const ProgramResult made = run_program({{TARNBY_SAMPLE_HOME, path("it's here")}, {}});
  EXPECT_EQ(made.status, 0) << made.err;
  home_ = "it's here/" + current_session().user_name;
  applications_ = "it's here/Applications";
  return made.out;
}

ProgramRun CliHome::bare(const Words& words) const {
  ProgramRun run = {
      {TARNBY_CLI}, {{"XDG_CONFIG_HOME", path("config")}, {"HOME", "/none"}, {"LANG", "C.UTF-8"}}, path()};
  run.words.insert(run.words.end(), words.begin(), words.end());
  return run;
}

ProgramRun CliHome::command(Words words) const {
  words.insert(words.end(), {"--home", path(home_), "--applications", path(applications_)});
  return bare(words);
}

}  // namespace tarnby::test
