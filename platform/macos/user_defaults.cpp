#include "platform/macos/user_defaults.h"

#include "text/macos/core_foundation.h"

namespace tarnby {

namespace {

// Both sides know the two forms of a property list, so values cross as such.

std::optional<PropertyList> from_object(CFPropertyListRef object) {
  if (!object) return {};
  const Owned<CFDataRef> bytes(
      CFPropertyListCreateData(kCFAllocatorDefault, object, kCFPropertyListBinaryFormat_v1_0, 0, nullptr));
  if (!bytes) return {};
  return parse_property_list({reinterpret_cast<const char*>(CFDataGetBytePtr(bytes.get())),
                              static_cast<std::size_t>(CFDataGetLength(bytes.get()))});
}

Owned<CFPropertyListRef> to_object(const PropertyList& value) {
  const std::string bytes = write_xml_property_list(value);
  const Owned<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                                           static_cast<CFIndex>(bytes.size())));
  return Owned<CFPropertyListRef>(
      CFPropertyListCreateWithData(kCFAllocatorDefault, data.get(), kCFPropertyListImmutable, nullptr, nullptr));
}

class UserDefaults final : public SettingsStore {
 public:
  explicit UserDefaults(std::string_view domain) : domain_(cf_string(domain)) {}

  std::optional<PropertyList> value(std::string_view key) const override {
    const Owned<CFPropertyListRef> held(CFPreferencesCopyAppValue(cf_string(key).get(), domain_.get()));
    return from_object(held.get());
  }

  void set(std::string_view key, PropertyList value) override {
    const Owned<CFPropertyListRef> object = to_object(value);
    if (object) CFPreferencesSetAppValue(cf_string(key).get(), object.get(), domain_.get());
  }

  void add(std::string_view key, std::int64_t amount) override {
    const std::lock_guard lock(adding_);
    synchronize();
    const auto held = value(key);
    set(key, sum_of(held ? &*held : nullptr, amount));
  }

  void remove(std::string_view key) override { CFPreferencesSetAppValue(cf_string(key).get(), nullptr, domain_.get()); }

  Values all() const override {
    const Owned<CFDictionaryRef> held(
        CFPreferencesCopyMultiple(nullptr, domain_.get(), kCFPreferencesCurrentUser, kCFPreferencesAnyHost));
    auto list = from_object(held.get());
    auto* values = list ? list->as<Values>() : nullptr;
    return values ? std::move(*values) : Values();
  }

  bool synchronize() override { return CFPreferencesAppSynchronize(domain_.get()); }

 private:
  const Owned<CFStringRef> domain_;
  std::mutex adding_;
};

}  // namespace

std::unique_ptr<SettingsStore> user_defaults(std::string_view domain) {
  return std::make_unique<UserDefaults>(domain);
}

}  // namespace tarnby
