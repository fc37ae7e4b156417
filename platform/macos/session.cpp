#include "platform/session.h"

#include <sys/sysctl.h>

#include <cstdio>

#include "platform/session_parts.h"
#include "text/macos/core_foundation.h"

namespace tarnby {

namespace {

std::vector<std::string> preferred_languages() {
  const Owned<CFArrayRef> preferred(CFLocaleCopyPreferredLanguages());
  std::vector<std::string> languages;
  for (CFIndex at = 0; preferred && at < CFArrayGetCount(preferred.get()); ++at) {
    languages.push_back(utf8_of(static_cast<CFStringRef>(CFArrayGetValueAtIndex(preferred.get(), at))));
  }
  return languages;
}

std::string current_locale() {
  const Owned<CFLocaleRef> locale(CFLocaleCopyCurrent());
  return locale ? utf8_of(CFLocaleGetIdentifier(locale.get())) : std::string();
}

SystemVersion system_version() {
  char text[32] = {};
  std::size_t size = sizeof text - 1;
  SystemVersion version;
  const bool told = sysctlbyname("kern.osproductversion", text, &size, nullptr, 0) == 0 &&
                    std::sscanf(text, "%d.%d", &version.major_number, &version.minor_number) >= 1;
  return told ? version : SystemVersion{11, 0};  // the oldest that this program starts on
}

}  // namespace

Session current_session() {
  const Account account = account_of_this_user();
  Session session;
  session.user_name = account.name;
  // HOME is of no use: in a confined program it names the program's container.
  session.home_folder = Url::file(account.home);
  session.account_home = session.home_folder;
  session.preferred_languages = preferred_languages();
  session.collation_locale = current_locale();
  session.number_locale = session.collation_locale;
  session.system_version = system_version();
  return session;
}

}  // namespace tarnby
