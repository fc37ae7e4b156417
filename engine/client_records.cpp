#include "engine/cleaner.h"
#include "files/bytes.h"
#include "platform/platform.h"

namespace tarnby {

// What both scans do with browsers and mail programs.

void Cleaner::plan_clients() {
  for (const auto rows : {browser_rows(), mail_rows()}) {
    for (const ClientRow& row : rows) {
      const auto found = client_files(row, platform_.files, url_library);
      if (!found) continue;
      platform_.measurer.plan(found->files);
      platform_.measurer.plan_entries(found->listed, Hidden::skip);
    }
  }
}

/// The record of one client with its files and their size; null when the client is not present.
std::shared_ptr<CleanerItem> Cleaner::client_item(const ClientRow& row) {
  auto found = client_files(row, platform_.files, url_library);
  if (!found) return nullptr;
  auto item = std::make_shared<CleanerItem>();
  item->type = row.type;
  item->group = row.group;
  if (!found->listed.empty()) {
    for (MeasuredEntry& entry : platform_.measurer.entries(found->listed, Hidden::skip)) {
      item->files.push_back(std::move(entry.url));
      item->size = add_bytes(item->size, entry.size);
    }
    return item;
  }
  item->files = std::move(found->files);
  item->size =
      row.measured_as_folder ? overall_size_of_direcory(item->files.front()) : overall_size_of_files(item->files);
  return item;
}

}  // namespace tarnby
