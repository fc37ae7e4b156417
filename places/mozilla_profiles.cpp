#include "places/mozilla_profiles.h"

#include <algorithm>
#include <optional>

#include "text/key_file.h"

namespace tarnby {

namespace {

constexpr std::size_t most_profiles = 1'000;

bool has_parent_component(std::string_view path) {
  while (!path.empty()) {
    const auto slash = std::min(path.find('/'), path.size());
    if (path.substr(0, slash) == "..") return true;
    path.remove_prefix(std::min(slash + 1, path.size()));
  }
  return false;
}

/// The folder that a path names below the base; nowhere when it lies elsewhere.
Url folder_below(const Url& base, std::string_view path) {
  if (path.empty() || has_parent_component(path)) return {};
  const Url folder = path.front() == '/' ? Url::file(path) : base.appending(path);
  return folder.is_within(base) && folder != base ? folder : Url();
}

class Profiles {
 public:
  explicit Profiles(const Url& base) : base_(base) {}

  void add_listed(const KeyFile& file, const std::string& group) {
    MozillaProfile* profile = at(file.value(group, "Path"));
    if (profile != nullptr && profile->name.empty()) profile->name = file.value(group, "Name").value_or("");
  }

  void add_used(const KeyFile& file, const std::string& group) {
    if (MozillaProfile* profile = at(file.value(group, "Default"))) profile->is_used = true;
  }

  std::vector<MozillaProfile> take() { return std::move(found_); }

 private:
  /// The profile there, which is added when it is new; null when it is not taken.
  MozillaProfile* at(const std::optional<std::string>& path) {
    const Url folder = path ? folder_below(base_, *path) : Url();
    if (folder.empty()) return nullptr;
    const auto same = std::find_if(found_.begin(), found_.end(),
                                   [&](const MozillaProfile& profile) { return profile.folder == folder; });
    if (same != found_.end()) return &*same;
    if (found_.size() == most_profiles) return nullptr;
    return &found_.emplace_back(MozillaProfile{folder, {}, false});
  }

  const Url& base_;
  std::vector<MozillaProfile> found_;
};

}  // namespace

std::vector<MozillaProfile> mozilla_profiles(const Url& base, std::string_view profiles_ini,
                                             std::string_view installs_ini) {
  Profiles profiles(base);
  // Older versions name installations in the list of profiles, in groups of their own.
  if (const auto file = KeyFile::parse(profiles_ini)) {
    for (const std::string& group : file->groups()) {
      if (group.starts_with("Profile")) profiles.add_listed(*file, group);
      if (group.starts_with("Install")) profiles.add_used(*file, group);
    }
  }
  if (const auto file = KeyFile::parse(installs_ini)) {
    for (const std::string& group : file->groups()) profiles.add_used(*file, group);
  }
  return profiles.take();
}

}  // namespace tarnby
