#include "places/desktop_entry.h"

#include <algorithm>
#include <limits>

#include "text/key_file.h"

namespace tarnby {

namespace {

constexpr std::size_t most_words = 1'000;
constexpr std::size_t unranked = std::numeric_limits<std::size_t>::max();

/// Programs that start others.
constexpr std::string_view starters[] = {
    "bash",      "dash", "env",  "flatpak", "gapplication", "gjs",    "gtk-launch", "java",
    "kioclient", "mono", "node", "perl",    "pkexec",       "python", "python2",    "python3",
    "ruby",      "sh",   "snap", "sudo",    "wine",         "wine64", "xdg-open",   "zsh",
};

struct TextKey {
  std::string_view key;
  std::string DesktopEntry::*text;
};
constexpr TextKey text_keys[] = {
    {"Type", &DesktopEntry::type},
    {"TryExec", &DesktopEntry::try_exec},
    {"StartupWMClass", &DesktopEntry::window_class},
    {"Icon", &DesktopEntry::icon},
    {"X-Flatpak", &DesktopEntry::flatpak},
    {"X-SnapInstanceName", &DesktopEntry::snap},
    {"X-AppImage-Version", &DesktopEntry::appimage_version},
};

struct FlagKey {
  std::string_view key;
  bool DesktopEntry::*flag;
};
constexpr FlagKey flag_keys[] = {
    {"NoDisplay", &DesktopEntry::is_not_displayed},
    {"Hidden", &DesktopEntry::is_hidden},
};

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}

/// Splits a command, one character after the other.
class CommandSplitter {
 public:
  std::vector<std::string> split(std::string_view command) {
    for (rest_ = command; !rest_.empty() && words_.size() <= most_words;) take(next());
    end_word();
    const bool is_whole = quote_ == '\0' && words_.size() <= most_words;
    return is_whole ? std::move(words_) : std::vector<std::string>();
  }

 private:
  char next() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  void take(char c) {
    if (quote_ != '\0' && c == quote_) {
      quote_ = '\0';
    } else if (quote_ == '\0' && (c == '"' || c == '\'')) {
      quote_ = c;
      is_word_ = true;
    } else if (quote_ == '\0' && is_blank(c)) {
      end_word();
    } else if (c == '%' && !rest_.empty()) {
      take_field_code(next());
    } else {
      add(c == '\\' && quote_ != '\'' && !rest_.empty() ? escaped(next()) : std::string(1, c));
    }
  }

  void take_field_code(char code) {
    if (code == '%') add("%");
    // A blank or a quote is no code, but means what it means.
    if (is_blank(code) || code == '"' || code == '\'') take(code);
  }

  /// Within double quotes only some characters need a backslash; before another one it stays.
  std::string escaped(char c) const {
    constexpr std::string_view needing = "\"`$\\";
    const bool is_needed = quote_ == '\0' || needing.find(c) != std::string_view::npos;
    return is_needed ? std::string(1, c) : std::string{'\\', c};
  }

  void add(std::string_view text) {
    word_ += text;
    is_word_ = true;
  }

  void end_word() {
    if (is_word_) words_.push_back(std::move(word_));
    word_.clear();
    is_word_ = false;
  }

  std::string_view rest_;
  std::vector<std::string> words_;
  std::string word_;
  bool is_word_ = false;
  char quote_ = '\0';
};

/// Fills one entry, line by line. Of keys that are repeated the first counts.
class EntryReader {
 public:
  explicit EntryReader(std::span<const std::string> languages) : languages_(languages) {}

  void take(const KeyFileLine& line) {
    if (line.key == "Name") {
      take_name(line);
    } else if (line.locale.empty()) {
      take_plain(line);
    }
  }

  DesktopEntry finish() {
    entry_.command = words_of_command(exec_);
    return std::move(entry_);
  }

 private:
  void take_name(const KeyFileLine& line) {
    const auto rank = line.locale.empty() ? unranked - 1 : locale_rank(line.locale, languages_).value_or(unranked);
    if (rank >= name_rank_) return;
    name_rank_ = rank;
    entry_.name = without_key_file_escapes(line.value);
  }

  void take_plain(const KeyFileLine& line) {
    entry_.is_of_appimage |= line.key.starts_with("X-AppImage");
    if (line.key == "Exec") fill(exec_, line.value);
    for (const auto& [key, text] : text_keys) {
      if (line.key == key) fill(entry_.*text, line.value);
    }
    for (const auto& [key, flag] : flag_keys) {
      if (line.key == key) entry_.*flag |= line.value == "true" || line.value == "1";
    }
  }

  static void fill(std::string& text, std::string_view value) {
    if (text.empty()) text = without_key_file_escapes(value);
  }

  std::span<const std::string> languages_;
  DesktopEntry entry_;
  std::string exec_;
  std::size_t name_rank_ = unranked;
};

}  // namespace

std::string_view DesktopEntry::program() const {
  const auto is_variable = [](std::string_view word) { return word.find('=') != std::string_view::npos; };
  const auto is_option = [](std::string_view word) { return word.starts_with('-'); };
  auto word = command.begin();
  if (word != command.end() && last_component_of(*word) == "env") {
    word = std::find_if(word + 1, command.end(), [&](const auto& it) { return !is_variable(it) && !is_option(it); });
  }
  return word == command.end() ? std::string_view() : std::string_view(*word);
}

std::string_view DesktopEntry::program_name() const {
  const std::string_view file_name = last_component_of(program());
  const bool starts_others = std::find(std::begin(starters), std::end(starters), file_name) != std::end(starters);
  return starts_others ? std::string_view() : file_name;
}

std::vector<std::string> words_of_command(std::string_view command) {
  return CommandSplitter().split(command);
}

std::optional<DesktopEntry> read_desktop_entry(std::string_view bytes, std::span<const std::string> languages) {
  if (bytes.size() > most_of_a_desktop_entry) return std::nullopt;
  constexpr std::string_view group = "Desktop Entry";
  EntryReader reader(languages);
  bool is_entry = false;
  KeyFileLines lines(bytes);
  while (const auto line = lines.next()) {
    const bool is_within = line->group == group;
    // Groups behind it hold what can be done besides, each with a name and a command of its own.
    if (is_entry && !is_within) break;
    is_entry = is_within;
    if (is_within) reader.take(*line);
  }
  return is_entry ? std::optional(reader.finish()) : std::nullopt;
}

}  // namespace tarnby
