#include "cli/json.h"

#include "cli/characters.h"
#include "cli/context.h"
#include "engine/entry_text.h"
#include "engine/smart_selection.h"
#include "text/iso_date.h"
#include "text/text.h"

namespace tarnby::cli {

namespace {

/// A client goes by its type, which no translation changes.
std::string stable_label(const CleanerEntry& entry) {
  const auto* client = std::get_if<std::shared_ptr<CleanerItem>>(&entry);
  return client ? (*client)->type : label_of(entry);
}

/// The control character that a piece such as "\\n" stands for; NUL when it is no such escape.
char control_of_escape(std::string_view piece) {
  constexpr std::string_view letters = "btnfr";
  constexpr std::string_view controls = "\b\t\n\f\r";
  if (piece.size() != 2 || piece.front() != '\\') return '\0';
  const std::size_t at = letters.find(piece.back());
  return at == std::string_view::npos ? '\0' : controls[at];
}

}  // namespace

std::string json_text_of(const Json& value) {
  const std::string dumped = value.dump();  // its texts are valid UTF-8, and some characters in them escaped by letters
  std::string text;
  for (std::size_t at = 0; at < dumped.size();) {
    const std::size_t length = dumped[at] == '\\' ? 2 : length_of_character(static_cast<unsigned char>(dumped[at]));
    const std::string_view piece = std::string_view(dumped).substr(at, length);
    if (const char control = control_of_escape(piece)) {
      text += number_escape(static_cast<unsigned char>(control));
    } else if (dumped[at] != '\\' && has_effects(code_point(piece))) {
      text += number_escape(code_point(piece));
    } else {
      text += piece;
    }
    at += length;
  }
  return text;
}

std::string json_line(const Json& value) {
  return json_text_of(value) + "\n";
}

Json json_text(std::string_view bytes) {
  return to_valid_utf8(bytes);
}

Json json_optional(const std::optional<std::string>& text) {
  return text ? json_text(*text) : Json();
}

Json json_paths(std::span<const Url> urls) {
  Json paths = Json::array();
  for (const Url& url : urls) paths.push_back(json_text(url.path()));
  return paths;
}

Json json_answer(HomeKind layout, const Json& fields) {
  constexpr int format = 1;
  Json answer = {{"format", format}, {"layout", std::string(layout_name(layout))}};
  answer.update(fields);
  return answer;
}

namespace {

constexpr std::string_view grade_names[] = {"safe", "costs-time", "may-lose"};

Json json_running(Running running) {
  return running == Running::unknown ? Json() : Json(running == Running::yes);
}

/// A text of an offer with what it is about in it.
Json json_words(const Offer& offer, const char* words) {
  std::string text = words;
  for (std::size_t at = text.find("%@"); at != std::string::npos; at = text.find("%@", at + offer.subject.size())) {
    text.replace(at, 2, offer.subject);
  }
  return json_text(text);
}

/// What only the rows of a Linux home know.
void add_offer(Json& json, const OfferedItem& item) {
  const Owner& owner = item.offer.owner;
  const bool has_owner = owner.kind != Owner::Kind::unknown && owner.kind != Owner::Kind::nobody;
  json["size"] = item.size;
  json["grade"] = std::string(grade_names[static_cast<std::size_t>(item.offer.grade)]);
  json["reason"] = json_words(item.offer, item.offer.reason);
  json["after"] = json_words(item.offer, item.offer.after);
  json["owner"] = has_owner ? json_text(owner.id) : Json();
  json["running"] = owner.kind == Owner::Kind::unknown ? Json() : json_running(item.running);
  json["changed"] = item.changed ? Json(iso_date(*item.changed)) : Json();
  json["frees"] = item.frees;
  json["ticked"] = item.starts_ticked();
}

}  // namespace

Json json_entry(const CleanerEntry& entry) {
  Json json = {
      {"label", json_text(stable_label(entry))}, {"size", size_of(entry)}, {"paths", json_paths(locations_of(entry))}};
  if (const auto* remainder = std::get_if<std::shared_ptr<RemainderItem>>(&entry)) {
    json["bundle"] = json_text((*remainder)->bundle);
  }
  if (const auto* offered = std::get_if<std::shared_ptr<OfferedItem>>(&entry)) add_offer(json, **offered);
  return json;
}

Json json_application(const ApplicationItem& item) {
  const bool has_icon = item.app_icon.kind == Image::Kind::file;
  return {{"label", json_text(item.label)},
          {"label_name", json_text(item.label_name)},
          {"path", json_text(item.url.path())},
          {"bundle", json_optional(item.bundle)},
          {"bundle_name", json_text(item.bundle_name)},
          {"bundle_name_info", json_text(item.bundle_name_info)},
          {"executable_info", json_text(item.executable_info)},
          {"company_name", json_optional(item.company_name)},
          {"app_version", json_text(item.app_version)},
          {"log_file_name", json_text(item.log_file_name)},
          {"app_icon", has_icon ? json_text(item.app_icon.url.path()) : Json()}};
}

Json json_setting(const PropertyList& value) {
  if (const auto* boolean = value.as<bool>()) return *boolean;
  if (const auto* integer = value.as<std::int64_t>()) return *integer;
  if (const auto* real = value.as<double>()) return *real;
  if (const auto* text = value.as<std::string>()) return json_text(*text);
  if (const auto* data = value.as<PropertyList::Data>()) return json_text(data->bytes);
  if (const auto* date = value.as<PropertyList::Date>()) return iso_date(*date);
  Json json;
  if (const auto* array = value.as<PropertyList::Array>()) {
    json = Json::array();
    for (const PropertyList& item : *array) json.push_back(json_setting(item));
  } else if (const auto* dictionary = value.as<PropertyList::Dictionary>()) {
    json = Json::object();
    for (const auto& [key, item] : *dictionary) json[to_valid_utf8(key)] = json_setting(item);
  }
  return json;
}

}  // namespace tarnby::cli
