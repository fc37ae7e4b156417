#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <span>

#include "tests/engine/test_engine.h"
#include "tests/support/seed.h"

// The smart scan measures ahead, in parallel, every folder once. Here its rules are read again, one after another and
// with nothing but std::filesystem, and both must tell the same of any home.

namespace tarnby {
namespace {

namespace fs = std::filesystem;

using Paths = std::vector<std::string>;

const std::string library = "ada/Library/";

/// A home holds any of these entries in any of these folders; "%" stands for an identifier.
constexpr const char* entries[] = {"%/x", ".%/x", "%.plist", "%.savedState/x", "%/Data/Library/Caches/x"};
constexpr const char* folders[] = {
    "Caches", "Containers", "Saved Application State", "Application Scripts", "Preferences", "Logs", "../.Trash"};
constexpr const char* links[] = {"Caches/%.link", "Logs/%.link", "../.Trash/%.link", "../Applications/%.link.app"};
constexpr const char* bundles[] = {"Applications/V/W", "Applications/V/W/X", "Applications/Utilities",
                                   "ada/Documents/d/Host.app"};
constexpr const char* identifiers[] = {"com.gone.tool", "com.gone.tool.kit", "org.here.editor", "com.apple.tool",
                                       "Editor"};

struct Reading {
  using Rows = std::vector<std::pair<std::string, Paths>>;

  const test::Engine& engine;
  const test::TestPlatform& user;
  /// The identifier of each application bundle, by path.
  const std::map<std::string, std::string>& owners;
  std::map<std::string, std::string> labels = {};
  std::string text = {};

  Paths list(const std::string& folder, bool hidden = false) const {
    Paths paths;
    if (!fs::is_directory(fs::symlink_status(user.tree.path(folder)))) return paths;
    for (const auto& entry : fs::directory_iterator(user.tree.path(folder))) {
      const std::string name = entry.path().filename();
      if (hidden || name[0] != '.') paths.push_back(folder + "/" + name);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  std::int64_t size(const std::string& path) const {
    const fs::path full = user.tree.path(path);
    if (fs::is_symlink(full)) return std::ssize(fs::read_symlink(full).native());
    std::int64_t bytes = fs::is_regular_file(full) ? static_cast<std::int64_t>(fs::file_size(full)) : 0;
    for (const std::string& entry : list(path, true)) bytes += size(entry);
    return bytes;
  }

  void group(Rows rows, bool sorted, bool also_empty) {
    const auto before = [&](const auto& a, const auto& b) { return user.text.compare(a.first, b.first) < 0; };
    if (sorted) std::stable_sort(rows.begin(), rows.end(), before);
    for (const auto& [label, paths] : rows) {
      std::int64_t bytes = 0;
      for (const std::string& path : paths) bytes += size(path);
      if (bytes > 0 || also_empty) text += test::row_text(label, bytes, paths) + "\n";
    }
  }

  void find_applications(const std::string& folder, int levels, bool also_in_bundles = false) {
    for (const std::string& entry : list(folder)) {
      if (owners.count(entry) > 0) labels[owners.at(entry)] = fs::path(entry).stem();
      if (levels == 1 || entry == "Applications/Utilities" || (entry.ends_with(".app") && !also_in_bundles)) continue;
      find_applications(entry, levels - 1, also_in_bundles);
    }
  }

  std::string read() {
    find_applications("Applications", 3);
    find_applications("ada/Documents", 99, true);
    Rows caches, logs, leftovers, trash;
    Paths all, orphans;
    for (const std::string place : std::span(folders).first(5)) {
      for (const std::string& entry : list(library + place)) {
        all.push_back(entry);
        const fs::path name = fs::path(entry).filename();
        // An application known by its label has just that label, so only the identifier changes what is shown.
        const std::string label = labels.count(name) > 0 ? labels.at(name) : name.string();
        if (place == "Caches" && !list(entry, true).empty()) caches.push_back({label, {entry}});
        if (place == "Containers") caches.push_back({label, {entry + "/Data/Library/Caches"}});
        std::string orphan = place == "Preferences" ? name.stem() : name;
        if (place == "Saved Application State") orphan = name.extension() == ".savedState" ? name.stem() : "";
        if (std::count(orphan.begin(), orphan.end(), '.') < 2 || orphan.find("apple") != std::string::npos) continue;
        if (labels.count(orphan) > 0 || std::count(orphans.begin(), orphans.end(), orphan) > 0) continue;
        orphans.push_back(orphan);
      }
    }
    for (const std::string& orphan : orphans) {
      leftovers.push_back({engine.remainders.setLabel(orphan), {}});
      for (const std::string& path : all) {
        if (path.find(orphan) != std::string::npos) leftovers.back().second.push_back(path);
      }
    }
    for (const auto& entry : list(library + "Logs")) logs.push_back({fs::path(entry).filename(), {entry}});
    for (const auto& entry : list("ada/.Trash", true)) trash.push_back({fs::path(entry).filename(), {entry}});
    group(caches, true, false);
    group(logs, true, true);
    group(leftovers, true, false);
    group(trash, false, true);
    return text;
  }
};

TEST(SmartScan, of_any_home_tells_what_a_plain_reading_of_the_rules_tells) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  const auto any_of = [&](const auto& list) { return std::string(list[random() % std::size(list)]); };
  const auto named = [&](std::string path) { return path.replace(path.find('%'), 1, any_of(identifiers)); };
  test::TestPlatform user;  // one for all homes, because it stores its grants with a flush to the disk
  for (int home = 0; home < 12 && !testing::Test::HasFailure(); ++home) {
    for (const char* top : {"ada", "Applications"}) {
      for (const auto& entry : fs::directory_iterator(user.tree.path(top))) fs::remove_all(entry);
    }
    std::map<std::string, std::string> owners;
    for (auto count = random() % 60; count > 0; --count) {
      user.tree.file(library + any_of(folders) + "/" + named(any_of(entries)), static_cast<int>(random() % 4));
    }
    for (auto count = random() % 8; count > 0; --count) {
      const std::string path = named(any_of(bundles) + "/%.app");
      user.application(path, owners[path] = any_of(identifiers));
    }
    user.tree.link(library + named(any_of(links)), "../Downloads");
    test::Engine engine(user);
    engine.scan();
    std::string scanned;
    for (const auto item :
         {&Cleaner::apps_caches_item, &Cleaner::apps_logs_item, &Cleaner::apps_remainders_item, &Cleaner::trash_item}) {
      for (const std::string& row : test::row_texts(user, *(engine.cleaner.*item))) scanned += row + "\n";
    }
    EXPECT_EQ(scanned, (Reading{engine, user, owners}.read()));
  }
}

}  // namespace
}  // namespace tarnby
