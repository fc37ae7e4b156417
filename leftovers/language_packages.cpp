#include <algorithm>
#include <set>

#include "leftovers/remainders.h"
#include "platform/platform.h"

namespace tarnby {

namespace {

/// Languages as the old folders name them in full. They are kept whatever languages the user speaks.
constexpr std::string_view kept_names[] = {"English", "Dutch", "French", "German", "Italian", "Japanese", "Spanish"};

using Codes = std::set<std::string, std::less<>>;

/// "en" of "en-GB".
Codes codes_of(const std::vector<std::string>& languages) {
  Codes codes;
  for (const std::string& language : languages) codes.insert(language.substr(0, language.find_first_of("-_")));
  return codes;
}

bool is_examined(const FileManager& files, const Url& application) {
  const auto identifier = bundle_identifier(files, application);
  if (!identifier) return false;
  return identifier->find("iWork") != std::string::npos || identifier->find("com.apple") == std::string::npos;
}

bool is_kept(std::string_view name) {
  if (name == "Base.lproj") return true;
  return std::find(std::begin(kept_names), std::end(kept_names), name.substr(0, name.find('.'))) !=
         std::end(kept_names);
}

/// How often a localisation folder is listed: once for each test it meets. Each test looks at the whole name, so a name
/// can meet two by accident ("Portuguese.lproj" contains "es"), and a name that contains "en" is never listed for its
/// first two characters. Pinned by LanguagePackages.are_what_the_tests_meet_each_as_often_as_they_meet_it.
int times_listed(std::string_view name, const Codes& spoken) {
  const FoldedText folded(name);
  const auto holds = [&](std::string_view code) { return folded.contains(FoldedText(code)); };
  if (!holds("lproj") || is_kept(name)) return 0;
  constexpr std::string_view codes_looked_for[] = {"zh", "pt", "es", "fr"};
  int times = 0;
  bool holds_any = holds("en");
  for (const std::string_view code : codes_looked_for) {
    if (!holds(code)) continue;
    holds_any = true;
    if (!spoken.contains(code)) ++times;
  }
  if (!holds_any && !spoken.contains(name.substr(0, 2))) ++times;
  return times;
}

}  // namespace

std::vector<Url> Remainders::language_packages() const {
  const Codes spoken = codes_of(platform_.session.preferred_languages);
  std::vector<Url> packages;
  for (const Url& application : installedApplications) {
    if (defaultManager->stopped_looking()) break;
    if (!is_examined(*defaultManager, application)) continue;
    for (const Url& folder : defaultManager->list_urls(application.appending("Contents/Resources"))) {
      const int times = times_listed(folder.last_path_component(), spoken);
      packages.insert(packages.end(), static_cast<std::size_t>(times), folder);
    }
  }
  return packages;
}

}  // namespace tarnby
