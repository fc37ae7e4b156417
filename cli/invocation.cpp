#include "cli/invocation.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/command_table.h"
#include "cli/context.h"

namespace tarnby::cli {

namespace {

constexpr std::string_view see_help = "; see tarnby-cleaner-cli --help";

[[noreturn]] void refuse(const std::string& reason, std::string_view advice = see_help) {
  throw CommandError(wrong_usage, reason + std::string(advice));
}

const OptionRow* option_row(std::string_view name) {
  const auto rows = option_rows();
  const auto row = std::ranges::find(rows, name == "-h" ? "--help" : name, &OptionRow::name);
  return row == rows.end() ? nullptr : &*row;
}

std::string_view name_of_option(std::string_view word) {
  return word.substr(0, word.find('='));
}

/// "-" and negative numbers are arguments.
bool is_option(std::string_view word) {
  return word.size() > 1 && word[0] == '-' && (word[1] < '0' || word[1] > '9');
}

bool takes_value(const OptionRow& row) {
  return !row.value.empty();
}

/// The words of a command line, one after the other.
class Reader {
 public:
  explicit Reader(std::span<const char* const> words) : words_(words) {}

  Invocation read() {
    bool options_may_come = true;
    while (at_ < words_.size()) {
      const std::string_view word = words_[at_++];
      if (options_may_come && word == "--") {
        options_may_come = false;
      } else if (options_may_come && is_option(word)) {
        read_option(word);
      } else {
        read_word(word);
      }
    }
    return std::move(asked_);
  }

 private:
  void read_word(std::string_view word) {
    if (asked_.command) {
      asked_.arguments.emplace_back(word);
      return;
    }
    asked_.command = command_row(word);
    if (!asked_.command) refuse("there is no command \"" + one_line(word) + "\"; the commands are " + command_names());
  }

  void read_option(std::string_view word) {
    const std::string_view name = name_of_option(word);
    const OptionRow* row = option_row(name);
    if (!row) refuse("there is no option " + one_line(name));
    std::optional<std::string> value;
    if (name.size() < word.size()) value = word.substr(name.size() + 1);
    if (!takes_value(*row)) {
      if (value) refuse(std::string(row->name) + " takes no value");
      asked_.*std::get<bool Invocation::*>(row->place) = true;
      return;
    }
    if (!value && at_ < words_.size() && !option_row(name_of_option(words_[at_]))) value = words_[at_++];
    if (!value)
      refuse(std::string(row->name) + " needs a value: " + std::string(row->name) + " " + std::string(row->value));
    keep_value(*row, std::move(*value));
  }

  void keep_value(const OptionRow& row, std::string value) {
    if (const auto* many = std::get_if<std::vector<std::string> Invocation::*>(&row.place)) {
      (asked_.**many).push_back(std::move(value));
      return;
    }
    asked_.*std::get<std::optional<std::string> Invocation::*>(row.place) = std::move(value);
  }

  std::span<const char* const> words_;
  std::size_t at_ = 0;
  Invocation asked_;
};

bool is_given(const Invocation& asked, const OptionRow& option) {
  if (const auto* flag = std::get_if<bool Invocation::*>(&option.place)) return asked.**flag;
  const auto* value = std::get_if<std::optional<std::string> Invocation::*>(&option.place);
  return value && (asked.**value).has_value();
}

void check(const Invocation& asked) {
  if (!asked.command) refuse("no command was given; the commands are " + command_names());
  const CommandRow& row = *asked.command;
  const std::string name(row.name);
  const std::string advice = "; see tarnby-cleaner-cli " + name + " --help";
  if (asked.arguments.size() < row.fewest) refuse(name + " needs " + std::string(row.arguments), advice);
  if (asked.arguments.size() > row.most) {
    refuse("\"" + one_line(asked.arguments[row.most]) + "\" is one word too many for " + name, advice);
  }
  if (row.effect != Effect::removes && (asked.dry_run || asked.yes)) {
    refuse(name + " removes nothing; leave --dry-run and --yes out", "");
  }
  for (const OptionRow& option : option_rows()) {
    if (option.only_with.empty() || option.only_with == row.name || !is_given(asked, option)) continue;
    refuse(std::string(option.name) + " is for " + std::string(option.only_with) + " only; leave it out", "");
  }
}

}  // namespace

Invocation parse_command_line(std::span<const char* const> words) {
  Invocation asked = Reader(words).read();
  if (!asked.help && !asked.version) check(asked);
  return asked;
}

}  // namespace tarnby::cli
