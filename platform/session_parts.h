#pragma once

#include <string>

#include "files/url.h"

// What the sessions of every system share. Nobody outside platform/ needs it.

namespace tarnby {

/// What the account database tells of this user (getpwuid_r(3)); empty when it has no account.
struct Account {
  std::string name;
  std::string home;
};

/// That of the effective user. Asks the account database, which may take a while where accounts are on another machine.
Account account_of_this_user();

}  // namespace tarnby
