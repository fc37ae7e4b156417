#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "engine/cleaner_item.h"
#include "files/file_manager.h"
#include "files/url.h"

namespace tarnby {

class Cleaner;

/// The files of one client.
struct ClientFiles {
  /// The files, or nothing yet when they are the entries of `listed`.
  std::vector<Url> files;
  /// The folder whose entries are the files; nowhere for most clients.
  Url listed;
};

/// A browser or a mail program whose data can be cleaned: one row a client, another one is another row.
struct ClientRow {
  std::string_view type;
  /// How people call it: "Google Chrome". The same in every language.
  const char* name;
  std::string_view group;
  /// The setting that says whether it takes part in its category; empty for one that always does.
  std::string_view setting;
  /// Where the engine keeps its record.
  std::shared_ptr<CleanerItem> Cleaner::*item;
  /// Below the Library; the client counts as present when something stands there. Empty: always present.
  std::string_view must_exist;
  /// Where its files are below the Library. Called only when the client is present; may list folders.
  ClientFiles (*files)(const FileManager& files, const Url& library);
  /// Its size is that of the folder as such: a link in the folder's place counts 0.
  bool measured_as_folder;
};

/// In the order in which they are listed everywhere.
std::span<const ClientRow> browser_rows();
/// In the order in which they are listed everywhere.
std::span<const ClientRow> mail_rows();

/// The client of a type, or null when there is none.
const ClientRow* client_row(std::string_view type);

/// The files of a client, none when it is not present.
std::optional<ClientFiles> client_files(const ClientRow& row, const FileManager& files, const Url& library);

}  // namespace tarnby
