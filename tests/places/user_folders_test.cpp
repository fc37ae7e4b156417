#include "places/user_folders.h"

#include <gtest/gtest.h>

#include <string>

#include "files/file_manager.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

const Url home = Url::file("/data/home/ada");
/// How the account database spells it: "/home" is a link.
const Url account = Url::file("/home/ada");

Url in_home(std::string_view path) {
  return path.empty() ? Url() : home.appending(path);
}

UserFolders with_variables(const BaseFolderVariables& variables, std::string_view user_dirs = {}) {
  UserFolders folders = base_folders(home, account, variables);
  add_named_folders(folders, home, account, user_dirs);
  return folders;
}

TEST(UserFolders, variables_count_only_when_they_can_be_meant) {
  struct Case {
    const char* value;
    const char* data;
  };
  const Case cases[] = {
      {"/data/home/ada/d", "d"},
      {"/home/ada/d/e/", "d/e"},
      {"/home/ada/.d///", ".d"},
      {"", ".local/share"},
      {"/", ".local/share"},
      {"d", ".local/share"},
      {"~/d", ".local/share"},
      {"$HOME/d", ".local/share"},
      {"/home/ada", ".local/share"},
      {"/data/home/ada/", ".local/share"},
      {"/home", ".local/share"},
      {"/home/adam/d", ".local/share"},
      {"/etc", ".local/share"},
      {"/home/ada/../bob/d", ".local/share"},
      {"/home/ada/d/..", ".local/share"},
      {"/home/ada/./d", ".local/share"},
      {"/home/ada//d", ".local/share"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(with_variables({{}, {}, c.value, {}}).data, in_home(c.data)) << c.value;
  }
  const BaseFolderVariables moved = {"/home/ada/c", "/home/ada/o", "/home/ada/d", "/home/ada/s"};
  const UserFolders folders = base_folders(home, Url(), moved);
  EXPECT_EQ(folders.cache, in_home(".cache")) << "in somebody else's home the variables say nothing";
  EXPECT_EQ(folders.state, in_home(".local/state"));
  EXPECT_EQ(with_variables(moved).cache, in_home("c"));
}

TEST(UserFolders, a_cache_folder_that_holds_anything_else_is_none) {
  struct Case {
    const char* why;
    BaseFolderVariables variables;
    const char* user_dirs;
    const char* cache;
  };
  const Case cases[] = {
      {"beside the others", {"/home/ada/.local/cache", {}, {}, {}}, "", ".local/cache"},
      {"within data", {"/home/ada/.local/share/cache", {}, {}, {}}, "", ".local/share/cache"},
      {"the settings", {"/home/ada/.config", {}, {}, {}}, "", ".cache"},
      {"data, and state", {"/home/ada/.local", {}, {}, {}}, "", ".cache"},
      {"the default of data", {"/home/ada/.local/share", {}, "/home/ada/d", {}}, "", ".cache"},
      {"documents", {"/home/ada/Documents", {}, {}, {}}, "", ".cache"},
      {"renamed music", {"/home/ada/m", {}, {}, {}}, "XDG_MUSIC_DIR=\"$HOME/m/usik\"", ".cache"},
      {"data moved into the default", {{}, {}, "/home/ada/.cache/data", {}}, "", ""},
      {"settings that are the default", {{}, "/home/ada/.cache", {}, {}}, "", ""},
      {"downloads in the default", {}, "XDG_DOWNLOAD_DIR=\"$HOME/.cache/d\"", ""},
  };
  for (const Case& c : cases) EXPECT_EQ(with_variables(c.variables, c.user_dirs).cache, in_home(c.cache)) << c.why;
}

TEST(UserFolders, are_named_in_every_language_and_by_no_shell) {
  struct Case {
    const char* line;
    const char* downloads;
  };
  const Case cases[] = {
      {"", "Downloads"},
      {"XDG_DOWNLOAD_DIR=\"$HOME/T\xC3\xA9l\xC3\xA9"
       "chargements\"",
       "T\xC3\xA9l\xC3\xA9"
       "chargements"},
      {"  XDG_DOWNLOAD_DIR = \"$HOME/\xE3\x83\x80/\"  # here", "\xE3\x83\x80"},
      {"XDG_DOWNLOAD_DIR=\"/home/ada/a\\\"b\\$c\\\\\"", "a\"b$c\\"},
      {"XDG_DOWNLOAD_DIR=\"/data/home/ada/d\"\nXDG_DOWNLOAD_DIR=\"$HOME/e\"", "e"},
      {"XDG_DOWNLOAD_DIR=\"$HOME/$(rm -rf x)`id`$USER\"", "$(rm -rf x)`id`$USER"},
      // Switched off.
      {"XDG_DOWNLOAD_DIR=\"$HOME/\"", ""},
      {"XDG_DOWNLOAD_DIR=\"$HOME\"", ""},
      {"XDG_DOWNLOAD_DIR=\"/home/ada/\"", ""},
      {"XDG_DOWNLOAD_DIR=\"$HOME/.\"", ""},
      // Elsewhere.
      {"XDG_DOWNLOAD_DIR=\"/mnt/downloads\"", ""},
      {"XDG_DOWNLOAD_DIR=\"/\"", ""},
      {"XDG_DOWNLOAD_DIR=\"$HOME/../bob\"", ""},
      // Not such a line.
      {"#XDG_DOWNLOAD_DIR=\"$HOME/d\"", "Downloads"},
      {"XDG_DOWNLOAD_DIR=$HOME/d", "Downloads"},
      {"XDG_DOWNLOAD_DIR=\"$HOME/d", "Downloads"},
      {"XDG_DOWNLOAD_DIR=\"$HOMER/d\"", "Downloads"},
      {"XDG_DOWNLOAD_DIR=\"d\"", "Downloads"},
      {"XDG_DOWNLOAD_DIR=\"\\$HOME/d\"", "Downloads"},
      {"XDG_DOWNLOAD_DIRS=\"$HOME/d\"", "Downloads"},
  };
  for (const Case& c : cases) {
    const UserFolders folders = with_variables({}, std::string("XDG_MUSIC_DIR=\"$HOME/Musik\"\n") + c.line);
    EXPECT_EQ(folders.downloads, in_home(c.downloads)) << c.line;
    EXPECT_EQ(folders.music, in_home("Musik")) << c.line;
    EXPECT_EQ(folders.videos, in_home("Videos")) << c.line;
  }
}

TEST(UserFolders, are_read_from_the_granted_home) {
  test::TestPlatform ada;
  Session session;
  session.account_home = ada.url("link-to-ada");
  session.base_folders.config = ada.url("link-to-ada/settings").path();
  ada.tree.link("link-to-ada", "ada").content("ada/settings/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/Bureau\"\n");
  const UserFolders own = user_folders(ada.url("ada"), session, ada.files);
  EXPECT_EQ(own.config, ada.url("ada/settings"));
  EXPECT_EQ(own.desktop, ada.url("ada/Bureau"));
  session.account_home = ada.url("somebody");
  const UserFolders foreign = user_folders(ada.url("ada"), session, ada.files);
  EXPECT_EQ(foreign.config, ada.url("ada/.config"));
  EXPECT_EQ(foreign.desktop, ada.url("ada/Desktop"));
}

}  // namespace
}  // namespace tarnby
