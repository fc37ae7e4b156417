#include "platform/bookmarks.h"

namespace tarnby {

PropertyList bookmark_data(const Url& folder) {
  return PropertyList::Data{folder.path()};
}

Url bookmarked_folder(const PropertyList::Data& data, bool& is_stale) {
  is_stale = false;  // a path does not age
  return Url::file(data.bytes);
}

}  // namespace tarnby
