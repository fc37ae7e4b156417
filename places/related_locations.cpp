#include "places/related_locations.h"

#include <algorithm>

#include "files/file_manager.h"

namespace tarnby {

namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// Folders named by numbers and applications are nobody's support files.
bool is_support_name(std::string_view name) {
  return !std::all_of(name.begin(), name.end(), is_digit) && !is_application_name(name);
}

/// On the desktop a file with an extension is a document.
bool has_no_extension(std::string_view name) {
  return path_extension_of(name).empty();
}

using enum Key;
using enum Reading;

constexpr std::string_view preferences = "Preferences";
constexpr std::string_view support = "Supportfiles";
constexpr std::string_view agents = "LauchAgents";  // spelled so wherever the group is known
constexpr std::string_view logs = "Logs";
constexpr std::string_view plugins = "Plugins";
constexpr std::string_view desktop = "Desktop";
constexpr std::string_view other = "Other";

constexpr LocationTraits of_adobe = {.owners = Owners::in_adobe_folder, .is_removed = false};
constexpr LocationTraits of_support = {.takes = is_support_name, .left_out = "CrashReporter"};
constexpr LocationTraits with_team = {.shown_keys = {optional_developer_id}};
constexpr LocationTraits with_optional_bundle = {.shown_keys = {optional_bundle}};
constexpr LocationTraits of_login_items = {.editions = Editions::pro_and_plus};
constexpr LocationTraits of_outlook = {.owners = Owners::outlook, .is_removed = false};

constexpr RelatedLocation locations[] = {
    {1, Base::library, "Preferences", list, preferences, {bundle, bundle_name_info}},
    {2, Base::around_bundle, "", place, support, {}, of_adobe},
    {3,
     Base::library,
     "Application Support",
     walk,
     support,
     {bundle_name_info, label_name, bundle_name, label},
     of_support},
    {4, Base::disk, "Users/Shared", list, support, {bundle_name_info, label, bundle}},
    {5, Base::disk, "Library/Application Support", list, support, {bundle_name_info, label, bundle, company_name}},
    {6, Base::library, "Containers", list, support, {bundle}, with_optional_bundle},
    {7, Base::library, "Saved Application State", list, support, {bundle}},
    {8, Base::library, "Caches", list, support, {bundle, company_key, label}},
    {9, Base::library, "Cookies", list, support, {bundle}},
    {10, Base::library, "Application Scripts", list, support, {bundle}, with_optional_bundle},
    {11, Base::library, "Caches/com.apple.helpd", walk, support, {bundle, bundle_name}},
    {12, Base::library, "Group Containers", list, support, {bundle_name, bundle_name_info, name_key}, with_team},
    {13, Base::library, "", list, support, {company_key, bundle_name_info, bundle_name}},
    {14, Base::library, "Group Containers/UBF8T346G9.Office/Outlook", place, support, {}, of_outlook},
    {14, Base::library, "Group Containers/UBF8T346G9.Office/OutlookProfile.plist", place, support, {}, of_outlook},
    {15, Base::library, "Developer", place, support, {}, {.owners = Owners::xcode}},
    {16, Base::bundle, "Contents/Library/LoginItems", identifiers, "", {}},
    {17, Base::library, "Containers", list, support, {login_items}, of_login_items},
    {18, Base::library, "Application Scripts", list, support, {login_items}, of_login_items},
    {19, Base::library, "LaunchAgents", list, agents, {bundle, bundle_name, login_items}},
    {20, Base::disk, "Library/LaunchAgents", list, agents, {bundle, bundle_name, login_items}, with_optional_bundle},
    {21, Base::disk, "Library/LaunchDaemons", list, agents, {bundle, bundle_name, login_items}, with_optional_bundle},
    {22, Base::disk, "Library/PrivilegedHelperTools", list, agents, {bundle, login_items}, with_optional_bundle},
    {23, Base::library, "Logs", walk, logs, {bundle_name, executable_info, label_name, bundle, log_file_name}},
    {24, Base::library, "Application Support/CrashReporter", list, logs, {label, bundle_name_info, executable_info}},
    {25, Base::library, "Logs/CSXS", list, logs, {company_name, label}},
    {26, Base::library, "WebKit", list, logs, {bundle}},  // site data, kept among the logs on purpose
    {27, Base::disk, "Library/Logs", walk, logs, {bundle_name, label_name, bundle}},
    {28, Base::library, "Address Book Plug-Ins", list, plugins, {bundle_name, label}},
    {29, Base::library, "Services", list, plugins, {bundle_name, label}},
    {30, Base::home, "Desktop", list, desktop, {label, bundle_name_info}, {.takes = has_no_extension}},
    {31, Base::disk, "var/folders", walk, other, {bundle, label}},
    {32, Base::disk, "var/run", list, other, {bundle, bundle_name_info, label}},
    {33, Base::disk, "var/db", walk, other, {bundle, label}},
};

}  // namespace

std::span<const RelatedLocation> related_locations() {
  return locations;
}

}  // namespace tarnby
