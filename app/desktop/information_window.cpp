#include "app/desktop/information_window.h"

#include <QDateTime>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <cmath>

#include "platform/platform.h"
#include "ui/qt_text.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr int icon_side = 64;
constexpr int least_value_width = 320;

const char* kind_name(EntryKind kind) {
  switch (kind) {
    case EntryKind::file:
      return english("File");
    case EntryKind::folder:
      return english("Folder");
    case EntryKind::link:
      return english("Link");
    case EntryKind::other:
      return english("Special file");
    case EntryKind::none:
      return english("Not there any more");
  }
  return "";
}

/// What is read out is what is seen.
void show_value(QLabel* label, const QString& value) {
  label->setText(value);
  label->setAccessibleDescription(value);
}

}  // namespace

QString InformationWindow::kind_text(const Platform& platform, EntryKind kind) {
  return QString::fromStdString(platform.localization.text(kind_name(kind)));
}

QString InformationWindow::text(const char* english) const {
  return QString::fromStdString(platform_.localization.text(english));
}

InformationWindow::InformationWindow(Platform& platform, BackgroundQueue& io_queue, std::shared_ptr<IconReader> icons,
                                     const Url& entry, QWidget* parent)
    : QDialog(parent), platform_(platform) {
  const std::string name(entry.last_path_component());
  setWindowTitle(to_qstring(name));
  QPalette colors = palette();
  colors.setColor(QPalette::Window, theme::sheet);
  setPalette(colors);
  auto* form = new QFormLayout(this);
  form->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 3 * theme::grid);
  form->setSpacing(theme::grid);
  auto* icon = new QLabel(this);
  icon->setFixedHeight(icon_side);
  form->addRow(icon);
  add_line(form, english("Name"), to_qstring(name));
  QLabel* kind = add_line(form, english("Kind"), QStringLiteral("…"));
  QLabel* size = add_line(form, english("Size"), QStringLiteral("…"));
  QLabel* where = add_line(form, english("Where"), to_qstring(entry.parent().path()));
  where->setLayoutDirection(Qt::LeftToRight);  // a path is, in every language
  QLabel* changed = add_line(form, english("Changed"), QStringLiteral("…"));
  // At once, before the size of a large folder is known.
  io_queue.async(
      [here = std::weak_ptr(here_), entry, &platform, icons = std::move(icons), icon, sharpness = devicePixelRatioF()] {
        if (here.expired()) return;
        QImage picture = icons->read(Image::icon_of(entry), static_cast<int>(std::lround(icon_side * sharpness)));
        picture.setDevicePixelRatio(sharpness);
        platform.main_queue.async([here, icon, picture] {
          if (!here.expired()) icon->setPixmap(QPixmap::fromImage(picture));
        });
      });
  io_queue.async([here = std::weak_ptr(here_), entry, &platform, kind, size, changed] {
    if (here.expired()) return;
    auto facts = std::make_shared<Facts>(look_at(platform, entry));
    platform.main_queue.async([here, facts, kind, size, changed] {
      if (here.expired()) return;
      show_value(kind, facts->kind);
      show_value(size, facts->size);
      show_value(changed, facts->changed);
    });
  });
}

InformationWindow::Facts InformationWindow::look_at(Platform& platform, const Url& entry) {
  const Status status = platform.files.status(entry);
  const std::int64_t bytes =
      status.kind == EntryKind::folder ? platform.measurer.overall_size_of_direcory(entry) : status.size;
  const QString unknown = QStringLiteral("–");
  Facts facts = {kind_text(platform, status.kind), unknown, unknown};
  if (status.kind == EntryKind::none) return facts;
  facts.size = QString::fromStdString(platform.text.byte_count(bytes));
  if (bytes >= 1000) facts.size += QStringLiteral(" (%1)").arg(QLocale().toString(static_cast<qlonglong>(bytes)));
  const auto changed = platform.metadata.modification_date(entry);
  if (changed) {
    facts.changed =
        QLocale().toString(QDateTime::fromSecsSinceEpoch(changed->time_since_epoch().count()), QLocale::ShortFormat);
  }
  return facts;
}

QLabel* InformationWindow::add_line(QFormLayout* form, const char* name, const QString& value) {
  QLabel* title = text_label(text(name), theme::Type::detail, theme::readable(theme::secondary, theme::sheet), this);
  align_at_beginning(title, Qt::AlignTop);
  QLabel* said = text_label(value, theme::Type::detail, theme::text, this);
  align_at_beginning(said, Qt::AlignTop);
  said->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  said->setAccessibleName(text(name));
  show_value(said, value);
  said->setWordWrap(true);
  said->setMinimumWidth(least_value_width);
  form->addRow(title, said);
  return said;
}

}  // namespace tarnby
