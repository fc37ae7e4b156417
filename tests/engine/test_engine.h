#pragma once

#include <string>
#include <vector>

#include "engine/cleaner.h"
#include "engine/smart_selection.h"
#include "tests/support/test_platform.h"

namespace tarnby::test {

/// The objects of one process, on a test's own platform.
struct Engine {
  explicit Engine(TestPlatform& user)
      : inventory(user.platform),
        cache(user.platform, inventory),
        remainders(user.platform, cache),
        cleaner(user.platform, cache, remainders) {}

  void scan() {
    cleaner.smart_clean_with_complete_handler([] {});
  }

  Application inventory;
  Cache cache;
  Remainders remainders;
  Cleaner cleaner;
};

inline std::string label_of(const CleanerEntry& entry) {
  struct Label {
    std::string operator()(const std::shared_ptr<CacheItem>& item) const { return item->label; }
    std::string operator()(const std::shared_ptr<LargeFile>& file) const { return file->name; }
    std::string operator()(const std::shared_ptr<RemainderItem>& item) const { return item->label; }
    std::string operator()(const std::shared_ptr<CleanerItem>& item) const { return item->type; }
    std::string operator()(const std::shared_ptr<OfferedItem>& item) const { return item->offer.label; }
  };
  return std::visit(Label{}, entry);
}

/// One row as "label size: path, path".
inline std::string row_text(const std::string& label, std::int64_t size, const std::vector<std::string>& paths) {
  std::string text = label + " " + std::to_string(size) + ":";
  for (const std::string& path : paths) text.append(&path == &paths.front() ? " " : ", ").append(path);
  return text;
}

inline std::vector<std::string> row_texts(const TestPlatform& user, const CleanerItem& category) {
  std::vector<std::string> rows;
  for (const CleanerEntry& entry : category.items) {
    rows.push_back(row_text(label_of(entry), size_of(entry), user.relative(locations_of(entry))));
  }
  return rows;
}

}  // namespace tarnby::test
