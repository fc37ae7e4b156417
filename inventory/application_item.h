#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "files/url.h"
#include "platform/file_metadata.h"
#include "platform/image.h"

namespace tarnby {

class Platform;

/// One application bundle: what its property list and the file system tell of it, and slots for what belongs to it
/// elsewhere. A plain record, shared by reference; its fields do no work. The operations run to their end on the
/// caller's thread, report no failure, and are for one thread at a time.
struct ApplicationItem {
  /// The name the user sees.
  std::string label;
  /// CFBundleName with "_" for every space, "empty_string" when there is none.
  std::string label_name;
  Url url;
  Image icon;
  /// The bundle's own icon; may be none.
  Image app_icon;
  std::optional<std::string> bundle;
  /// The last part of the identifier, "empty_string" when there is no identifier.
  std::string bundle_name;
  /// CFBundleName as written, "empty_string" when there is none.
  std::string bundle_name_info;
  /// CFBundleExecutable, "empty_string" when there is none.
  std::string executable_info;
  /// The second part of the identifier, or the whole of it when it has one part.
  std::optional<std::string> company_name;
  /// Related files in groups: a relative text marks where a group begins, file URLs follow.
  std::vector<Url> files;
  /// Beside `files`, entry by entry: a size in bytes, or the marker itself.
  std::vector<std::variant<std::uint64_t, Url>> sizes;
  /// The bundle's size for people; absent until it has been measured.
  std::optional<std::string> app_size;
  std::int64_t app_size_in_bytes = 0;
  std::optional<std::string> optional_bundle;
  std::optional<std::string> optional_label;
  std::optional<std::string> optional_container;
  std::optional<std::string> optional_developer_id;
  /// LogName, "null_string" when there is none.
  std::string log_file_name;
  std::int64_t index_of_item = 0;
  std::string app_version;
  /// Other copies of the same application.
  std::vector<Url> instances;
  std::optional<Moment> launch_date;

  /// Finds what belongs to the application elsewhere on the disk: fills `files`, `sizes`, `optional_bundle` and
  /// `optional_developer_id`, then calls the handler. Rewrites the record on the way: absent texts become empty ones.
  void getfiles(Platform& platform, const std::function<void()>& handler);

  /// Sets `app_size_in_bytes` and `app_size`, hidden entries included, then calls the handler.
  void calculate_application_size_with_complete_handler(Platform& platform, const std::function<void()>& handler);

  /// Removes the application for good, with what belongs to it: `find_removable_files`, then `remove_found_files`.
  std::vector<Removal> remove_files(Platform& platform);

  /// Replaces `files` by what a removal takes, always a part of what `getfiles` finds. `sizes` is emptied.
  void find_removable_files(Platform& platform);

  /// Removes what `files` lists, in order and for good; the result tells what became of each of `listed_files`. A file
  /// that cannot be removed does not stop those after it.
  std::vector<Removal> remove_found_files(Platform& platform, const RemovalOptions& options = {}) const;

  /// Fills `sizes` for `files`; of a folder counts what is not hidden in it.
  void measure_files(Platform& platform);

  /// `files` without the markers.
  std::vector<Url> listed_files() const;

  static std::shared_ptr<ApplicationItem> init_with_label(std::string label, Image app_icon) {
    auto item = std::make_shared<ApplicationItem>();
    item->label = std::move(label);
    item->app_icon = std::move(app_icon);
    return item;
  }
};

using ApplicationItems = std::vector<std::shared_ptr<ApplicationItem>>;

}  // namespace tarnby
