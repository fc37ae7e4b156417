#pragma once

#include <memory>

#include "bench/home.h"
#include "platform/bookmarks.h"
#include "platform/settings_store.h"

namespace tarnby::bench {

/// Settings that are nowhere but in memory, with both folders of a home granted.
inline std::unique_ptr<RunSettings> granted_settings(const Home& home) {
  auto settings = std::make_unique<RunSettings>(open_settings_file({}));
  settings->set_for_this_run("home", bookmark_data(Url::file(home.home)));
  settings->set_for_this_run("Applications", bookmark_data(Url::file(home.applications)));
  return settings;
}

}  // namespace tarnby::bench
