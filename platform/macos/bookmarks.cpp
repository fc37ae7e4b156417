#include "platform/bookmarks.h"

#include <sys/param.h>

#include "text/macos/core_foundation.h"

namespace tarnby {

PropertyList bookmark_data(const Url& folder) {
  const Owned<CFURLRef> url = cf_folder_url(folder.path());
  if (!url) return PropertyList::Data{};
  const auto bookmark = [&](CFURLBookmarkCreationOptions options) {
    return Owned<CFDataRef>(
        CFURLCreateBookmarkData(kCFAllocatorDefault, url.get(), options, nullptr, nullptr, nullptr));
  };
  Owned<CFDataRef> data = bookmark(kCFURLBookmarkCreationWithSecurityScope);
  if (!data) data = bookmark(0);  // a program that is not confined, such as the terminal's, may not ask for the scope
  if (!data) return PropertyList::Data{};
  return PropertyList::Data{std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(data.get())),
                                        static_cast<std::size_t>(CFDataGetLength(data.get())))};
}

Url bookmarked_folder(const PropertyList::Data& bookmark, bool& is_stale) {
  const Owned<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bookmark.bytes.data()),
                                           static_cast<CFIndex>(bookmark.bytes.size())));
  const auto resolve = [&](CFURLBookmarkResolutionOptions options) {
    Boolean stale = false;  // one that is stale serves as long as it leads somewhere
    Owned<CFURLRef> resolved(CFURLCreateByResolvingBookmarkData(kCFAllocatorDefault, data.get(), options, nullptr,
                                                                nullptr, &stale, nullptr));
    is_stale = stale != 0;
    return resolved;
  };
  Owned<CFURLRef> url = resolve(kCFURLBookmarkResolutionWithSecurityScope);
  if (!url) url = resolve(0);
  UInt8 path[MAXPATHLEN];
  if (!url || !CFURLGetFileSystemRepresentation(url.get(), true, path, sizeof path)) return {};
  // Never stopped. Without it the folder could not even be looked at to tell whether it is still there.
  (void)CFURLStartAccessingSecurityScopedResource(url.get());
  return Url::file(reinterpret_cast<const char*>(path));
}

}  // namespace tarnby
