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

/// A home folder, an Applications folder and a settings folder for whole runs of the terminal program, in a tree of
/// their own. Paths that are given or told are relative to the tree.
class CliHome {
 public:
  /// "home" and "Applications", empty.
  CliHome();

  /// Fills new folders with the sample home instead.
  static void make_sample(CliHome& home);

  TempTree& tree() { return tree_; }
  std::string path(std::string_view relative) const { return tree_.path(relative); }
  /// The home folder, relative to the tree.
  const std::string& home() const { return home_; }

  /// The program as it is started with these words, and nothing else.
  ProgramRun bare(const Words& words) const;
  /// The same, with this home folder and its Applications for the run.
  ProgramRun command(const Words& words) const;

  ProgramResult run_bare(const Words& words) const { return run_program(bare(words)); }
  ProgramResult run(const Words& words) const { return run_program(command(words)); }

  /// The object that a successful run with --json prints; adds a failure when it is not one line, not JSON or not a
  /// success.
  Json json(const Words& words) const;
  static Json json_of(const ProgramResult& result);

  /// Absolute paths from JSON, relative to the tree; paths outside it are kept.
  std::set<std::string> relative(const Json& paths) const;

  std::int64_t totally_cleaned() const { return run_bare_json({"settings", "TotallyCleaned"})["TotallyCleaned"]; }
  Json run_bare_json(Words words) const;
  /// Everything in the home and in the Applications folder.
  Snapshot snapshot() const;

 private:
  TempTree tree_;
  std::string home_ = "home";
  std::string applications_ = "Applications";
};

}  // namespace tarnby::test
