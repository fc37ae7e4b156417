#pragma once

#include <functional>

#include "app/parts/app_context.h"

class QMenu;
class QWidget;

namespace tarnby {

/// What a person can do with one entry of an outline.
struct EntryMenuWork {
  std::function<void()> show, preview, information;
};

/// The menu of an entry, the same in every outline. Belongs to `parent`.
QMenu* make_entry_menu(const AppContext& context, QWidget* parent, EntryMenuWork work);

}  // namespace tarnby
