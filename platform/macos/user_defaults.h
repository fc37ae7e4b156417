#pragma once

#include <memory>

#include "platform/settings_store.h"

namespace tarnby {

/// The user defaults of a domain: a program's identifier or that of a group of programs. Another process's writes are
/// seen after `synchronize`. Sums are made when they are added, from what the defaults hold then: two processes that
/// add in the same instant can lose one of the two.
std::unique_ptr<SettingsStore> user_defaults(std::string_view domain);

}  // namespace tarnby
