// Command lines of any words, a NUL behind each. Nothing here can carry a command out: see the commands at the end.

#include <algorithm>
#include <vector>

#include "cli/byte_size.h"
#include "cli/command_table.h"
#include "cli/commands.h"
#include "cli/context.h"
#include "cli/help.h"
#include "cli/setting_values.h"
#include "fuzz/fuzzer.h"

using namespace tarnby;
using namespace tarnby::cli;

namespace {

using Words = std::vector<std::string>;

bool is_one_of(const Words& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// What people read must stay in its line and leave the terminal alone.
void check_line(std::string_view line) {
  const std::size_t backslashes = static_cast<std::size_t>(std::count(line.begin(), line.end(), '\\'));
  fuzz::check(one_line(line).size() == line.size() + backslashes, "only a backslash would be escaped once more");
  fuzz::check(line.find('\n') == std::string_view::npos, "a message is one line");
}

template <typename Work>
void expect_error(Work work) {
  try {
    work();
  } catch (const CommandError& error) {
    fuzz::check(error.status() == wrong_usage, "what is typed wrongly is told as that");
    check_line(error.what());
  }
}

void check_values(const Invocation& asked) {
  for (const std::string& given : asked.settings) {
    const std::size_t end = std::min(given.find('='), given.size() - 1);
    expect_error([&] { (void)setting_value(given.substr(0, end), given.substr(end + 1)); });
  }
  for (const auto* folder : {&asked.home, &asked.applications, &asked.disk}) {
    if (*folder && folder->value().empty()) fuzz::check(typed_path("").empty(), "an empty folder is nowhere");
    if (*folder) (void)typed_path(**folder);
  }
  if (asked.at_least) fuzz::check(byte_size(*asked.at_least).value_or(0) >= 0, "no size is negative");
  if (asked.languages) (void)languages_from_list(*asked.languages, ',');
}

void check_reading(const Words& words, const Invocation& asked) {
  const Words options(words.begin(), std::find(words.begin(), words.end(), "--"));
  fuzz::check(asked.dry_run == is_one_of(words, "--dry-run") || !is_one_of(options, "--dry-run"),
              "a dry run that is asked for stays one");
  fuzz::check(!asked.yes || is_one_of(words, "--yes"), "nobody agrees who did not say so");
  for (const std::string& argument : asked.arguments) {
    fuzz::check(is_one_of(words, argument), "every argument was typed as it is");
  }
  if (asked.help || asked.version) return;
  fuzz::check(asked.command != nullptr && is_one_of(words, asked.command->name), "the command was typed");
  fuzz::check(asked.command->effect == Effect::removes || (!asked.dry_run && !asked.yes),
              "only what removes is agreed to");
  const std::size_t count = asked.arguments.size();
  fuzz::check(count >= asked.command->fewest && count <= asked.command->most, "the command gets what it takes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest = fuzz::text_of(data, size);
  Words words;
  while (!rest.empty()) words.emplace_back(fuzz::next_word(rest));
  std::vector<const char*> pointers;
  for (const std::string& word : words) pointers.push_back(word.c_str());
  for (const std::string& word : words) check_line(one_line(word));
  expect_error([&] {
    const Invocation asked = parse_command_line(pointers);
    check_reading(words, asked);
    check_values(asked);
    if (asked.help) (void)(asked.command ? command_help(*asked.command) : program_help(asked.called_as));
  });
  return 0;
}

namespace tarnby::cli {

namespace {

[[noreturn]] ExitStatus never() {
  fuzz::check(false, "no command runs");
  std::abort();
}

}  // namespace

// In the place of the real ones, which are not part of this program.
ExitStatus run_scan(Context& /*context*/) {
  return never();
}
ExitStatus run_clean(Context& /*context*/) {
  return never();
}
ExitStatus run_junk(Context& /*context*/) {
  return never();
}
ExitStatus run_cleanup(Context& /*context*/) {
  return never();
}
ExitStatus run_large(Context& /*context*/) {
  return never();
}
ExitStatus run_apps(Context& /*context*/) {
  return never();
}
ExitStatus run_app(Context& /*context*/) {
  return never();
}
ExitStatus run_uninstall(Context& /*context*/) {
  return never();
}
ExitStatus run_unused(Context& /*context*/) {
  return never();
}
ExitStatus run_languages(Context& /*context*/) {
  return never();
}
ExitStatus run_grant(Context& /*context*/) {
  return never();
}
ExitStatus run_settings(Context& /*context*/) {
  return never();
}

}  // namespace tarnby::cli
