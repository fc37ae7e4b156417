#include "inventory/application_search.h"

#include "places/macos_home.h"

namespace tarnby {

namespace {

bool is_application_entry(std::string_view name, EntryKind /*kind*/) {
  return is_application_name(name);
}

}  // namespace

void add_applications_in(const FileManager& files, const Url& folder, int levels, std::vector<Url>& found) {
  for (const Entry& entry : files.list(folder)) {
    if (is_application_name(entry.url.last_path_component())) {
      found.push_back(entry.url);
    } else if (levels > 1 && entry.kind == EntryKind::folder) {
      add_applications_in(files, entry.url, levels - 1, found);
    }
  }
}

void add_granted_applications(const FileManager& files, const Url& applications, std::vector<Url>& found) {
  for (const Entry& entry : files.list(applications)) {
    if (is_application_name(entry.url.last_path_component())) {
      found.push_back(entry.url);
    } else if (entry.url.last_path_component() != macos_home::system_applications) {
      add_applications_in(files, entry.url, 2, found);
    }
  }
}

std::vector<Url> applications_of_the_user(FileManager& files, const Url& applications, const Url& home) {
  std::vector<Url> found;
  add_granted_applications(files, applications, found);
  for (const macos_home::ApplicationPlace& place : macos_home::application_places) {
    const Url folder = home.appending(place.beneath_home);
    if (place.walked) {
      const auto below = files.walk(folder, Hidden::skip, Packages::enter, is_application_entry);
      found.insert(found.end(), below.begin(), below.end());
    } else {
      add_applications_in(files, folder, 1, found);
    }
  }
  return found;
}

}  // namespace tarnby
