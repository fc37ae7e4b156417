#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "files/file_manager.h"
#include "files/url.h"
#include "text/property_list.h"

namespace tarnby {

/// An application bundle as its Contents/Info.plist describes it. The list is read once, when the object is made; a
/// bundle that is a link, or whose list is missing, a link, unreadable or larger than 16 MB, has no values. Nor has a
/// bundle that is a link any images. A caller that must tell an empty bundle from an unreadable one makes it under a
/// LookWatch. Does not change; any thread may ask.
class Bundle {
 public:
  Bundle(const FileManager& files, Url url);

  const Url& url() const { return url_; }

  /// The text under a key of the list; none when it is absent or no text.
  std::optional<std::string> text(std::string_view key) const;

  /// CFBundleIdentifier; none when it is absent or empty.
  std::optional<std::string> identifier() const;

  /// The image file in Contents/Resources that goes by a name: the name as it is when it has an extension, otherwise or
  /// when there is none the name with icns, png, tiff, tif, jpg, jpeg, gif, bmp, ico, pdf, in this order. Nowhere when
  /// there is no such file, and for an empty name. Looks at the disk each time; a missing picture harms nothing, so no
  /// LookWatch hears of it.
  Url image_resource(std::string_view name) const;

 private:
  const FileManager& files_;
  Url url_;
  /// It and its Contents are folders. Below a grant no link would be followed anyway, elsewhere one would.
  bool is_real_;
  std::optional<PropertyList> info_;
};

/// Bundle::identifier of a bundle, for a caller that needs nothing else of it.
std::optional<std::string> bundle_identifier(const FileManager& files, const Url& bundle);

}  // namespace tarnby
