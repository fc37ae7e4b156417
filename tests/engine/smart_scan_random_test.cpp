#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>

#include "tests/engine/test_engine.h"

// The smart scan measures ahead, in parallel, every folder once. Here its rules are read again, one after another and
// with nothing but std::filesystem, and both must tell the same of any home.

namespace tarnby {
namespace {

namespace fs = std::filesystem;

using test::Engine;
using test::TestPlatform;

using Paths = std::vector<std::string>;

/// All that a home holds: "%" stands for an identifier.
constexpr const char* file_places[] = {
    "ada/Library/Caches/%/x",
    "ada/Library/Caches/%/deep/.y",
    "ada/Library/Caches/%.file",
    "ada/Library/Containers/%/Data/Library/Caches/x",
    "ada/Library/Containers/%/Data/x",
    "ada/Library/Saved Application State/%.savedState/x",
    "ada/Library/Saved Application State/%/x",
    "ada/Library/Application Scripts/%/x",
    "ada/Library/Preferences/%.plist",
    "ada/Library/Logs/%.log",
    "ada/Library/Logs/%/x",
    "ada/Library/Logs/.%",
    "ada/.Trash/%",
    "ada/.Trash/.%/x",
    "ada/Downloads/%.dmg",
    "ada/Desktop/%.apk",
    "ada/Desktop/%.DMG",
    "ada/Documents/%.pkg/x",
    "ada/Library/Application Support/%.apk",
    "ada/Library/Application Support/%.ipa",
};

constexpr const char* link_places[] = {"ada/Library/Caches/%.link", "ada/.Trash/%.link", "ada/Desktop/%.link.dmg",
                                       "ada/Applications/%.link.app"};

constexpr const char* application_places[] = {
    "Applications/%.app",       "Applications/V/%.app",         "Applications/V/W/%.app",
    "Applications/V/W/X/%.app", "Applications/Utilities/%.app", "ada/Downloads/%.app",
    "ada/Downloads/d/%.app",    "ada/Documents/d/%.app",        "ada/Documents/d/Host.app/Helpers/%.app",
    "ada/Desktop/d/e/%.app",    "ada/Applications/%.app",
};

constexpr const char* identifiers[] = {
    "com.gone.tool", "com.gone.toolkit", "com.Gone.TOOL", "org.here.editor.helper", "org.here.editor", "com.apple.tool",
    "two.parts",     "Editor",           "a..b"};

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
  return text;
}

/// The rules, read one after another.
class Reading {
 public:
  /// @param owners the identifier of each application bundle, by path.
  Reading(const TestPlatform& ada, const std::map<std::string, std::string>& owners) : ada_(ada), owners_(owners) {}

  std::string text() {
    find_applications();
    caches();
    entries("logs", library + "Logs", false);
    leftovers();
    installers();
    entries("trash", "ada/.Trash", true);
    return text_ + "total " + std::to_string(total_);
  }

 private:
  struct Row {
    std::string label;
    std::int64_t size;
    Paths paths;
  };
  using Rows = std::vector<Row>;

  inline static const std::string library = "ada/Library/";

  fs::file_status status(const std::string& path) const { return fs::symlink_status(ada_.tree.path(path)); }
  bool is_folder(const std::string& path) const { return fs::is_directory(status(path)); }

  Paths list(const std::string& folder, bool hidden = false) const {
    Paths paths;
    if (!is_folder(folder)) return paths;
    for (const auto& entry : fs::directory_iterator(ada_.tree.path(folder))) {
      const std::string path = (folder + "/").append(entry.path().filename());
      if (hidden || path[folder.size() + 1] != '.') paths.push_back(path);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  std::int64_t own_size(const std::string& path) const {
    if (fs::is_symlink(status(path))) return std::ssize(fs::read_symlink(ada_.tree.path(path)).native());
    return fs::is_regular_file(status(path)) ? static_cast<std::int64_t>(fs::file_size(ada_.tree.path(path))) : 0;
  }

  std::int64_t size(const std::string& path) const {
    std::int64_t bytes = own_size(path);
    for (const std::string& entry : list(path, true)) bytes += size(entry);
    return bytes;
  }

  std::int64_t size(const Paths& paths) const {
    std::int64_t bytes = 0;
    for (const std::string& path : paths) bytes += size(path);
    return bytes;
  }

  static std::string name_of(const std::string& path) { return fs::path(path).filename(); }

  void group(const std::string& type, const Rows& rows) {
    std::int64_t bytes = 0;
    std::string lines;
    for (const Row& row : rows) {
      lines += "  " + test::row_text(row.label, row.size, row.paths) + "\n";
      bytes += row.size;
    }
    text_ += type + " " + std::to_string(bytes) + "\n" + lines;
    total_ += bytes;
  }

  Rows sorted(Rows rows) const {
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const Row& a, const Row& b) { return ada_.platform.text.compare(a.label, b.label) < 0; });
    return rows;
  }

  void applications_in(const std::string& folder, int levels) {
    for (const std::string& entry : list(folder)) {
      if (entry.ends_with(".app")) {
        applications_.push_back(entry);
      } else if (levels > 1 && entry != "Applications/Utilities") {
        applications_in(entry, levels - 1);
      }
    }
  }

  void walk(const std::string& folder) {
    for (const std::string& entry : list(folder)) {
      if (entry.ends_with(".app")) applications_.push_back(entry);
      walk(entry);
    }
  }

  void find_applications() {
    applications_in("Applications", 3);
    applications_in("ada/Downloads", 1);
    walk("ada/Documents");
    walk("ada/Desktop");
    applications_in("ada/Applications", 1);
    for (const std::string& path : applications_) {
      const auto owner = owners_.find(path);
      if (owner == owners_.end()) continue;
      const std::string name = name_of(path);
      labels_by_identifier_[owner->second] = name.substr(0, name.size() - 4);
    }
  }

  void caches() {
    Rows rows;
    const auto add = [&](const std::string& named, const std::string& cache) {
      if (!is_folder(named) || size(cache) == 0 || !is_folder(cache)) return;
      const auto known = labels_by_identifier_.find(name_of(named));
      // An application known by its label has just that label, so only the identifier changes what is shown.
      rows.push_back({known == labels_by_identifier_.end() ? name_of(named) : known->second, size(cache), {cache}});
    };
    for (const std::string& entry : list(library + "Caches")) add(entry, entry);
    for (const std::string& entry : list(library + "Containers")) add(entry, entry + "/Data/Library/Caches");
    group("caches", sorted(rows));
  }

  void entries(const std::string& type, const std::string& folder, bool trash) {
    Rows rows;
    for (const std::string& entry : list(folder, trash)) rows.push_back({name_of(entry), size(entry), {entry}});
    group(type, trash ? rows : sorted(rows));
  }

  void leftovers() {
    Paths all;
    Paths orphans;
    for (const std::string place :
         {"Caches", "Containers", "Saved Application State", "Application Scripts", "Preferences"}) {
      for (const std::string& entry : list(library + place)) {
        all.push_back(entry);
        std::string name = name_of(entry);
        if (place == "Saved Application State") {
          name = name.ends_with(".savedState") ? name.substr(0, name.size() - 11) : "";
        }
        if (place == "Preferences") name.resize(name.rfind('.'));
        if (std::count(name.begin(), name.end(), '.') < 2 || name.find("apple") != std::string::npos) continue;
        if (labels_by_identifier_.count(name) > 0 || std::count(orphans.begin(), orphans.end(), name) > 0) continue;
        orphans.push_back(name);
      }
    }
    Rows rows;
    for (const std::string& orphan : orphans) {
      Paths files;
      std::copy_if(all.begin(), all.end(), std::back_inserter(files), [&](const std::string& path) {
        return lower(ada_.tree.path(path)).find(lower(orphan)) != std::string::npos;
      });
      if (size(files) > 0) rows.push_back({label_of_identifier(orphan), size(files), files});
    }
    group("remainders", sorted(rows));
  }

  static std::string label_of_identifier(const std::string& identifier) {
    const auto capital = [](std::string text) {
      if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = char(text[0] - 32);
      return text;
    };
    const auto first = identifier.find('.') + 1;
    return capital(identifier.substr(identifier.rfind('.') + 1)) + " by " +
           capital(lower(identifier.substr(first, identifier.find('.', first) - first)));
  }

  void installers() {
    Rows rows;
    for (const std::string place :
         {"ada/Downloads", "ada/Desktop", "ada/Documents", "ada/Library/Application Support"}) {
      for (const std::string& entry : list(place)) {
        const auto ends = [&](const char* extension) { return entry.ends_with(extension); };
        const bool apk = ends(".apk") && place != "ada/Library/Application Support";
        if (ends(".dmg") || ends(".pkg") || ends(".ipa") || apk)
          rows.push_back({name_of(entry), own_size(entry), {entry}});
      }
    }
    group("installs", sorted(rows));
  }

  const TestPlatform& ada_;
  const std::map<std::string, std::string>& owners_;
  Paths applications_;
  std::map<std::string, std::string> labels_by_identifier_;
  std::string text_;
  std::int64_t total_ = 0;
};

std::string scanned(const TestPlatform& ada, const Cleaner& cleaner) {
  std::string text;
  for (const SmartCategory& category : smart_categories()) {
    if (category.type == "browsers" || category.type == "mails") continue;
    text += std::string(category.type) + " " + std::to_string((cleaner.*category.outline)->size) + "\n";
    for (const std::string& row : test::row_texts(ada, *(cleaner.*category.item))) text += "  " + row + "\n";
  }
  return text + "total " + std::to_string(cleaner.total_smart_size);
}

TEST(SmartScan, of_any_home_tells_what_a_plain_reading_of_the_rules_tells) {
  const auto seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  RecordProperty("seed", std::to_string(seed));
  std::mt19937 random(seed);
  const auto any_of = [&](const auto& list) { return std::string(list[random() % std::size(list)]); };
  const auto place_of = [&](const auto& places) {
    std::string path = any_of(places);
    return path.replace(path.find('%'), 1, any_of(identifiers));
  };
  for (int home = 0; home < 40 && !testing::Test::HasFailure(); ++home) {
    TestPlatform ada;
    std::map<std::string, std::string> owners;
    for (auto count = random() % 60; count > 0; --count) {
      ada.tree.file(place_of(file_places), static_cast<std::int64_t>(random() % 4));
    }
    for (auto count = random() % 8; count > 0; --count) {
      const std::string path = place_of(application_places);
      owners[path] = any_of(identifiers);
      ada.application(path, owners[path]);
    }
    if (const std::string path = place_of(link_places); random() % 2 == 0) ada.tree.link(path, "../Downloads");
    Engine of(ada);
    of.scan();
    EXPECT_EQ(scanned(ada, of.cleaner), Reading(ada, owners).text()) << "home " << home;
  }
}

}  // namespace
}  // namespace tarnby
