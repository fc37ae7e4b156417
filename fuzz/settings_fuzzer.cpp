// A settings file of any bytes: a change loses no other key, and bytes that are no settings are set aside whole.

#include <optional>

#include "fuzz/fuzzer.h"
#include "platform/settings_store.h"

using namespace tarnby;

namespace {

constexpr const char* name = "settings.plist";
constexpr const char* aside = "settings.plist.damaged";

std::optional<SettingsStore::Values> values_in(std::string_view bytes) {
  const auto list = parse_property_list(bytes);
  const auto* values = list ? list->as<SettingsStore::Values>() : nullptr;
  return values == nullptr ? std::nullopt : std::optional(*values);
}

std::string text_of(const SettingsStore::Values& values) {
  return write_xml_property_list(values);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::Scratch scratch;
  const std::string_view bytes = fuzz::text_of(data, size);
  std::filesystem::remove(scratch.path(aside));
  scratch.write(name, bytes);
  const auto before = values_in(bytes);
  constexpr std::size_t long_text =
      1U << 20U;  // a few bytes can stand for megabytes, which take too long again and again
  if (before && text_of(*before).size() > long_text) return 0;

  const auto store = open_settings_file(Url::file(scratch.path(name)));
  fuzz::check(text_of(store->all()) == text_of(before.value_or(SettingsStore::Values())),
              "what is in the file is seen");
  const auto held = store->value("TotallyCleaned");
  store->add("TotallyCleaned", 1);
  store->set("Caches", true);
  store->remove("Logs");
  auto expected = before.value_or(SettingsStore::Values());
  expected.insert_or_assign("TotallyCleaned", sum_of(held ? &*held : nullptr, 1));
  expected.insert_or_assign("Caches", true);
  expected.erase("Logs");
  fuzz::check(text_of(store->all()) == text_of(expected), "changes are seen at once");

  const bool written = store->synchronize();
  const bool was_set_aside = std::filesystem::exists(scratch.path(aside));
  if (!written) {
    fuzz::check(!was_set_aside && scratch.read(name) == bytes, "what cannot be written leaves the old content");
    return 0;
  }
  fuzz::check(text_of(store->all()) == text_of(expected), "changes stay seen");
  if (before && *before == expected) return 0;  // nothing to write
  fuzz::check(scratch.read(name) == text_of(expected), "the file holds every key");
  fuzz::check(was_set_aside == !before, "what was damaged is set aside, and nothing else");
  fuzz::check(!was_set_aside || scratch.read(aside) == bytes, "and it is kept whole");
  return 0;
}
