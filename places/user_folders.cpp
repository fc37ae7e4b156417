#include "places/user_folders.h"

#include <algorithm>
#include <optional>
#include <string>

#include "files/file_manager.h"
#include "platform/bookmarks.h"

namespace tarnby {

namespace {

constexpr std::size_t most_bytes = std::size_t{64} << 10U;

struct BaseFolder {
  Url UserFolders::*folder;
  std::string BaseFolderVariables::*variable;
  std::string_view by_default;
};
constexpr BaseFolder base_folder_table[] = {
    {&UserFolders::cache, &BaseFolderVariables::cache, ".cache"},
    {&UserFolders::config, &BaseFolderVariables::config, ".config"},
    {&UserFolders::data, &BaseFolderVariables::data, ".local/share"},
    {&UserFolders::state, &BaseFolderVariables::state, ".local/state"},
};

struct NamedFolder {
  Url UserFolders::*folder;
  std::string_view key;
  std::string_view by_default;
};
constexpr NamedFolder named_folder_table[] = {
    {&UserFolders::desktop, "XDG_DESKTOP_DIR", "Desktop"},
    {&UserFolders::downloads, "XDG_DOWNLOAD_DIR", "Downloads"},
    {&UserFolders::templates, "XDG_TEMPLATES_DIR", "Templates"},
    {&UserFolders::public_share, "XDG_PUBLICSHARE_DIR", "Public"},
    {&UserFolders::documents, "XDG_DOCUMENTS_DIR", "Documents"},
    {&UserFolders::music, "XDG_MUSIC_DIR", "Music"},
    {&UserFolders::pictures, "XDG_PICTURES_DIR", "Pictures"},
    {&UserFolders::videos, "XDG_VIDEOS_DIR", "Videos"},
};

std::string_view without_slashes_at_end(std::string_view path) {
  while (path.ends_with('/')) path.remove_suffix(1);
  return path;
}

bool has_parent_component(std::string_view path) {
  return path == ".." || path.starts_with("../") || path.ends_with("/..") ||
         path.find("/../") != std::string_view::npos;
}

/// The folder below the home that an absolute path names, by either spelling of the home; nowhere when it names
/// another one, or the home itself.
Url folder_below(const Url& home, const Url& account_home, std::string_view path) {
  const Url folder = has_parent_component(path) ? Url() : Url::file(path);
  for (const Url& spelling : {home, account_home}) {
    if (folder == spelling || !folder.is_within(spelling)) continue;
    return home.appending(std::string_view(folder.path()).substr(spelling.path() == "/" ? 0 : spelling.path().size()));
  }
  return {};
}

/// What a variable says, when it may be believed.
Url folder_of_variable(const Url& home, const Url& account_home, std::string_view value) {
  value = without_slashes_at_end(value);
  return Url::file(value).path() == value ? folder_below(home, account_home, value) : Url();
}

bool holds_another(const Url& cache, const UserFolders& folders, const Url& home) {
  const auto is_in_cache = [&](const Url& folder) { return folder.is_within(cache); };
  // Programs that do not know the variables use the defaults all the same.
  return std::any_of(std::begin(base_folder_table), std::end(base_folder_table),
                     [&](const BaseFolder& row) {
                       const bool is_other = row.folder != &UserFolders::cache;
                       return is_other &&
                              (is_in_cache(folders.*row.folder) || is_in_cache(home.appending(row.by_default)));
                     }) ||
         std::any_of(std::begin(named_folder_table), std::end(named_folder_table),
                     [&](const NamedFolder& row) { return is_in_cache(folders.*row.folder); });
}

/// Where the cache folder would hold others, the default one is taken; where that does, too, none.
void keep_cache_apart(UserFolders& folders, const Url& home) {
  if (holds_another(folders.cache, folders, home)) folders.cache = home.appending(base_folder_table[0].by_default);
  if (holds_another(folders.cache, folders, home)) folders.cache = {};
}

std::string_view without_blanks_before(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

/// Takes `part` off the front, and blanks before it; false when something else stands there.
bool take(std::string_view& text, std::string_view part) {
  text = without_blanks_before(text);
  if (!text.starts_with(part)) return false;
  text.remove_prefix(part.size());
  return true;
}

/// What stands before the next quote, a backslash before a character taken off; none without a quote.
std::optional<std::string> quoted(std::string_view text) {
  std::string value;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '"') return value;
    if (text[at] == '\\' && at + 1 < text.size()) ++at;
    value += text[at];
  }
  return std::nullopt;
}

/// The folder that a line gives to the key; none when it is not such a line.
std::optional<Url> folder_of_line(std::string_view line, std::string_view key, const Url& home,
                                  const Url& account_home) {
  if (!take(line, key) || !take(line, "=") || !take(line, "\"")) return std::nullopt;
  const bool is_in_home = line.starts_with("$HOME/") || line.starts_with("$HOME\"");
  if (is_in_home) line.remove_prefix(5);
  if (!is_in_home && !line.starts_with('/')) return std::nullopt;
  const auto value = quoted(line);
  if (!value) return std::nullopt;
  return folder_below(home, account_home, is_in_home ? home.path() + *value : *value);
}

}  // namespace

UserFolders base_folders(const Url& home, const Url& account_home, const BaseFolderVariables& variables) {
  UserFolders folders;
  for (const BaseFolder& row : base_folder_table) {
    const bool may_be_moved = account_home.is_file_url();
    const Url moved = may_be_moved ? folder_of_variable(home, account_home, variables.*row.variable) : Url();
    folders.*row.folder = moved.empty() ? home.appending(row.by_default) : moved;
  }
  return folders;
}

void add_named_folders(UserFolders& folders, const Url& home, const Url& account_home, std::string_view user_dirs) {
  for (const NamedFolder& row : named_folder_table) folders.*row.folder = home.appending(row.by_default);
  while (!user_dirs.empty()) {
    const auto end = std::min(user_dirs.find('\n'), user_dirs.size());
    const std::string_view line = user_dirs.substr(0, end);
    user_dirs.remove_prefix(std::min(end + 1, user_dirs.size()));
    for (const NamedFolder& row : named_folder_table) {
      // The last line of a key counts, as for a shell.
      if (const auto folder = folder_of_line(line, row.key, home, account_home)) folders.*row.folder = *folder;
    }
  }
  keep_cache_apart(folders, home);
}

UserFolders user_folders(const Url& home, const Session& session, const FileManager& files) {
  const bool is_own = session.account_home.is_file_url() && real_folder(session.account_home) == home;
  const Url account_home = is_own ? session.account_home : Url();
  UserFolders folders = base_folders(home, account_home, session.base_folders);
  add_named_folders(folders, home, account_home,
                    files.read(folders.config.appending("user-dirs.dirs"), most_bytes).value_or(""));
  return folders;
}

}  // namespace tarnby
