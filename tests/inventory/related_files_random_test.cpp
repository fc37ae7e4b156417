#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>

#include "inventory/application.h"
#include "inventory/related_locations.h"
#include "tests/support/snapshot.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;

using Paths = std::vector<std::string>;

/// A location as a person would write it down. Keys: Label, label_Name, Bundle, bundle_name (P), bundle_name_Info,
/// Executable, company_name (O), Company key, name Key, loG; shown only: optional_bundle (b), team (t); logIn items
/// (H).
struct PlainRow {
  int order;
  std::string folder;
  char reading;  // list, walk, fixed
  std::string group;
  std::string keys;
};

const std::string library = "ada/Library/";

const PlainRow plain_rows[] = {
    {1, library + "Preferences", 'l', "Preferences", "BI"},
    {2, "", 'f', "Supportfiles", "adobe"},
    {3, library + "Application Support", 'w', "Supportfiles", "INPL"},
    {4, "disk/Users/Shared", 'l', "Supportfiles", "ILB"},
    {5, "disk/Library/Application Support", 'l', "Supportfiles", "ILBO"},
    {6, library + "Containers", 'l', "Supportfiles", "Bb"},
    {7, library + "Saved Application State", 'l', "Supportfiles", "B"},
    {8, library + "Caches", 'l', "Supportfiles", "BCL"},
    {9, library + "Cookies", 'l', "Supportfiles", "B"},
    {10, library + "Application Scripts", 'l', "Supportfiles", "Bb"},
    {11, library + "Caches/com.apple.helpd", 'w', "Supportfiles", "BP"},
    {12, library + "Group Containers", 'l', "Supportfiles", "PIKt"},
    {13, "ada/Library", 'l', "Supportfiles", "CIP"},
    {14, library + "Group Containers/UBF8T346G9.Office/Outlook", 'f', "Supportfiles", "com.microsoft.Outlook"},
    {14, library + "Group Containers/UBF8T346G9.Office/OutlookProfile.plist", 'f', "Supportfiles",
     "com.microsoft.Outlook"},
    {15, library + "Developer", 'f', "Supportfiles", "com.apple.dt.Xcode"},
    {17, library + "Containers", 'l', "Supportfiles", "H"},
    {18, library + "Application Scripts", 'l', "Supportfiles", "H"},
    {19, library + "LaunchAgents", 'l', "LauchAgents", "BPH"},
    {20, "disk/Library/LaunchAgents", 'l', "LauchAgents", "BPbH"},
    {21, "disk/Library/LaunchDaemons", 'l', "LauchAgents", "BPbH"},
    {22, "disk/Library/PrivilegedHelperTools", 'l', "LauchAgents", "BbH"},
    {23, library + "Logs", 'w', "Logs", "PENBG"},
    {24, library + "Application Support/CrashReporter", 'l', "Logs", "LIE"},
    {25, library + "Logs/CSXS", 'l', "Logs", "OL"},
    {26, library + "WebKit", 'l', "Logs", "B"},
    {27, "disk/Library/Logs", 'w', "Logs", "PNB"},
    {28, library + "Address Book Plug-Ins", 'l', "Plugins", "PL"},
    {29, library + "Services", 'l', "Plugins", "PL"},
    {30, "ada/Desktop", 'l', "Desktop", "LI"},
    {31, "disk/var/folders", 'w', "Other", "BL"},
    {32, "disk/var/run", 'l', "Other", "BIL"},
    {33, "disk/var/db", 'w', "Other", "BL"},
};

/// Entries of a folder one after the other, hidden ones left out.
void read_plainly(const fs::path& folder, bool walks, Paths& found) {
  std::error_code missing;
  std::set<std::string> names;
  if (fs::is_symlink(folder)) return;
  for (const auto& entry : fs::directory_iterator(folder, missing)) names.insert(entry.path().filename());
  for (const std::string& name : names) {
    if (name.starts_with('.')) continue;
    found.push_back(folder / name);
    if (walks && fs::is_directory(fs::symlink_status(folder / name))) read_plainly(folder / name, true, found);
  }
}

struct PlainSearch {
  test::TestPlatform& ada;
  const ApplicationItem& item;  // as described, before any search
  Paths login_items;
  bool may_search_disk;
  bool shows;

  std::map<char, std::vector<FoldedText>> keys() const {
    std::string bundle = item.bundle.value_or("");
    std::string part = item.bundle_name;
    if (bundle == "com.microsoft.onenote.mac") bundle = "com.microsoft.onenote", part = "";
    std::string letters;
    for (const char c : item.label) letters += c >= 'A' && c <= 'z' ? std::string(1, c) : "";
    const std::string company = item.company_name.value_or("");
    std::map<char, Paths> texts = {{'L', {item.label}},
                                   {'N', {item.label_name}},
                                   {'B', {bundle}},
                                   {'P', {part}},
                                   {'I', {item.bundle_name_info}},
                                   {'E', {item.executable_info}},
                                   {'O', {company == "apple" ? "companyname" : company}},
                                   {'C', {company}},
                                   {'K', {letters.size() < 2 ? "label_name_ad_is_small" : letters}},
                                   {'G', {item.log_file_name}},
                                   {'H', login_items}};
    int installed = 0;
    for (const char* name : {"Word", "Excel", "PowerPoint", "Outlook", "OneNote"}) {
      installed += ada.tree.exists("Applications/Microsoft " + std::string(name) + ".app") ? 1 : 0;
    }
    if (shows && bundle == "com.microsoft.Word") texts['b'] = {"com.microsoft.Office"};
    if (shows && bundle.find("com.microsoft") != std::string::npos && installed == 1) texts['t'] = {"UBF8T346G9"};
    std::map<char, std::vector<FoldedText>> keys;
    for (const auto& [name, of_name] : texts) {
      for (const std::string& text : of_name) {
        if (letters_in(text) >= 2) keys[name].emplace_back(text);
      }
    }
    return keys;
  }

  Paths fixed(const PlainRow& row) const {
    const fs::path parent = fs::path(item.url.path()).parent_path();
    if (row.order == 2) {
      const bool has_folder = contains_folded(*item.bundle, "com.adobe") && parent.filename() != "Applications" &&
                              parent.string().find("Applications") != std::string::npos;
      return shows && has_folder ? Paths{parent} : Paths{};
    }
    const bool applies = item.bundle == row.keys && (shows || row.order != 14);
    return applies && ada.tree.exists(row.folder) ? Paths{ada.tree.path(row.folder)} : Paths{};
  }

  bool takes(const PlainRow& row, const fs::path& entry) const {
    const std::string below = entry.string().substr(ada.tree.path(row.folder).size() + 1);
    if (row.order == 30) return path_extension_of(below).empty();
    if (row.order != 3) return true;
    return below != "CrashReporter" && !below.starts_with("CrashReporter/") && path_extension_of(below) != "app";
  }

  bool is_other_edition(const PlainRow& row, const std::string& name) const {
    const auto differs = [&](const char* word) {
      const bool is_note_taker = item.bundle == "com.microsoft.onenote.mac";
      return contains_folded(name, word) && (is_note_taker || !contains_folded(item.bundle_name, word));
    };
    return differs("pro") || ((row.order == 17 || row.order == 18) && differs("plus"));
  }

  Paths list() const {
    Paths result = {"Executables", item.url.path()};
    std::string group;
    auto known = keys();
    for (const PlainRow& row : plain_rows) {
      if (row.folder.starts_with("disk/") && !may_search_disk) continue;
      Paths entries;
      if (row.reading == 'f') {
        entries = fixed(row);
      } else {
        read_plainly(ada.tree.path(row.folder), row.reading == 'w', entries);
        std::erase_if(entries, [&](const std::string& entry) {
          const FoldedText name(fs::path(entry).filename().string());
          bool hit = false;
          for (const char key : row.keys) {
            for (const FoldedText& text : known[key]) hit = hit || name.contains(text);
          }
          return !hit || !takes(row, entry);
        });
      }
      for (const std::string& entry : entries) {
        if (std::exchange(group, row.group) != row.group) result.push_back(row.group);
        if (row.reading == 'f' || !is_other_edition(row, fs::path(entry).filename())) result.push_back(entry);
      }
    }
    return result;
  }
};

/// Small trees of names that come from the application itself.
class Maker {
 public:
  Maker(test::TestPlatform& ada, unsigned seed) : ada_(ada), random_(seed) {}

  std::size_t below(std::size_t most) { return random_() % most; }
  template <typename List>
  std::string any_of(const List& list) {
    return std::string(list[below(std::size(list))]);
  }

  Url application() {
    static const std::string huge(10'000, 'x');
    const std::string names[] = {"Éditor", "Editor Pro",  "e-Plus kit", "X", ".",
                                 "Logs",   "Preferences", "Caches",     "",  huge};
    const char* identifiers[] = {"com.Acme.editor",
                                 "org.acme.Editor.Pro",
                                 "net.cafÉ.plusminus",
                                 "com.apple.dt.Xcode",
                                 "com.apple.tool",
                                 "com.Adobe.shop",
                                 "com.microsoft.Word",
                                 "com.microsoft.onenote.mac",
                                 "com.microsoft.Outlook",
                                 ".",
                                 "a",
                                 "",
                                 "Logs"};
    const std::string folder =
        any_of(Paths{"Applications", "Applications/Adobe Shop", "ada/Applications", "ada/Tools"});
    const std::string path = folder + "/" + any_of(Paths{"Éditor", "Editor Pro", "X", "Logs", "Mi_xt 2", "-"}) + ".app";
    PropertyList::Dictionary list = {{"CFBundleIdentifier", any_of(identifiers)}};
    for (const char* key : {"CFBundleName", "CFBundleExecutable", "LogName"}) {
      if (below(4) > 0) list.emplace(key, any_of(names));
    }
    ada_.tree.content(path + "/Contents/Info.plist", write_xml_property_list(list));
    const std::string helpers = path + "/Contents/Library/LoginItems/";
    for (const char* helper : {"com.acme.helper", "Bar.Plus", "a"}) {
      if (below(3) == 0) ada_.application(helpers + helper + ".app", helper), login_items.emplace_back(helper);
    }
    ada_.application(helpers + ".app", "com.hidden.helper").application(helpers + "No.APP", "com.other.helper");
    for (const char* name : {"Word", "Excel"}) {
      if (below(3) == 0) ada_.tree.folder("Applications/Microsoft " + std::string(name) + ".app");
    }
    return ada_.url(path);
  }

  void entries(const std::string& folder, const ApplicationItem& item) {
    if (blocked(folder + "/")) return;
    ada_.tree.folder(folder);
    Paths words = {item.label,
                   item.label_name,
                   item.bundle.value_or("."),
                   item.bundle_name,
                   item.bundle_name_info,
                   item.executable_info,
                   item.company_name.value_or("."),
                   item.log_file_name,
                   "CSXS",
                   "CrashReporter",
                   "12",
                   "Other",
                   "UBF8T346G9",
                   "com.microsoft.Office",
                   "com.microsoft.onenote",
                   "Xcode",
                   "companyname"};
    words.insert(words.end(), login_items.begin(), login_items.end());
    for (int count = 0; count < 5; ++count) {
      std::string path = folder;
      do path += "/" + changed(any_of(words));
      while (below(3) == 0);
      if (blocked(path)) continue;
      ada_.tree.folder(fs::path(path).parent_path().string());
      if (ada_.tree.exists(path)) continue;
      if (below(8) == 0) {
        ada_.tree.link(path, "/");
      } else {
        ada_.tree.file(path, static_cast<int>(below(1'000)));
      }
    }
  }

  Paths login_items;

 private:
  /// The text in another case, with or without accents, or as another edition.
  std::string changed(std::string text) {
    text = text.substr(0, 200);
    if (below(2) == 0)
      std::transform(text.begin(), text.end(), text.begin(),
                     [](char c) { return char(c >= 'a' && c <= 'z' ? c - 32 : c); });
    if (const auto e = text.find('e'); e != std::string::npos && below(2) == 0)
      text.replace(e, 1, any_of(Paths{"é", "E\u0301"}));
    text = any_of(Paths{"", "", "", ".", "my "}) + text + any_of(Paths{"", "", "1", ".plist", " Pro", ".PLUS", ".app"});
    return text.find_first_not_of('.') == std::string::npos ? "dots" + text : text;
  }

  /// True when a file or a link stands in the way.
  bool blocked(const std::string& path) const {
    for (fs::path above = fs::path(path).parent_path(); !above.empty(); above = above.parent_path()) {
      const auto kind = fs::symlink_status(ada_.tree.path(above.string())).type();
      if (kind != fs::file_type::not_found && kind != fs::file_type::directory) return true;
    }
    return false;
  }

  test::TestPlatform& ada_;
  std::mt19937 random_;
};

/// Makes an application and fills these folders; checks what is shown, what would be removed, and what then goes.
void check(test::TestPlatform& ada, unsigned seed, const Paths& folders) {
  for (const char* top : {"ada", "Applications", "disk"}) {
    for (const auto& entry : fs::directory_iterator(ada.tree.path(top))) fs::remove_all(entry);
  }
  Maker make(ada, seed);
  const Url url = make.application();
  const ApplicationItem described = *Application(ada.platform).application(url);
  for (const std::string& folder : folders) {
    if (!folder.empty() && make.below(8) > 0) make.entries(folder, described);
  }
  const bool any = make.below(2) == 1;
  ada.platform.app_settings.set_integer("AllowAny", any ? 1 : make.below(2) * 2);
  const auto paths = [](const std::vector<Url>& urls) {
    Paths texts;
    for (const Url& one : urls) texts.push_back(one.path());
    return texts;
  };

  ApplicationItem shown = described;
  shown.getfiles(ada.platform, [] {});
  EXPECT_EQ(paths(shown.files), (PlainSearch{ada, described, make.login_items, any, true}.list()));
  ASSERT_EQ(shown.sizes.size(), shown.files.size());

  ApplicationItem removed = described;
  removed.find_removable_files(ada.platform);
  EXPECT_EQ(paths(removed.files), (PlainSearch{ada, described, make.login_items, any, false}.list()));
  for (const Url& file : removed.listed_files()) {
    EXPECT_NE(std::find(shown.files.begin(), shown.files.end(), file), shown.files.end()) << "shown: " << file.path();
  }

  const std::vector<Url> listed = removed.listed_files();
  const std::vector<bool> refused = ada.platform.files.refuses_to_remove(listed);
  std::set<std::string> going;
  for (std::size_t at = 0; at < listed.size(); ++at) {
    if (!refused[at]) going.insert(listed[at].path());
  }
  const auto before = test::snapshot_of(ada.tree.path());
  ApplicationItem(described).remove_files(ada.platform);
  EXPECT_EQ(test::after_losing(test::snapshot_of(ada.tree.path()), going), test::without(before, going));
}

TEST(RelatedFiles, are_what_a_plain_reading_of_the_table_tells) {
  const unsigned seed = std::random_device{}();
  test::TestPlatform ada;
  ada.tree.folder("disk");
  ASSERT_TRUE(ada.platform.bookmarks.store(Grant::disk, ada.url("disk")));
  Paths all;
  for (unsigned round = 0; round < std::size(plain_rows) + 20 && !HasFailure(); ++round) {
    const PlainRow* alone = round < std::size(plain_rows) ? &plain_rows[round] : nullptr;
    SCOPED_TRACE((alone ? "row " + std::to_string(alone->order) : "all rows") + ", seed " +
                 std::to_string(seed + round));
    if (alone) all.push_back(alone->folder);
    check(ada, seed + round, alone ? Paths{alone->folder} : all);
  }
}

}  // namespace
}  // namespace tarnby
