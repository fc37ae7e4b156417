#include "engine/clients.h"

#include <algorithm>

#include "engine/cleaner.h"
#include "places/macos_home.h"

namespace tarnby {

namespace {

/// All six, whether they exist or not: a missing one measures 0.
ClientFiles chrome_files(const FileManager& /*files*/, const Url& library) {
  const Url profile = library.appending(macos_home::chrome_profile);
  ClientFiles found;
  for (const std::string_view name : macos_home::chrome_data) found.files.push_back(profile.appending(name));
  return found;
}

ClientFiles firefox_files(const FileManager& files, const Url& library) {
  ClientFiles found;
  for (const Url& profile : files.list_urls(library.appending(macos_home::firefox_profiles))) {
    Url storage = profile.appending(macos_home::firefox_storage);
    if (files.is_folder(storage)) found.files.push_back(std::move(storage));
  }
  return found;
}

ClientFiles safari_files(const FileManager& /*files*/, const Url& library) {
  return {{library.appending(macos_home::safari_storage)}, {}};
}

ClientFiles apple_mail_files(const FileManager& /*files*/, const Url& library) {
  return {{}, library.appending(macos_home::apple_mail_downloads)};
}

ClientFiles airmail_files(const FileManager& files, const Url& library) {
  const Url folder = library.appending(macos_home::airmail);
  ClientFiles found;
  for (const Url& account : files.list_urls(folder))
    found.files.push_back(account.appending(macos_home::airmail_attachments));
  found.files.push_back(folder.appending(macos_home::airmail_temporary));
  return found;
}

ClientFiles spark_files(const FileManager& /*files*/, const Url& library) {
  return {{}, library.appending(macos_home::spark_messages)};
}

constexpr std::string_view browser_group = "browsers";
constexpr std::string_view mail_group = "mail-clients";

constexpr ClientRow browsers[] = {
    {"chrome", "Google Chrome", browser_group, "GoogleChrome", &Cleaner::browser_chrome_item,
     macos_home::chrome_application_cache, chrome_files, false},
    {"mozilla", "Firefox", browser_group, "Mozilla", &Cleaner::browser_mozilla_item, macos_home::firefox_profiles,
     firefox_files, false},
    {"safari", "Safari", browser_group, "Safari", &Cleaner::browser_safari_item, macos_home::safari_storage,
     safari_files, true},
};

constexpr ClientRow mail_programs[] = {
    // The system's own mail program is always there.
    {"apple-mail", "Mail", mail_group, "", &Cleaner::apple_mail_item, "", apple_mail_files, false},
    {"airmail", "Airmail", mail_group, "", &Cleaner::airmail_item, macos_home::airmail, airmail_files, false},
    {"spark", "Spark", mail_group, "", &Cleaner::spark_mail_item, macos_home::spark_messages, spark_files, false},
};

}  // namespace

std::span<const ClientRow> browser_rows() {
  return browsers;
}
std::span<const ClientRow> mail_rows() {
  return mail_programs;
}

const ClientRow* client_row(std::string_view type) {
  for (const auto rows : {browser_rows(), mail_rows()}) {
    const auto row = std::ranges::find(rows, type, &ClientRow::type);
    if (row != rows.end()) return &*row;
  }
  return nullptr;
}

std::optional<ClientFiles> client_files(const ClientRow& row, const FileManager& files, const Url& library) {
  if (!row.must_exist.empty() && !files.exists(library.appending(row.must_exist))) return {};
  return row.files(files, library);
}

}  // namespace tarnby
