#include "engine/cleaner.h"

#include <algorithm>

#include "engine/file_types.h"
#include "engine/home_offers.h"
#include "places/macos_home.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

bool contains(const std::vector<std::string>& list, std::string_view item) {
  return std::find(list.begin(), list.end(), item) != list.end();
}

}  // namespace

Cleaner& Cleaner::sharedCleaner() {
  static Cleaner cleaner(Platform::shared(), Cache::sharedCache(), Remainders::sharedRemainder());
  return cleaner;
}

Cleaner::Cleaner(Platform& platform, Cache& cache, Remainders& remainders)
    : appDelegate(platform.application_delegate),
      app_settings(&platform.app_settings),
      url_home(platform.bookmarks.resolve_and_access(Grant::home)),
      url_library(url_home.appending(macos_home::library)),
      url_caches(url_library.appending(macos_home::caches)),
      url_logs(url_library.appending(macos_home::logs)),
      url_mails(url_library.appending(macos_home::apple_mail_downloads)),
      url_trash(url_home.appending(macos_home::trash)),
      url_downloads(url_home.appending(macos_home::downloads)),
      archive_formats(archive_extensions()),
      audio_formats(audio_extensions()),
      document_formats(document_extensions()),
      movie_formats(movie_extensions()),
      picture_formats(picture_extensions()),
      platform_(platform),
      cache_(cache),
      remainders_(remainders) {}

Cleaner::~Cleaner() = default;

Image Cleaner::icon_of_application(const std::string& label) const {
  const auto known = cache_.names.find(label);
  return known == cache_.names.end() ? Image() : known->second->app_icon;
}

void Cleaner::look_for_places() {
  look_at_home();
  places_ = layout_ == HomeKind::linux_desktop ? KnownPlaces() : KnownPlaces::look(platform_.files, url_home);
  knows_places_ = places_.any();
}

/// Takes down for a group what the looks for it missed.
void Cleaner::tell_problem(std::string_view group, const Missed& missed) {
  const bool leftovers = layout_ == HomeKind::macos && (group == "remainders" || group == "Remainders");
  auto problem = leftovers ? problem_of_leftovers(remainders_.known_applications(), missed, url_home)
                           : problem_of_look(missed, url_home);
  if (!problem && !places_.serves(group)) {
    problem = {LookProblem::Kind::no_place, std::string(url_home.last_path_component()), true};
  }
  if (!problem && offers_) problem = problem_of_link(group);
  problems_.set(group, std::move(problem));
}

std::int64_t Cleaner::overall_size_of_files(std::span<const Url> urls) {
  return platform_.measurer.overall_size_of_files(urls);
}

std::int64_t Cleaner::overall_size_of_direcory(const Url& folder) {
  return platform_.measurer.overall_size_of_direcory(folder);
}

std::string Cleaner::type_at_url_file(const Url& file) const {
  const std::string_view extension = file.path_extension();
  if (contains(archive_formats, extension)) return "archive";
  if (contains(audio_formats, extension)) return "audio";
  if (contains(document_formats, extension)) return "document";
  if (contains(movie_formats, extension)) return "movie";
  if (contains(picture_formats, extension)) return "picture";
  return "other";
}

std::string Cleaner::package_extension_at_url(const Url& url) const {
  const std::string_view name = url.last_path_component();
  return std::string(name.substr(name.rfind('.') + 1));
}

std::vector<Removal> Cleaner::remove_files(const RemovalOptions& options) {
  return platform_.files.remove(files, guarded(files, options));
}

}  // namespace tarnby
