#include "platform/macos/login_items.h"

#include <ServiceManagement/ServiceManagement.h>

#include "platform/macos/core_foundation.h"

namespace tarnby {

namespace {

class ServiceLoginItems final : public LoginItems {
 public:
  bool set_enabled(std::string_view identifier, bool enabled) override {
    return !identifier.empty() && SMLoginItemSetEnabled(cf_string(identifier).get(), enabled);
  }
};

}  // namespace

std::unique_ptr<LoginItems> service_login_items() {
  return std::make_unique<ServiceLoginItems>();
}

}  // namespace tarnby
