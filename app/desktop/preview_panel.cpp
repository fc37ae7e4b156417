#include "app/desktop/preview_panel.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "app/desktop/information_window.h"
#include "platform/platform.h"
#include "ui/qt_text.h"
#include "ui/scroller.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr QSize usual_size(640, 480);
constexpr std::size_t most_text = 256U << 10U;
constexpr std::size_t most_entries = 500;
constexpr int icon_side = 128;

/// Those whose decoders open no other file. A drawing in SVG may name some.
QList<QByteArray> formats() {
  return {"icns", "png", "jpeg", "gif", "tiff", "bmp", "ico", "webp", "pbm", "pgm", "ppm"};
}

bool is_text(const QByteArray& bytes) {
  return !bytes.isEmpty() && !bytes.first(std::min<qsizetype>(bytes.size(), 4096)).contains('\0');
}

QString listing_of(const FileManager& files, const Url& folder) {
  const auto entries = files.list(folder, Hidden::take);
  QStringList names;
  for (std::size_t at = 0; at < std::min(entries.size(), most_entries); ++at) {
    names << to_qstring(entries[at].url.last_path_component()) +
                 (entries[at].kind == EntryKind::folder ? QStringLiteral("/") : QString());
  }
  if (entries.size() > most_entries) names << QStringLiteral("…");
  return names.join(u'\n');
}

}  // namespace

PreviewPanel::PreviewPanel(Platform& platform, BackgroundQueue& io_queue, std::shared_ptr<IconReader> icons,
                           QWidget* parent)
    : QDialog(parent),
      platform_(platform),
      io_queue_(io_queue),
      icons_(std::move(icons)),
      pictures_(std::make_shared<PictureProcess>(formats())) {
  resize(usual_size);
  QPalette colors = palette();
  colors.setColor(QPalette::Window, theme::sheet);
  setPalette(colors);
  pages_ = new QStackedLayout(this);
  picture_ = new QLabel(this);
  picture_->setAlignment(Qt::AlignCenter);
  picture_->setMinimumSize(1, 1);
  text_ = new QPlainTextEdit(this);
  text_->setReadOnly(true);
  text_->setFrameShape(QFrame::NoFrame);
  text_->document()->setDocumentMargin(2 * theme::grid);
  text_->setFont(theme::font(theme::Type::detail));
  use_scrollers(text_);
  told_ = new QWidget(this);
  auto* told = new QVBoxLayout(told_);
  icon_ = new QLabel(told_);
  facts_ = text_label({}, theme::Type::body, theme::text, told_);
  facts_->setWordWrap(true);
  told->addStretch();
  told->addWidget(icon_, 0, Qt::AlignHCenter);
  told->addWidget(facts_);
  told->addStretch();
  for (QWidget* page : {static_cast<QWidget*>(picture_), static_cast<QWidget*>(text_), told_}) {
    pages_->addWidget(page);
  }
}

void PreviewPanel::show_entry(const Url& entry) {
  setWindowTitle(to_qstring(entry.last_path_component()));
  asked_ = std::make_shared<int>();
  io_queue_.async([this, entry, asked = std::weak_ptr(asked_), &platform = platform_, icons = icons_,
                   pictures = pictures_, sharpness = devicePixelRatioF()] {
    if (asked.expired()) return;
    auto found = std::make_shared<Found>(look_at(platform, *icons, *pictures, entry, sharpness));
    platform.main_queue.async([this, asked, found] {
      if (!asked.expired()) show_found(*found);
    });
  });
}

PreviewPanel::Found PreviewPanel::look_at(Platform& platform, IconReader& icons, PictureProcess& pictures,
                                          const Url& entry, double sharpness) {
  Found found;
  found.icon = icons.read(Image::icon_of(entry), static_cast<int>(std::lround(icon_side * sharpness)));
  found.icon.setDevicePixelRatio(sharpness);
  const Status status = platform.files.status(entry);
  found.facts = InformationWindow::kind_text(platform, status.kind);
  if (status.kind == EntryKind::file) {
    found.facts += QStringLiteral(", ") + QString::fromStdString(platform.text.byte_count(status.size));
  }
  if (status.kind == EntryKind::folder) found.text = listing_of(platform.files, entry);
  if (status.kind != EntryKind::file) return found;
  const auto content = platform.files.read(entry, most_picture_bytes);
  if (!content) return found;
  const QByteArray bytes = QByteArray::fromRawData(content->data(), static_cast<qsizetype>(content->size()));
  found.picture = pictures.whole(bytes);
  if (found.picture.isNull() && is_text(bytes)) {
    found.text = QString::fromUtf8(bytes.first(std::min<qsizetype>(bytes.size(), most_text)));
  }
  return found;
}

void PreviewPanel::show_found(const Found& found) {
  image_ = found.picture;
  text_->setPlainText(found.text);
  icon_->setPixmap(QPixmap::fromImage(found.icon));
  facts_->setText(windowTitle() + u'\n' + found.facts);
  for (QWidget* page : {static_cast<QWidget*>(picture_), static_cast<QWidget*>(text_)}) {
    page->setAccessibleName(windowTitle());
  }
  fit_picture();
  pages_->setCurrentWidget(!image_.isNull()        ? static_cast<QWidget*>(picture_)
                           : !found.text.isEmpty() ? static_cast<QWidget*>(text_)
                                                   : told_);
}

void PreviewPanel::fit_picture() {
  if (image_.isNull()) return picture_->clear();
  const double sharpness = devicePixelRatioF();
  const QSize room = (QSizeF(contentsRect().size()) * sharpness).toSize();
  const QSize shown = image_.width() > room.width() || image_.height() > room.height()
                          ? image_.size().scaled(room, Qt::KeepAspectRatio)
                          : image_.size();
  QPixmap pixels = QPixmap::fromImage(image_.scaled(shown, Qt::KeepAspectRatio, Qt::SmoothTransformation));
  pixels.setDevicePixelRatio(sharpness);
  picture_->setPixmap(pixels);
}

void PreviewPanel::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  fit_picture();
}

void PreviewPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space) {
    close();
  } else {
    QDialog::keyPressEvent(event);
  }
}

}  // namespace tarnby
