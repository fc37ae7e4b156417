#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <random>

#include "tests/engine/test_engine.h"
#include "tests/support/seed.h"
#include "text/text.h"

// The search looks at many folders at once and settles what depends on the order afterwards, over the few entries that
// it kept. Here its rules are read once more, entry by entry and with nothing but std::filesystem, and both must tell
// the same of any home.

namespace tarnby {
namespace {

namespace fs = std::filesystem;

struct Reading {
  const Cleaner& cleaner;
  const Text& text;
  std::string package_path = {};
  std::string package_extension = {};
  LargeFileList found = {};

  static std::vector<fs::path> list(const fs::path& folder) {
    std::vector<fs::path> paths;
    for (const auto& entry : fs::directory_iterator(folder)) paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end(), [](const auto& a, const auto& b) { return a.native() < b.native(); });
    return paths;
  }

  static bool is_folder(const fs::path& path) { return fs::is_directory(fs::symlink_status(path)); }

  static std::int64_t size(const fs::path& path) {
    if (fs::is_symlink(path)) return std::ssize(fs::read_symlink(path).native());
    if (!is_folder(path)) return static_cast<std::int64_t>(fs::file_size(path));
    std::int64_t bytes = 0;
    for (const fs::path& entry : list(path)) bytes += size(entry);
    return bytes;
  }

  bool is_excluded(const std::string& path) const {
    for (const char* place : {"Downloads", "Library/Caches", "Library/Logs", "Library/Developer/CoreSimulator",
                              "Library/Developer/Xcode/DocumentationCache", "Library/iTunes"}) {
      if (contains_folded(path, cleaner.url_home.appending(place).path())) return true;
    }
    return false;
  }

  void take(const Url& url, const std::string& type) {
    const std::int64_t bytes = size(url.path());
    if (bytes < 10'000'000) return;
    found.push_back(LargeFile::init_with_file_url(url, std::string(url.last_path_component()), bytes, type));
  }

  void walk(const fs::path& folder) {
    for (const fs::path& entry : list(folder)) {
      const Url url = Url::file(entry.native());
      if (is_folder(entry)) {
        if (!contains_folded(url.path(), package_extension) && is_package_name(url.last_path_component())) {
          package_path = url.path() + "/";
          package_extension = cleaner.package_extension_at_url(url) + "/";
          take(url, url.path_extension() == "app" ? "app" : "package");
        }
        walk(entry);
      } else if (!contains_folded(url.path(), package_path) && !is_excluded(url.path())) {
        take(url, cleaner.type_at_url_file(url));
      }
    }
  }

  void search() {
    found.clear();
    walk(cleaner.url_home.path());
    const auto before = [&](const auto& a, const auto& b) { return text.compare(a->name, b->name) < 0; };
    std::stable_sort(found.begin(), found.end(), before);
  }
};

std::string text_of(const LargeFileList& files, const std::string& package_path, const std::string& extension) {
  std::string text = package_path + " " + extension + "\n";
  for (const auto& file : files) {
    text += test::row_text(file->type + " " + file->name, file->size, {file->url_file.path()}) + "\n";
  }
  return text;
}

TEST(LargeFiles, of_any_home_are_those_that_a_walk_entry_by_entry_finds) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  std::mt19937 random(seed);
  test::TestPlatform user;
  const std::string mirror = user.tree.path("ada").substr(1);
  const std::string names[] = {
      "a.app",      "b.bundle",  "B.BUNDLE",        "c.Plugin",    "Whatsapp",         "d.mybundle",
      "e.pkg",      "Downloads", "D\u00f3wnloads2", "Library",     "Library/Caches",   "Logs",
      "iTunes",     "Plain",     "A.APP",           "caf\xe9.app", "Library/iTunes.x", "plugin",
      "\u00e1.app", mirror,      mirror + "/a.app"};
  const std::string files[] = {"x.mov", "Y.JPG", "y.jpg", "x.app", "Downloads.zip", "\xff", ".hidden"};
  constexpr std::int64_t sizes[] = {10'000'000, 9'999'999, 6'000'000, 25'000'000, 3};
  const auto any_of = [&](const auto& list) { return list[random() % std::size(list)]; };
  for (int home = 0; home < 300 && !testing::Test::HasFailure(); ++home) {
    for (const auto& entry : fs::directory_iterator(user.tree.path("ada"))) fs::remove_all(entry);
    std::vector<std::string> folders = {"ada"};
    for (auto count = 1 + random() % 12; count > 0; --count) {
      folders.push_back(any_of(folders) + "/" + any_of(names));
      user.tree.folder(folders.back());
    }
    for (auto count = random() % 12; count > 0; --count) {
      const std::string path = any_of(folders) + "/" + any_of(files);
      if (!user.tree.exists(path)) user.tree.file(path, any_of(sizes));
    }
    user.tree.link("ada/link.app", any_of(folders));
    test::Engine engine(user);
    Reading reading{engine.cleaner, user.text};
    for (const char* which : {"first", "second, which begins with the memory of the first"}) {
      engine.cleaner.search_large_files_with_complete_handler([](const auto&, const auto&, auto) {});
      reading.search();
      const Cleaner& cleaner = engine.cleaner;
      EXPECT_EQ(text_of(cleaner.largeFiles, cleaner.original_package_path, cleaner.original_package_extension),
                text_of(reading.found, reading.package_path, reading.package_extension))
          << which << " search";
    }
  }
}

}  // namespace
}  // namespace tarnby
