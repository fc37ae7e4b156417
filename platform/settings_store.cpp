#include "platform/settings_store.h"

#include <limits>

namespace tarnby {

PropertyList sum_of(const PropertyList* held, std::int64_t amount) {
  using Limits = std::numeric_limits<std::int64_t>;
  const auto* number = held == nullptr ? nullptr : held->as<std::int64_t>();
  if (number == nullptr || *number < 0) return amount;  // what is added up is never less than nothing
  if (amount > 0 && *number > Limits::max() - amount) return Limits::max();
  if (amount < 0 && *number < Limits::min() - amount) return Limits::min();
  return *number + amount;
}

void RunSettings::set_for_this_run(std::string_view key, PropertyList value) {
  const std::lock_guard lock(mutex_);
  here_.insert_or_assign(std::string(key), std::move(value));
}

void RunSettings::keep_in_memory() {
  const std::lock_guard lock(mutex_);
  all_in_memory_ = true;
}

std::optional<PropertyList> RunSettings::value(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  const auto found = here_.find(key);
  return found == here_.end() ? below_->value(key) : found->second;
}

void RunSettings::set(std::string_view key, PropertyList value) {
  const std::lock_guard lock(mutex_);
  if (stays_here(key)) {
    here_.insert_or_assign(std::string(key), std::move(value));
  } else {
    below_->set(key, std::move(value));
  }
}

void RunSettings::add(std::string_view key, std::int64_t amount) {
  const std::lock_guard lock(mutex_);
  if (!stays_here(key)) {
    below_->add(key, amount);
    return;
  }
  const auto found = here_.find(key);
  const std::optional<PropertyList> held = found == here_.end() ? below_->value(key) : found->second;
  here_.insert_or_assign(std::string(key), sum_of(held ? &*held : nullptr, amount));
}

void RunSettings::remove(std::string_view key) {
  const std::lock_guard lock(mutex_);
  if (stays_here(key)) {
    here_.insert_or_assign(std::string(key), std::nullopt);
  } else {
    below_->remove(key);
  }
}

SettingsStore::Values RunSettings::all() const {
  const std::lock_guard lock(mutex_);
  Values values = below_->all();
  for (const auto& [key, value] : here_) {
    if (value) {
      values.insert_or_assign(key, *value);
    } else {
      values.erase(key);
    }
  }
  return values;
}

bool RunSettings::synchronize() {
  {
    const std::lock_guard lock(mutex_);
    if (all_in_memory_) return true;
  }
  return below_->synchronize();  // without the lock: readers need not wait for the disk
}

bool RunSettings::stays_here(std::string_view key) const {
  return all_in_memory_ || here_.contains(key);
}

}  // namespace tarnby
