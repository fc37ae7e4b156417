// Lists of profiles of any bytes: whatever they name, only what lies below their base is taken, and each folder once.
// The input holds profiles.ini, a NUL, and installs.ini.

#include <set>

#include "fuzz/fuzzer.h"
#include "places/mozilla_profiles.h"

using namespace tarnby;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest = fuzz::text_of(data, size);
  const std::string_view profiles_ini = fuzz::next_word(rest);
  const Url base = Url::file("/h/me/.mozilla/firefox");
  std::set<Url> seen;
  for (const MozillaProfile& profile : mozilla_profiles(base, profiles_ini, rest)) {
    fuzz::check(profile.folder.is_within(base) && profile.folder != base, "a profile lies below the base");
    fuzz::check((profile.folder.path() + "/").find("/../") == std::string::npos, "and no path leads back up");
    fuzz::check(seen.insert(profile.folder).second, "each is taken once");
  }
  return 0;
}
