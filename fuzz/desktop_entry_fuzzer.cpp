// A menu entry of any bytes: what is read of it is a part of it, and a command is split the same way for ever.

#include <algorithm>
#include <vector>

#include "fuzz/fuzzer.h"
#include "places/desktop_entry.h"

using namespace tarnby;

namespace {

/// The words as one command, each quoted by the rules.
std::string command_of(const std::vector<std::string>& words) {
  std::string command;
  for (const std::string& word : words) {
    command += command.empty() ? "\"" : " \"";
    for (const char c : word) {
      if (std::string_view("\"`$\\").find(c) != std::string_view::npos) command += '\\';
      command += c;
      if (c == '%') command += c;
    }
    command += '"';
  }
  return command;
}

void check_command(const std::vector<std::string>& words, std::size_t size) {
  std::size_t bytes = 0;
  for (const std::string& word : words) bytes += word.size();
  fuzz::check(bytes <= size, "a command has no more than was written");
  fuzz::check(words_of_command(command_of(words)) == words, "its words are the same when they are quoted");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text_of(data, size);
  check_command(words_of_command(bytes), size);
  const std::vector<std::string> languages = {"de-AT", "fr", "en-US"};
  const auto entry = read_desktop_entry(bytes, languages);
  if (!entry) return 0;
  check_command(entry->command, size);
  for (const std::string* text : {&entry->name, &entry->type, &entry->try_exec, &entry->window_class, &entry->icon,
                                  &entry->flatpak, &entry->snap, &entry->appimage_version}) {
    fuzz::check(text->size() <= size, "no text is longer than the entry");
  }
  const bool is_word =
      std::find(entry->command.begin(), entry->command.end(), entry->program()) != entry->command.end();
  fuzz::check(is_word || entry->program().empty(), "the program is a word of the command");
  fuzz::check(entry->program_name().find('/') == std::string_view::npos, "its name is no path");
  return 0;
}
