#include "app/desktop/information_window.h"

#include <QDateTime>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>

#include "ui/text_label.h"

namespace tarnby {

namespace {

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

QString readable(const std::string& path) {
  return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
}

}  // namespace

QString InformationWindow::text(const char* english) const {
  return QString::fromStdString(platform_.localization.text(english));
}

InformationWindow::InformationWindow(Platform& platform, BackgroundQueue& errands, const Url& entry, QWidget* parent)
    : QDialog(parent), platform_(platform) {
  const std::string name(entry.last_path_component());
  setWindowTitle(readable(name));
  QPalette colors = palette();
  colors.setColor(QPalette::Window, theme::sheet);
  setPalette(colors);
  auto* form = new QFormLayout(this);
  form->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 3 * theme::grid);
  form->setSpacing(theme::grid);
  add_line(form, english("Name"), readable(name));
  QLabel* kind = add_line(form, english("Kind"), QStringLiteral("…"));
  QLabel* size = add_line(form, english("Size"), QStringLiteral("…"));
  add_line(form, english("Where"), readable(entry.parent().path()));
  QLabel* changed = add_line(form, english("Changed"), QStringLiteral("…"));
  errands.async([here = std::weak_ptr(here_), entry, &platform, kind, size, changed] {
    if (here.expired()) return;
    auto facts = std::make_shared<Facts>(look_at(platform, entry));
    platform.main_queue.async([here, facts, kind, size, changed] {
      if (here.expired()) return;
      kind->setText(facts->kind);
      size->setText(facts->size);
      changed->setText(facts->changed);
    });
  });
}

InformationWindow::Facts InformationWindow::look_at(Platform& platform, const Url& entry) {
  const Status status = platform.files.status(entry);
  const std::int64_t bytes =
      status.kind == EntryKind::folder ? platform.measurer.overall_size_of_direcory(entry) : status.size;
  Facts facts;
  facts.kind = QString::fromStdString(platform.localization.text(kind_name(status.kind)));
  facts.size = QString::fromStdString(platform.text.byte_count(bytes)) + QStringLiteral(" (") +
               QLocale().toString(static_cast<qlonglong>(bytes)) + u')';
  const auto changed = platform.metadata.modification_date(entry);
  facts.changed = changed ? QLocale().toString(QDateTime::fromSecsSinceEpoch(changed->time_since_epoch().count()),
                                               QLocale::ShortFormat)
                          : QStringLiteral("–");
  return facts;
}

QLabel* InformationWindow::add_line(QFormLayout* form, const char* name, const QString& value) {
  QLabel* title = text_label(text(name), theme::Type::detail, theme::readable(theme::secondary, theme::sheet), this);
  QLabel* said = text_label(value, theme::Type::detail, theme::text, this);
  align_at_beginning(said);
  said->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  said->setAccessibleName(text(name));
  said->setAccessibleDescription(value);
  said->setWordWrap(true);
  said->setMinimumWidth(320);
  form->addRow(title, said);
  return said;
}

}  // namespace tarnby
