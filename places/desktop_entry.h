#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/url.h"

namespace tarnby {

/// What an entry of the menu tells of a program (freedesktop.org, desktop entries 1.5). Texts are bytes
/// that some file holds and need not be UTF-8; empty when it does not say.
struct DesktopEntry {
  /// What the entry is known by, with the ".desktop" at its end: "org.gnome.Epiphany.desktop".
  std::string id;
  Url file;
  /// In the language of the person, else as it stands.
  std::string name;
  /// "Application", "Link" or "Directory".
  std::string type;
  /// The words of the command, see `words_of_command`; none when it is not written by the rules.
  std::vector<std::string> command;
  /// The program without which the entry is not to be shown: a path, or a name to be looked for in PATH.
  std::string try_exec;
  /// What the windows of the program call themselves.
  std::string window_class;
  /// The name of an icon in a theme, or the path of a file.
  std::string icon;
  /// The flatpak whose entry this is.
  std::string flatpak;
  /// The snap, with its instance's key when it has one.
  std::string snap;
  std::string appimage_version;
  /// Not for menus, yet a program.
  bool is_not_displayed = false;
  /// "As if it were not there": a user's way to take an entry of the system out of the menus.
  bool is_hidden = false;
  /// Made by what integrates AppImages: one of its keys begins with "X-AppImage".
  bool is_of_appimage = false;

  /// The program that the command starts, as it is written there: its first word, or behind "env" and its variables
  /// the first that is neither. Empty when there is none.
  std::string_view program() const;
  /// The name of that program's file, unless that is one that starts others (flatpak, sh, wine…), so that it says
  /// nothing of this entry.
  std::string_view program_name() const;
};

/// Reads the bytes of a desktop entry; `id` and `file` stay empty. None when they have no group [Desktop Entry], or
/// are more than 256 KiB.
/// @param languages the person's, most wanted first, written as "de-AT".
std::optional<DesktopEntry> read_desktop_entry(std::string_view bytes, std::span<const std::string> languages);

/// The most that an entry may hold, in bytes.
inline constexpr std::size_t most_of_a_desktop_entry = std::size_t{256} << 10U;

/// The words of a command line as desktops split it ("The Exec key"): at blanks outside of quotes, a backslash takes
/// the next character as it is. "%%" is "%"; a field code ("%U") is left out, and so is a word of nothing else. Nothing
/// is ever expanded, and no shell is asked. Single quotes and quotes within a word are read, too, as desktops do. None
/// when a quote is not closed or there are more than 1,000 words.
std::vector<std::string> words_of_command(std::string_view command);

}  // namespace tarnby
