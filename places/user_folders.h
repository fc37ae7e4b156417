#pragma once

#include <string_view>

#include "files/url.h"
#include "platform/session.h"

namespace tarnby {

class FileManager;

/// The folders of a Linux home that its owner or the desktop may have moved or renamed. Each lies below the home and is
/// not the home itself; nowhere when there is none. None of them need exist, and any may be a link, which is not
/// followed.
struct UserFolders {
  /// Base folders (freedesktop.org, XDG base directories 0.8). The cache folder is nowhere when it would
  /// hold another folder named here: then nobody can say what in it is a cache.
  Url cache;
  Url config;
  Url data;
  Url state;
  /// What people call their own (xdg-user-dirs).
  Url desktop;
  Url downloads;
  Url templates;
  Url public_share;
  Url documents;
  Url music;
  Url pictures;
  Url videos;
};

/// Those of a granted home folder. Reads at most its user-dirs.dirs.
///
/// The variables of the session count only in the home of its own account, and each only when it names, by an absolute
/// path without "." and "..", a folder below that home; else the folder is where it is by default.
UserFolders user_folders(const Url& home, const Session& session, const FileManager& files);

/// The base folders alone, as the variables say.
/// @param account_home the same home as the account database spells it, which may lead through links; nowhere when it
///   is another one, and the variables say nothing of this home.
UserFolders base_folders(const Url& home, const Url& account_home, const BaseFolderVariables& variables);

/// Fills in what people call their own, from the bytes of user-dirs.dirs (user-dirs.dirs(5)): lines like
/// XDG_MUSIC_DIR="$HOME/Musik". Nothing in it is expanded but $HOME at the beginning. A folder that is the home itself,
/// with or without a slash, is switched off; one outside of the home is nowhere. What the file does not name has its
/// English name.
void add_named_folders(UserFolders& folders, const Url& home, const Url& account_home, std::string_view user_dirs);

}  // namespace tarnby
