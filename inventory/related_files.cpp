#include "inventory/related_files.h"

#include <algorithm>
#include <array>

#include "inventory/folder_matches.h"
#include "places/macos_home.h"
#include "places/related_locations.h"
#include "platform/bundle.h"
#include "platform/platform.h"
#include "text/text.h"

namespace tarnby {

namespace {

constexpr std::size_t fewest_letters = 2;

/// These stand for a text that must not match; no real name holds them.
constexpr std::string_view no_name_key = "label_name_ad_is_small";
constexpr std::string_view no_company = "companyname";

constexpr std::string_view office_applications[] = {"Microsoft Word.app", "Microsoft Excel.app",
                                                    "Microsoft PowerPoint.app", "Microsoft Outlook.app",
                                                    "Microsoft OneNote.app"};

/// Absent texts become empty ones, and the note-taking application goes by the identifier its files are named by.
void normalise(ApplicationItem& item) {
  item.bundle = item.bundle.value_or("");
  item.company_name = item.company_name.value_or("");
  for (auto* text :
       {&item.optional_bundle, &item.optional_label, &item.optional_container, &item.optional_developer_id}) {
    *text = "";
  }
  if (item.bundle == "com.microsoft.onenote.mac") {
    item.bundle = "com.microsoft.onenote";
    item.bundle_name = "";
  }
}

/// The office suite shares folders. They are shown with the last of its applications, and never removed with one.
void add_office_identifiers(const FileManager& files, const Url& applications, ApplicationItem& item) {
  if (item.bundle == "com.microsoft.Word") item.optional_bundle = "com.microsoft.Office";
  if (item.bundle->find("com.microsoft") == std::string::npos) return;
  // An application that may be there keeps the shared folder, also when it cannot be looked at.
  const auto is_there = [&](std::string_view name) {
    const Status status = files.status(applications.appending(name));
    return status.kind != EntryKind::none || look_error(status.error) != LookError::none;
  };
  const auto installed = std::count_if(std::begin(office_applications), std::end(office_applications), is_there);
  if (installed == 1) item.optional_developer_id = "UBF8T346G9";
}

/// The key made of the company name. On a second pass over a record `company_name` already holds the placeholder, which
/// is no key.
std::string company_key_of(const ApplicationItem& item) {
  if (item.company_name == no_company) return {};
  return upper_first(lower_case(*item.company_name));
}

/// The label's letters: the bytes from "A" to "z", thus also the six characters [ \ ] ^ _ ` between "Z" and "a". Pinned
/// by RelatedFiles.are_what_a_plain_reading_of_the_table_tells.
std::string name_key_of(const ApplicationItem& item) {
  std::string key = item.label;
  std::erase_if(key, [](char c) { return c < 'A' || c > 'z'; });
  return key.size() > 1 ? key : std::string(no_name_key);
}

/// The texts of one record by key, folded once.
class KeyTexts {
 public:
  void set(Key key, std::string_view text) {
    if (letters_in(text) >= fewest_letters) texts_[static_cast<std::size_t>(key)].emplace_back(text);
  }

  std::vector<FoldedText> of(Keys keys) const {
    std::vector<FoldedText> texts;
    for (const Key key : all_keys) {
      const auto& of_key = texts_[static_cast<std::size_t>(key)];
      if (keys.holds(key)) texts.insert(texts.end(), of_key.begin(), of_key.end());
    }
    return texts;
  }

 private:
  std::array<std::vector<FoldedText>, std::size(all_keys)> texts_;
};

KeyTexts key_texts_of(const ApplicationItem& item, const std::string& company_key) {
  const std::pair<Key, std::string_view> texts[] = {
      {Key::label, item.label},
      {Key::label_name, item.label_name},
      {Key::bundle, *item.bundle},
      {Key::bundle_name, item.bundle_name},
      {Key::bundle_name_info, item.bundle_name_info},
      {Key::executable_info, item.executable_info},
      {Key::company_name, *item.company_name},
      {Key::company_key, company_key},
      {Key::log_file_name, item.log_file_name},
      {Key::optional_bundle, *item.optional_bundle},
      {Key::optional_developer_id, *item.optional_developer_id},
  };
  KeyTexts keys;
  for (const auto& [key, text] : texts) keys.set(key, text);
  keys.set(Key::name_key, name_key_of(item));
  return keys;
}

/// The folders from which locations go on; nowhere when they were not granted.
class Bases {
 public:
  Bases(Platform& platform, const Url& bundle)
      : bundle_(bundle), home_(platform.bookmarks.resolve_and_access(Grant::home)) {
    const Url disk = platform.bookmarks.resolve_and_access(Grant::disk);
    if (platform.app_settings.integer("AllowAny") == 1) disk_ = disk;
    if (platform.files.link_text(disk_.appending("var")) == "private/var") above_var_ = "private";
  }

  Url place_of(const RelatedLocation& location) const {
    const bool in_var = location.base == Base::disk && location.folder.starts_with("var/");
    return (in_var ? disk_.appending(above_var_) : base(location.base)).appending(location.folder);
  }

 private:
  Url base(Base base) const {
    switch (base) {
      case Base::library:
        return home_.appending(macos_home::library);
      case Base::home:
        return home_;
      case Base::disk:
        return disk_;
      case Base::bundle:
        return bundle_;
      case Base::around_bundle:
        return bundle_.parent();
    }
    return {};
  }

  const Url bundle_;
  const Url home_;
  Url disk_;
  /// The folder of the disk that really holds "var": a Mac has a link there, and links are not followed.
  std::string_view above_var_;
};

void add_login_items(const FileManager& files, const Url& folder, KeyTexts& keys) {
  for (const Url& entry : files.list_urls(folder)) {
    if (!is_application_name(entry.last_path_component())) continue;
    if (const auto identifier = bundle_identifier(files, entry)) keys.set(Key::login_items, *identifier);
  }
}

std::span<const std::string_view> edition_words(Editions editions) {
  static constexpr std::string_view words[] = {"pro", "plus"};
  return std::span(words).first(editions == Editions::pro ? 1 : 2);
}

/// True when the entry belongs to an edition that this application is not.
bool is_of_another_edition(const Url& entry, Editions editions, const ApplicationItem& item) {
  const auto words = edition_words(editions);
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
    return contains_folded(entry.last_path_component(), word) && !contains_folded(item.bundle_name, word);
  });
}

/// Appends files under their markers.
class GroupedFiles {
 public:
  /// The marker goes in with the first entry that is met, also when that entry is then left.
  void meet(std::string_view group) {
    if (group == last_group_) return;
    files_.push_back(Url::text(group));
    last_group_ = group;
  }
  void add(const Url& file) { files_.push_back(file); }
  std::vector<Url> files() && { return std::move(files_); }

 private:
  std::vector<Url> files_;
  std::string_view last_group_;
};

/// These applications come in a folder of their own below Applications, with files beside the bundle.
bool is_in_adobe_folder(const ApplicationItem& item) {
  const Url folder = item.url.parent();
  return contains_folded(*item.bundle, "com.adobe") && folder.last_path_component() != "Applications" &&
         folder.path().find("Applications") != std::string::npos;
}

bool is_outlook(const ApplicationItem& item) {
  return item.bundle == "com.microsoft.Outlook";
}

bool is_xcode(const ApplicationItem& item) {
  return item.bundle == "com.apple.dt.Xcode";
}

bool is_among(Owners owners, const ApplicationItem& item) {
  switch (owners) {
    case Owners::all:
      return true;
    case Owners::in_adobe_folder:
      return is_in_adobe_folder(item);
    case Owners::outlook:
      return is_outlook(item);
    case Owners::xcode:
      return is_xcode(item);
  }
  return false;
}

/// The search through the locations for one record.
class RelatedSearch {
 public:
  RelatedSearch(Platform& platform, const ApplicationItem& item, KeyTexts keys, const Bases& bases, Purpose purpose)
      : files_(platform.files), item_(item), keys_(std::move(keys)), with_shown_keys_(purpose == Purpose::show) {
    for (const RelatedLocation& location : related_locations()) {
      if (purpose == Purpose::remove && !location.traits.is_removed) continue;
      if (!is_among(location.traits.owners, item)) continue;
      locations_.push_back(&location);
      places_.push_back(bases.place_of(location));
    }
    for (std::size_t at = 0; at < locations_.size(); ++at) {
      if (locations_[at]->reading == Reading::identifiers) add_login_items(files_, places_[at], keys_);
    }
  }

  std::vector<Url> run() {
    std::vector<FolderSearch> searches;
    for (std::size_t at = 0; at < locations_.size(); ++at) searches.push_back(search_of(*locations_[at], places_[at]));
    const auto found = find_in_folders(files_, searches);
    GroupedFiles grouped;
    grouped.meet(executables_group);
    grouped.add(item_.url);
    for (std::size_t at = 0; at < locations_.size(); ++at) {
      if (locations_[at]->reading == Reading::place) {
        add_place(*locations_[at], places_[at], grouped);
      } else {
        add_found(*locations_[at], found[at], grouped);
      }
    }
    return std::move(grouped).files();
  }

 private:
  /// A location that is not searched by name has no keys, and so finds nothing.
  FolderSearch search_of(const RelatedLocation& location, const Url& place) const {
    std::vector<FoldedText> keys = keys_.of(location.keys);
    if (with_shown_keys_) {
      for (FoldedText& key : keys_.of(location.traits.shown_keys)) keys.push_back(std::move(key));
    }
    return {place, location.reading == Reading::walk, std::move(keys), location.traits.takes, location.traits.left_out};
  }

  void add_place(const RelatedLocation& location, const Url& place, GroupedFiles& grouped) const {
    if (!files_.exists(place)) return;
    grouped.meet(location.group);
    grouped.add(place);
  }

  void add_found(const RelatedLocation& location, const std::vector<Url>& entries, GroupedFiles& grouped) const {
    for (const Url& entry : entries) {
      grouped.meet(location.group);
      if (!is_of_another_edition(entry, location.traits.editions, item_)) grouped.add(entry);
    }
  }

  FileManager& files_;
  const ApplicationItem& item_;
  KeyTexts keys_;
  const bool with_shown_keys_;
  /// The rows that are searched, and beside them where each is.
  std::vector<const RelatedLocation*> locations_;
  std::vector<Url> places_;
};

}  // namespace

std::vector<Url> related_files(Platform& platform, ApplicationItem& item, Purpose purpose) {
  const Bases bases(platform, item.url);
  normalise(item);
  if (purpose == Purpose::show) {
    add_office_identifiers(platform.files, platform.bookmarks.resolve_and_access(Grant::applications), item);
  }
  const std::string company_key = company_key_of(item);
  if (item.company_name == "apple") item.company_name = no_company;
  return RelatedSearch(platform, item, key_texts_of(item, company_key), bases, purpose).run();
}

void ApplicationItem::getfiles(Platform& platform, const std::function<void()>& handler) {
  files = related_files(platform, *this, Purpose::show);
  measure_files(platform);
  handler();
}

void ApplicationItem::calculate_application_size_with_complete_handler(Platform& platform,
                                                                       const std::function<void()>& handler) {
  app_size_in_bytes = platform.measurer.overall_size_of_direcory(url);
  app_size = platform.text.byte_count(app_size_in_bytes);
  handler();
}

std::vector<Removal> ApplicationItem::remove_files(Platform& platform) {
  find_removable_files(platform);
  return remove_found_files(platform);
}

void ApplicationItem::find_removable_files(Platform& platform) {
  files = related_files(platform, *this, Purpose::remove);
  sizes.clear();
}

std::vector<Removal> ApplicationItem::remove_found_files(Platform& platform, const RemovalOptions& options) const {
  return platform.files.remove(listed_files(), options);
}

void ApplicationItem::measure_files(Platform& platform) {
  const std::vector<std::int64_t> bytes = platform.measurer.visible_sizes_of_files(files);
  sizes.clear();
  for (std::size_t at = 0; at < files.size(); ++at) {
    if (files[at].is_file_url()) {
      sizes.emplace_back(static_cast<std::uint64_t>(bytes[at]));
    } else {
      sizes.emplace_back(files[at]);
    }
  }
}

std::vector<Url> ApplicationItem::listed_files() const {
  std::vector<Url> urls;
  std::copy_if(files.begin(), files.end(), std::back_inserter(urls),
               [](const Url& file) { return file.is_file_url(); });
  return urls;
}

}  // namespace tarnby
