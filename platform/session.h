#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// 10.15 is {10, 15}.
struct SystemVersion {
  int major_number = 0;
  int minor_number = 0;
  friend bool operator<(const SystemVersion& a, const SystemVersion& b) {
    return std::tie(a.major_number, a.minor_number) < std::tie(b.major_number, b.minor_number);
  }
};

/// What the variables XDG_CACHE_HOME, XDG_CONFIG_HOME, XDG_DATA_HOME and XDG_STATE_HOME say, as they say it; empty when
/// unset. Whether a home may be read so is for whoever knows the home to decide (places/user_folders.h).
struct BaseFolderVariables {
  std::string cache;
  std::string config;
  std::string data;
  std::string state;
};

/// What is known of the logged-in user. Values are taken once, from the environment and the account database
/// (getpwuid_r(3), locale(7)); nothing changes afterwards.
struct Session {
  /// The account's login name, or what USER or LOGNAME say when the user has no account; empty when none does.
  std::string user_name;
  /// The home folder the platform reports for the user. Never the grant: that one is only ever given, not guessed.
  Url home_folder;
  /// Where settings files live; nowhere when neither XDG_CONFIG_HOME nor a home folder is known, and on systems that
  /// keep settings otherwise.
  Url settings_folder;
  /// Preferred languages, most wanted first, written as "en-US", without repetition: those of LANGUAGE, LC_ALL,
  /// LC_MESSAGES and LANG. C and POSIX name none, and where they decide the locale LANGUAGE does not count.
  std::vector<std::string> preferred_languages;
  /// Locale names as the environment has them ("de_DE.UTF-8"), empty when unset.
  std::string collation_locale;
  std::string number_locale;
  /// Where the entries are that make the desktop start programs at login: the user's own, made when missing, and those
  /// for all users. Nowhere and none on systems that keep login items elsewhere.
  Url autostart_folder = {};
  std::vector<Url> system_autostart_folders = {};
  /// The folders of PATH, in its order; none on systems that find helper programs otherwise.
  std::vector<Url> program_folders = {};
  /// The version of a system whose privacy switches guard folders from programs; none on one without such switches.
  std::optional<SystemVersion> system_version = {};
  /// The home folder that the account database names, whatever the environment says; nowhere without an account.
  Url account_home = {};
  /// Where programs of this login keep what ends with it (XDG_RUNTIME_DIR), such as the locks of running flatpaks;
  /// nowhere when the variable names no absolute place, and on systems without one.
  Url runtime_folder = {};
  /// Where the system lists its processes and what is installed: the root of the disk.
  Url system_root = Url::file("/");
  /// Where the user wants the base folders of their home.
  BaseFolderVariables base_folders = {};
};

/// The session of this process.
Session current_session();

/// Splits a list of languages at the separator and writes each as "en-US" ("de_DE.UTF-8@euro" becomes "de-DE"); leaves
/// out empty ones, C and POSIX.
std::vector<std::string> languages_from_list(std::string_view list, char separator);

}  // namespace tarnby
