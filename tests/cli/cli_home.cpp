#include "tests/cli/cli_home.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace tarnby::test {

namespace fs = std::filesystem;

CliHome::CliHome() {
  tree_.folder("home").folder("Applications").folder("config");
}

void CliHome::make_sample(CliHome& home) {
  const ProgramResult made = run_program({{TARNBY_SAMPLE_HOME, home.path("sample")}, {{"USER", "zoe"}}});
  ASSERT_EQ(made.status, 0) << made.err;
  home.applications_ = "sample/Applications";
  for (const auto& entry : fs::directory_iterator(home.path("sample"))) {
    const std::string name = entry.path().filename().string();
    if (name != "Applications") home.home_ = "sample/" + name;
  }
}

ProgramRun CliHome::bare(const Words& words) const {
  ProgramRun run = {{TARNBY_CLI},
                    {{"XDG_CONFIG_HOME", path("config")}, {"HOME", path("nowhere")}, {"LANG", "C.UTF-8"}}};
  run.words.insert(run.words.end(), words.begin(), words.end());
  return run;
}

ProgramRun CliHome::command(const Words& words) const {
  ProgramRun run = bare(words);
  run.words.insert(run.words.end(), {"--home", path(home_), "--applications", path(applications_)});
  return run;
}

Json CliHome::json_of(const ProgramResult& result) {
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1) << result.out;
  EXPECT_TRUE(result.out.ends_with('\n'));
  Json json = Json::parse(result.out, nullptr, false);  // refuses what is not UTF-8
  EXPECT_TRUE(json.is_object()) << result.out;
  return json;
}

Json CliHome::json(const Words& words) const {
  Words with_json = words;
  with_json.emplace_back("--json");
  return json_of(run(with_json));
}

Json CliHome::run_bare_json(Words words) const {
  words.emplace_back("--json");
  return json_of(run_bare(words));
}

std::set<std::string> CliHome::relative(const Json& paths) const {
  std::set<std::string> result;
  const std::string root = tree_.path() + "/";
  for (const std::string path : paths) result.insert(path.starts_with(root) ? path.substr(root.size()) : path);
  return result;
}

Snapshot CliHome::snapshot() const {
  Snapshot all;
  for (const std::string& top : {home_, applications_}) {
    for (auto& [entry, told] : snapshot_of(path(top))) all.emplace(std::string(top).append("/").append(entry), told);
  }
  return all;
}

}  // namespace tarnby::test
