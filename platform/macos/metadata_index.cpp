#include "platform/macos/metadata_index.h"

#include <CoreServices/CoreServices.h>

#include <cmath>

#include "platform/file_times.h"
#include "text/macos/core_foundation.h"

namespace tarnby {

namespace {

std::optional<Moment> date_of(const Url& entry, CFStringRef attribute) {
  const Owned<MDItemRef> item(MDItemCreate(kCFAllocatorDefault, cf_string(entry.path()).get()));
  if (!item) return {};
  const Owned<CFTypeRef> value(MDItemCopyAttribute(item.get(), attribute));
  if (!value || CFGetTypeID(value.get()) != CFDateGetTypeID()) return {};
  const double since_1970 =
      CFDateGetAbsoluteTime(static_cast<CFDateRef>(value.get())) + kCFAbsoluteTimeIntervalSince1970;
  return Moment(std::chrono::seconds(static_cast<std::int64_t>(std::floor(since_1970))));
}

class MetadataIndex final : public FileMetadata {
 public:
  explicit MetadataIndex(const FileManager& files) : times_(file_times(files)) {}

  std::optional<Moment> last_used_date(const Url& application) const override {
    return date_of(application, kMDItemLastUsedDate);
  }

  std::optional<Moment> content_change_date(const Url& application) const override {
    return date_of(application, kMDItemFSContentChangeDate);
  }

  std::optional<Moment> modification_date(const Url& entry) const override { return times_->modification_date(entry); }

 private:
  const std::unique_ptr<FileMetadata> times_;
};

}  // namespace

std::unique_ptr<FileMetadata> metadata_index(const FileManager& files) {
  return std::make_unique<MetadataIndex>(files);
}

}  // namespace tarnby
