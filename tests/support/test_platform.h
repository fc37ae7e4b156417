#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/file_manager.h"
#include "files/measurer.h"
#include "platform/app_settings.h"
#include "platform/bookmarks.h"
#include "platform/notification_center.h"
#include "tests/support/hand_main_queue.h"
#include "tests/support/temp_tree.h"
#include "text/text.h"
#include "tools/bundle_files.h"

namespace tarnby {
class Platform;
}  // namespace tarnby

namespace tarnby::test {

/// A user of a machine of their own for one test case: ada, whose home folder is "ada" in a fresh tree, with a folder
/// "Applications" beside it, the settings in "settings", what starts at login in "autostart" and other programs in
/// "programs". What the system lists
/// of itself is in "system". The locale is C, the clock stands still.
///
/// Paths given to its functions are relative to the tree: "ada/Library/Caches/x", "Applications/Editor.app".
class TestPlatform {
 public:
  enum class Grants { none, both };

  /// @param home the home folder, for a test that wants it elsewhere; it and Applications are granted as asked.
  explicit TestPlatform(Grants grants = Grants::both, std::string_view home = "ada");
  ~TestPlatform();
  TestPlatform(const TestPlatform&) = delete;
  TestPlatform& operator=(const TestPlatform&) = delete;

  TempTree tree;
  HandMainQueue main_queue;

 private:
  std::unique_ptr<Platform> own_;

 public:
  Platform& platform;
  // Its parts, for a test that needs nothing else of it.
  AppSettings& settings;
  Bookmarks& bookmarks;
  FileManager& files;
  Measurer& measurer;
  NotificationCenter& notifications;
  const Text& text;

  Url url(std::string_view path) const { return tree.url(path); }

  /// An application bundle with these values in its Info.plist.
  TestPlatform& application(std::string_view path, const BundleValues& values, ListForm form = ListForm::xml);
  /// The usual one: with an identifier and nothing else.
  TestPlatform& application(std::string_view path, std::string_view identifier);

  /// The processes of this machine: number 1, this program, and one of each of these executables ("/usr/bin/vlc").
  /// Without it nobody can tell what runs.
  TestPlatform& processes(const std::vector<std::string>& executables = {});
  /// Makes one more.
  TestPlatform& process(int number, const std::string& executable);

  /// Gives an entry these times, in seconds since 1970.
  TestPlatform& times(std::string_view path, std::int64_t accessed, std::int64_t modified);

  /// A location as a path relative to the tree.
  std::string relative(const Url& url) const;
  std::vector<std::string> relative(std::span<const Url> urls) const;
};

}  // namespace tarnby::test
