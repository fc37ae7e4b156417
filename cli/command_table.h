#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/invocation.h"

namespace tarnby::cli {

struct Context;

/// What a command does to the disk. Only one that removes knows --dry-run and --yes; one that looks keeps what a scan
/// would write to the settings to itself.
enum class Effect { looks, removes, stores };

/// A command: one row here, and it is read, run, and explained.
struct CommandRow {
  std::string_view name;
  /// The arguments as people write them down: "[KEY [VALUE]]". Each word in capitals is one.
  std::string_view arguments;
  std::size_t fewest;
  std::size_t most;
  Effect effect;
  /// See commands.h.
  ExitStatus (*run)(Context& context);
  std::string_view summary;
  /// The rest of its help, in lines of at most 80 columns: `details`, what `list` makes unless it is null, and what
  /// follows that.
  std::string_view details;
  std::string (*list)() = nullptr;
  std::string_view after_list = {};
};

/// An option, and where what it says goes.
struct OptionRow {
  std::string_view name;
  /// What follows it, in capitals; empty when nothing does.
  std::string_view value;
  std::variant<bool Invocation::*, std::optional<std::string> Invocation::*, std::vector<std::string> Invocation::*>
      place;
  bool only_when_removing;
  std::string_view help;
  /// The one command that it means something to; empty when there are more.
  std::string_view only_with = {};
};

/// In the order in which they are listed.
std::span<const CommandRow> command_rows();
std::span<const OptionRow> option_rows();

/// Null when there is none of that name.
const CommandRow* command_row(std::string_view name);

/// "scan, clean, apps": for messages.
std::string command_names();

}  // namespace tarnby::cli
