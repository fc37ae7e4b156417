#include "platform/macos/login_items.h"

#include <ServiceManagement/ServiceManagement.h>
#include <mach-o/dyld.h>
#include <sys/param.h>
#include <sys/stat.h>

#include <cstdint>
#include <string>

#include "text/macos/core_foundation.h"

namespace tarnby {

namespace {

class ServiceLoginItems final : public LoginItems {
 public:
  bool set_enabled(std::string_view identifier, bool enabled) override {
    return !identifier.empty() && SMLoginItemSetEnabled(cf_string(identifier).get(), enabled);
  }

  /// Named after what follows the identifier's last dot, as on every system.
  bool is_installed(std::string_view identifier) const override {
    char program[MAXPATHLEN];
    std::uint32_t size = sizeof program;
    if (_NSGetExecutablePath(program, &size) != 0) return false;
    std::string path(program);
    path.resize(path.rfind('/') + 1);
    path.append("../Library/LoginItems/").append(identifier.substr(identifier.rfind('.') + 1)).append(".app");
    struct stat info = {};
    return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
  }
};

}  // namespace

std::unique_ptr<LoginItems> service_login_items() {
  return std::make_unique<ServiceLoginItems>();
}

}  // namespace tarnby
