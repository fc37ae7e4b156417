#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "tests/support/program_run.h"
#include "tests/support/snapshot.h"
#include "tests/support/temp_tree.h"

namespace tarnby::test {

using Json = nlohmann::ordered_json;
using Words = std::vector<std::string>;

/// Fails unless the program wrote no result and one line for people, with these words in it.
void expect_refused(const ProgramResult& result, int status, const std::string& told);
/// The object that a successful run with --json printed in one line.
Json json_of(const ProgramResult& result);

/// A home folder, an Applications folder and a settings folder for whole runs of the terminal program, in a tree of
/// their own. Paths that are given are relative to the tree.
class CliHome {
 public:
  CliHome() { tree_.folder("home").folder("Applications").folder("config"); }
  /// Takes new folders with the sample home instead; tells what the tool that fills them printed.
  std::string use_sample();

  TempTree& tree() { return tree_; }
  std::string path(std::string_view relative = {}) const { return tree_.path(relative); }

  /// The program as it is started with these words, in the tree, and nothing else.
  ProgramRun bare(const Words& words) const;
  /// The same, with this home folder and its Applications for the run.
  ProgramRun command(Words words) const;

  ProgramResult run_bare(const Words& words) const { return run_program(bare(words)); }
  ProgramResult run(const Words& words) const { return run_program(command(words)); }
  /// With --json.
  Json json(Words words) const { return words.emplace_back("--json"), json_of(run(words)); }
  Json bare_json(Words words) const { return words.emplace_back("--json"), json_of(run_bare(words)); }

  std::int64_t totally_cleaned() const { return bare_json({"settings", "TotallyCleaned"})["TotallyCleaned"]; }
  /// Everything in the tree but the settings.
  Snapshot snapshot() const { return without(snapshot_of(path()), {path("config")}); }

 private:
  TempTree tree_;
  std::string home_ = "home";
  std::string applications_ = "Applications";
};

}  // namespace tarnby::test
