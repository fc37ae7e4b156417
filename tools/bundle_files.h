#pragma once

#include <cstdint>
#include <string>

#include "text/property_list.h"

namespace tarnby {

/// The values of an application bundle's Info.plist; an empty one is left out.
struct BundleValues {
  std::string identifier;
  std::string name;
  std::string executable;
  std::string icon;
  std::string version;
};

enum class ListForm { xml, binary };

/// The content of `Contents/Info.plist`.
std::string info_list(const BundleValues& values, ListForm form);

/// The binary form of any list of up to 65,536 nodes. Texts must be UTF-8.
std::string binary_property_list(const PropertyList& list);

struct Color {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

/// An icon file that holds one picture of 128 by 128 points: a disc of that colour on nothing.
std::string icon_file(Color color);

}  // namespace tarnby
