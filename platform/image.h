#pragma once

#include <string>

#include "files/url.h"

namespace tarnby {

/// Names a picture without loading it. It is loaded when it is painted, so that no scan decodes an icon.
struct Image {
  /// Where it comes from: a resource of the program, the icon that the desktop shows for an entry, or an image file.
  enum class Kind { none, named, icon_of_path, file };

  Kind kind = Kind::none;
  /// The resource's name, for `named`.
  std::string name;
  /// For `icon_of_path` the entry whose icon it is, for `file` the image file.
  Url url;

  static Image named(std::string resource) { return {Kind::named, std::move(resource), {}}; }
  static Image icon_of(Url entry) { return {Kind::icon_of_path, {}, std::move(entry)}; }
  static Image file(Url image) { return {Kind::file, {}, std::move(image)}; }

  explicit operator bool() const { return kind != Kind::none; }
  friend bool operator==(const Image&, const Image&) = default;
};

}  // namespace tarnby
