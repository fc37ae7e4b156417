#include "engine/clients.h"

namespace tarnby {

namespace {

constexpr std::string_view chrome_folder = "Application Support/Google/Chrome/Default";
constexpr std::string_view chrome_test = "Application Support/Google/Chrome/Default/Application Cache";
constexpr std::string_view firefox_profiles = "Application Support/Firefox/Profiles";
constexpr std::string_view safari_storage = "Safari/LocalStorage";
constexpr std::string_view apple_mail_downloads = "Containers/com.apple.mail/Data/Library/Mail Downloads";
constexpr std::string_view airmail_folder =
    "Group Containers/2E337YPCZY.airmail/Library/Application Support/it.bloop.airmail2/Airmail";
constexpr std::string_view spark_messages =
    "Group Containers/3L68KQB4HG.group.com.readdle.smartemail/databases/messagesData";

/// All six, whether they exist or not: a missing one measures 0.
ClientFiles chrome_files(const FileManager& /*files*/, const Url& library) {
  const Url profile = library.appending(chrome_folder);
  ClientFiles found;
  for (const std::string_view name :
       {"Application Cache", "Local Storage", "Storage", "Sync Data", "Thumbnails", "Session Storage"}) {
    found.files.push_back(profile.appending(name));
  }
  return found;
}

ClientFiles firefox_files(const FileManager& files, const Url& library) {
  ClientFiles found;
  for (const Url& profile : files.list_urls(library.appending(firefox_profiles))) {
    Url storage = profile.appending("storage");
    if (files.is_folder(storage)) found.files.push_back(std::move(storage));
  }
  return found;
}

ClientFiles safari_files(const FileManager& /*files*/, const Url& library) {
  return {{library.appending(safari_storage)}, {}};
}

ClientFiles apple_mail_files(const FileManager& /*files*/, const Url& library) {
  return {{}, library.appending(apple_mail_downloads)};
}

ClientFiles airmail_files(const FileManager& files, const Url& library) {
  const Url folder = library.appending(airmail_folder);
  ClientFiles found;
  for (const Url& account : files.list_urls(folder)) found.files.push_back(account.appending("AttachmentsNg"));
  found.files.push_back(folder.appending("General/Tmp"));
  return found;
}

ClientFiles spark_files(const FileManager& /*files*/, const Url& library) {
  return {{}, library.appending(spark_messages)};
}

constexpr ClientRow browsers[] = {
    {"chrome", browser_group, chrome_test, chrome_files, false},
    {"mozilla", browser_group, firefox_profiles, firefox_files, false},
    {"safari", browser_group, safari_storage, safari_files, true},
};

constexpr ClientRow mail_programs[] = {
    // The system's own mail program is always there.
    {"apple-mail", mail_group, "", apple_mail_files, false},
    {"airmail", mail_group, airmail_folder, airmail_files, false},
    {"spark", mail_group, spark_messages, spark_files, false},
};

}  // namespace

std::span<const ClientRow> browser_rows() {
  return browsers;
}
std::span<const ClientRow> mail_rows() {
  return mail_programs;
}

std::optional<ClientFiles> client_files(const ClientRow& row, const FileManager& files, const Url& library) {
  if (!row.must_exist.empty() && !files.exists(library.appending(row.must_exist))) return {};
  return row.files(files, library);
}

}  // namespace tarnby
