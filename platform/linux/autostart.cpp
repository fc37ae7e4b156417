#include "platform/linux/autostart.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include "files/temporary_file.h"

namespace tarnby {

namespace {

constexpr mode_t entry_mode = 0644;

/// With "-" at its beginning a part would be read as an option where it stands as a command.
bool is_identifier(std::string_view text) {
  const auto may_stand = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
           c == '.';
  };
  const std::string bounded = "." + std::string(text) + ".";
  return bounded.find("..") == std::string::npos && bounded.find(".-") == std::string::npos &&
         std::all_of(text.begin(), text.end(), may_stand);
}

std::string program_of(std::string_view identifier) {
  return std::string(identifier.substr(identifier.rfind('.') + 1));
}

std::string entry_text(std::string_view identifier, bool enabled) {
  const std::string program = program_of(identifier);
  std::string text = "[Desktop Entry]\nType=Application\nName=" + program;
  text += "\nTryExec=" + program;
  text += "\nExec=" + program;
  text += "\nNoDisplay=true\n";
  return enabled ? text : text + "Hidden=true\n";
}

class Autostart final : public LoginItems {
 public:
  Autostart(Url own, std::vector<Url> system, std::vector<Url> programs)
      : own_(std::move(own)), system_(std::move(system)), programs_(std::move(programs)) {}

  bool set_enabled(std::string_view identifier, bool enabled) override {
    if (!own_.is_file_url() || !is_identifier(identifier)) return false;
    const std::string name = std::string(identifier) + ".desktop";
    const std::string path = own_.appending(name).path();
    if (!enabled && !system_has(name)) return ::unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
    make_folders(own_);
    // What a crash leaves of it does not end in ".desktop" and is never started.
    TemporaryFile entry(path);
    return entry.write(entry_text(identifier, enabled), entry_mode) && entry.replace(path);
  }

  bool is_installed(std::string_view identifier) const override {
    if (!is_identifier(identifier)) return false;
    const std::string program = program_of(identifier);
    return std::any_of(programs_.begin(), programs_.end(), [&](const Url& folder) {
      const std::string path = folder.appending(program).path();
      struct stat info = {};
      return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) && ::access(path.c_str(), X_OK) == 0;
    });
  }

 private:
  bool system_has(const std::string& name) const {
    return std::any_of(system_.begin(), system_.end(), [&](const Url& folder) {
      struct stat ignored = {};
      return folder.is_file_url() && ::stat(folder.appending(name).path().c_str(), &ignored) == 0;
    });
  }

  const Url own_;
  const std::vector<Url> system_;
  const std::vector<Url> programs_;
};

}  // namespace

std::unique_ptr<LoginItems> autostart_entries(Url own, std::vector<Url> system, std::vector<Url> programs) {
  return std::make_unique<Autostart>(std::move(own), std::move(system), std::move(programs));
}

}  // namespace tarnby
