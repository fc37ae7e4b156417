#include "app/parts/entry_menu.h"

#include <QMenu>

#include "text/localization.h"

namespace tarnby {

QMenu* make_entry_menu(const AppContext& context, QWidget* parent, EntryMenuWork work) {
  auto* menu = new QMenu(parent);
  const auto add = [&](const char* text, std::function<void()>& operation) {
    QAction* action = menu->addAction(context.text(text));
    QObject::connect(action, &QAction::triggered, parent, std::move(operation));
    return action;
  };
  add(english("Show in file viewer"), work.show);
  QAction* preview = add(english("Preview"), work.preview);
  preview->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_Space));
  preview->setShortcutContext(Qt::WidgetShortcut);  // shown here, answered by the outline
  add(english("Get info"), work.information);
  return menu;
}

}  // namespace tarnby
