#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>

#include "inventory/application.h"
#include "tests/support/seed.h"
#include "tests/support/snapshot.h"
#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

namespace fs = std::filesystem;

using Paths = std::vector<std::string>;

/// A location as a person would write it down. Keys: Label, label_Name, Bundle, bundle_name (P), bundle_name_Info,
/// Executable, company_name (O), Company key, name Key, loG, logIn items (H); only shown: optional_bundle (b), team
/// (t).
struct PlainRow {
  int order;
  std::string folder;
  char reading;  // list, walk, or fixed: then what stands for keys is the identifier it is for
  std::string group;
  std::string keys;
};

const std::string library = "ada/Library/";
const std::string support = "Supportfiles";
const std::string office = library + "Group Containers/UBF8T346G9.Office/Outlook";

const PlainRow plain_rows[] = {
    {1, library + "Preferences", 'l', "Preferences", "BI"},
    {2, "around", 'f', support, ""},
    {3, library + "Application Support", 'w', support, "INPL"},
    {4, "disk/Users/Shared", 'l', support, "ILB"},
    {5, "disk/Library/Application Support", 'l', support, "ILBO"},
    {6, library + "Containers", 'l', support, "Bb"},
    {7, library + "Saved Application State", 'l', support, "B"},
    {8, library + "Caches", 'l', support, "BCL"},
    {9, library + "Cookies", 'l', support, "B"},
    {10, library + "Application Scripts", 'l', support, "Bb"},
    {11, library + "Caches/com.apple.helpd", 'w', support, "BP"},
    {12, library + "Group Containers", 'l', support, "PIKt"},
    {13, "ada/Library", 'l', support, "CIP"},
    {14, office, 'f', support, "com.microsoft.Outlook"},
    {14, office + "Profile.plist", 'f', support, "com.microsoft.Outlook"},
    {15, library + "Developer", 'f', support, "com.apple.dt.Xcode"},
    {17, library + "Containers", 'l', support, "H"},
    {18, library + "Application Scripts", 'l', support, "H"},
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
  if (!fs::is_directory(fs::symlink_status(folder))) return;
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename());
  for (const std::string& name : names) {
    if (name.starts_with('.')) continue;
    found.push_back(folder / name);
    if (walks) read_plainly(folder / name, true, found);
  }
}

/// The rows read one after the other for an application as it was described.
struct PlainSearch {
  test::TestPlatform& user;
  const ApplicationItem& item;
  Paths login_items;
  bool may_search_disk;
  bool shows;
  bool is_notes = item.bundle == "com.microsoft.onenote.mac";
  std::string bundle = is_notes ? "com.microsoft.onenote" : item.bundle.value_or("");
  std::string bundle_name = is_notes ? "" : item.bundle_name;

  std::map<char, std::vector<FoldedText>> keys() const {
    std::string letters;
    for (const char c : item.label) letters += c >= 'A' && c <= 'z' ? std::string(1, c) : "";
    const std::string company = item.company_name.value_or("");
    const auto installed = [&](const char* name) {
      return user.tree.exists("Applications/Microsoft " + std::string(name));
    };
    const bool is_last =
        shows && bundle.find("com.microsoft") != std::string::npos && installed("Word.app") != installed("Excel.app");
    const std::pair<char, Paths> texts[] = {
        {'L', {item.label}},
        {'N', {item.label_name}},
        {'B', {bundle}},
        {'P', {bundle_name}},
        {'I', {item.bundle_name_info}},
        {'E', {item.executable_info}},
        {'O', {company == "apple" ? "companyname" : company}},
        {'C', {company}},
        {'K', {letters.size() < 2 ? "label_name_ad_is_small" : letters}},
        {'G', {item.log_file_name}},
        {'H', login_items},
        {'b', {shows && bundle == "com.microsoft.Word" ? "com.microsoft.Office" : ""}},
        {'t', {is_last ? "UBF8T346G9" : ""}}};
    std::map<char, std::vector<FoldedText>> keys;
    for (const auto& [name, of_name] : texts) {
      for (const std::string& text : of_name) {
        if (letters_in(text) >= 2) keys[name].emplace_back(text);
      }
    }
    return keys;
  }

  Paths fixed(const PlainRow& row) const {
    const fs::path place =
        row.order == 2 ? fs::path(item.url.path()).parent_path() : fs::path(user.tree.path(row.folder));
    const bool applies = row.order != 2 ? bundle == row.keys
                                        : contains_folded(bundle, "com.adobe") && place.filename() != "Applications" &&
                                              place.string().find("Applications") != std::string::npos;
    return applies && (shows || row.order == 15) && fs::exists(place) ? Paths{place} : Paths{};
  }

  bool takes(const PlainRow& row, const std::string& entry) const {
    const std::string below = entry.substr(user.tree.path(row.folder).size() + 1);
    if (row.order == 30) return path_extension_of(below).empty();
    return row.order != 3 || (!(below + "/").starts_with("CrashReporter/") && path_extension_of(below) != "app");
  }

  bool is_of_this_edition(const PlainRow& row, const std::string& name) const {
    const auto same = [&](const char* word) {
      return !contains_folded(name, word) || contains_folded(bundle_name, word);
    };
    return row.reading == 'f' || (same("pro") && ((row.order != 17 && row.order != 18) || same("plus")));
  }

  Paths list() const {
    Paths result = {"Executables", item.url.path()};
    std::string group;
    auto known = keys();
    for (const PlainRow& row : plain_rows) {
      if (row.folder.starts_with("disk/") && !may_search_disk) continue;
      Paths entries = row.reading == 'f' ? fixed(row) : Paths{};
      if (row.reading != 'f') read_plainly(user.tree.path(row.folder), row.reading == 'w', entries);
      for (const std::string& entry : entries) {
        const std::string name = fs::path(entry).filename();
        const auto has = [&, folded = FoldedText(name)](const FoldedText& key) { return folded.contains(key); };
        const auto hits = [&](char key) { return std::any_of(known[key].begin(), known[key].end(), has); };
        if (row.reading != 'f' && (std::none_of(row.keys.begin(), row.keys.end(), hits) || !takes(row, entry)))
          continue;
        if (std::exchange(group, row.group) != row.group) result.push_back(row.group);
        if (is_of_this_edition(row, name)) result.push_back(entry);
      }
    }
    return result;
  }
};

/// Makes small trees of names that come from the application itself.
struct Maker {
  test::TestPlatform& user;
  std::mt19937 random;
  Paths login_items = {};

  std::size_t below(std::size_t most) { return random() % most; }
  std::string any_of(const Paths& list) { return list[below(list.size())]; }

  Url application() {
    const std::string path = any_of({"Applications", "Applications/Adobe Shop", "ada/Applications", "ada/Tools"}) +
                             "/" + any_of({"Éditor", "Editor Pro", "X", "Logs", "Mi_xt 2", "-"}) + ".app";
    PropertyList::Dictionary list;
    list.emplace("CFBundleIdentifier",
                 any_of({"com.Acme.editor", "org.acme.Editor.Pro", "net.cafÉ.plusminus", "com.apple.dt.Xcode",
                         "com.apple.tool", "com.Adobe.shop", "com.microsoft.Word", "com.microsoft.onenote.mac",
                         "com.microsoft.Outlook", ".", "a", "", "Logs"}));
    for (const char* key : {"CFBundleName", "CFBundleExecutable", "LogName"}) {
      if (below(4) == 0) continue;
      list.emplace(key, any_of({"Éditor", "Editor Pro", "e-Plus kit", "X", ".", "Logs", "Caches", "",
                                std::string(10'000, 'x')}));
    }
    user.tree.content(path + "/Contents/Info.plist", write_xml_property_list(list));
    const std::string helpers = path + "/Contents/Library/LoginItems/";
    for (const char* helper : {"com.acme.helper", "Bar.Plus", "a"}) {
      if (below(3) == 0) user.application(helpers + helper + ".app", helper), login_items.emplace_back(helper);
    }
    user.application(helpers + ".app", "com.hidden.helper").application(helpers + "No.APP", "com.other.helper");
    for (const char* name : {"Word", "Excel"}) {
      if (below(3) == 0) user.tree.folder("Applications/Microsoft " + std::string(name) + ".app");
    }
    return user.url(path);
  }

  void entries(const std::string& folder, const ApplicationItem& item) {
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
                   "Other",
                   "UBF8T346G9",
                   "com.microsoft.Office",
                   "com.microsoft.onenote",
                   "companyname"};
    words.insert(words.end(), login_items.begin(), login_items.end());
    for (int count = 0; count < 5; ++count) {
      std::string path = folder;
      do path += "/" + changed(any_of(words));
      while (below(3) == 0);
      try {
        if (below(8) == 0) {
          user.tree.link(path, ".");
        } else {
          user.tree.file(path, static_cast<int>(below(1'000)));
        }
      } catch (const std::exception&) {  // something stands in the way, and stays
      }
    }
  }

  /// The text in another case, with or without accents, or as another edition.
  std::string changed(std::string text) {
    text.resize(std::min<std::size_t>(text.size(), 200));
    const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
    if (below(2) == 0) std::transform(text.begin(), text.end(), text.begin(), upper);
    const auto e = text.find('e');
    if (e != std::string::npos && below(2) == 0) text.replace(e, 1, any_of({"é", "E\u0301"}));
    text = any_of({"", "", "", ".", "my "}) + text + any_of({"", "", "1", ".plist", " Pro", ".PLUS", ".app"});
    return text.find_first_not_of('.') == std::string::npos ? "dots" + text : text;
  }
};

Paths paths_of(const std::vector<Url>& urls) {
  Paths paths;
  for (const Url& url : urls) paths.push_back(url.path());
  return paths;
}

/// Makes an application and fills these folders; checks what is shown, what would be removed, and what then goes.
void check(test::TestPlatform& user, std::uint32_t seed, const Paths& folders) {
  for (const char* top : {"ada", "Applications", "disk"}) {
    for (const auto& entry : fs::directory_iterator(user.tree.path(top))) fs::remove_all(entry);
  }
  Maker make{user, std::mt19937(seed)};
  const ApplicationItem described = *Application(user.platform).application(make.application());
  for (const std::string& folder : folders) make.entries(folder, described);
  const bool any = make.below(2) == 1;
  user.settings.set_integer("AllowAny", any ? 1 : 2);

  ApplicationItem shown = described;
  shown.getfiles(user.platform, [] {});
  EXPECT_EQ(paths_of(shown.files), (PlainSearch{user, described, make.login_items, any, true}.list()));
  EXPECT_EQ(shown.sizes.size(), shown.files.size());
  ApplicationItem removed = described;
  removed.find_removable_files(user.platform);
  EXPECT_EQ(paths_of(removed.files), (PlainSearch{user, described, make.login_items, any, false}.list()));

  const std::vector<Url> listed = removed.listed_files();
  const std::vector<bool> refused = user.files.refuses_to_remove(listed);
  std::set<std::string> going;
  for (std::size_t at = 0; at < listed.size(); ++at) {
    EXPECT_NE(std::find(shown.files.begin(), shown.files.end(), listed[at]), shown.files.end()) << "not shown";
    if (!refused[at]) going.insert(listed[at].path());
  }
  const auto before = test::snapshot_of(user.tree.path());
  ApplicationItem(described).remove_files(user.platform);
  EXPECT_EQ(test::after_losing(test::snapshot_of(user.tree.path()), going), test::without(before, going));
}

TEST(RelatedFiles, are_what_a_plain_reading_of_the_table_tells) {
  const std::uint32_t seed = test::random_seed();
  SCOPED_TRACE(test::how_to_repeat(seed));
  test::TestPlatform user;
  user.tree.folder("disk");
  ASSERT_TRUE(user.bookmarks.store(Grant::disk, user.url("disk")));
  Paths all;
  for (unsigned round = 0; round < std::size(plain_rows) + 12 && !HasFailure(); ++round) {
    const PlainRow* alone = round < std::size(plain_rows) ? &plain_rows[round] : nullptr;
    SCOPED_TRACE(alone ? "row " + std::to_string(alone->order) : "all rows");
    if (alone) all.push_back(alone->folder);
    check(user, seed + round, alone ? Paths{alone->folder} : all);
  }
}

}  // namespace
}  // namespace tarnby
