#pragma once

#include <memory>

#include "platform/login_items.h"

namespace tarnby {

/// Login items as the service management knows them: helper programs in Contents/Library/LoginItems of this program's
/// bundle, by bundle identifier.
std::unique_ptr<LoginItems> service_login_items();

}  // namespace tarnby
