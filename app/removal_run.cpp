#include "app/removal_run.h"

#include <algorithm>
#include <iterator>

#include "platform/localization.h"

namespace tarnby {

namespace {

struct ReasonRow {
  std::errc error;
  const char* words;
};

/// The system's own words for these are English, or in another language than the window.
constexpr ReasonRow reasons[] = {
    {std::errc::permission_denied, english("permission denied")},
    {std::errc::operation_not_permitted, english("it is protected")},
    {std::errc::device_or_resource_busy, english("it is in use")},
    {std::errc::text_file_busy, english("it is in use")},
    {std::errc::cross_device_link, english("it is on another disk")},
    {std::errc::read_only_file_system, english("the disk is write-protected")},
    {std::errc::io_error, english("the disk reported an error")},
    {std::errc::directory_not_empty, english("something was added meanwhile")},
    {std::errc::file_exists, english("something was added meanwhile")},
};

const char* reason_of(const Removal& result) {
  if (!result.attempted) return english("the removal was stopped before it");
  const auto* row = std::find_if(std::begin(reasons), std::end(reasons),
                                 [&](const ReasonRow& one) { return result.error == one.error; });
  return row == std::end(reasons) ? english("the system refused it") : row->words;
}

}  // namespace

std::vector<RemovalRun::Left> left_of(std::span<const Url> urls, std::span<const Removal> results) {
  std::vector<RemovalRun::Left> left;
  for (std::size_t at = 0; at < results.size(); ++at) {
    if (!results[at].attempted || results[at].error) left.push_back({urls[at], reason_of(results[at])});
  }
  return left;
}

}  // namespace tarnby
