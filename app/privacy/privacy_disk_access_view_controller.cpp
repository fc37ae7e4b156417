#include "app/privacy/privacy_disk_access_view_controller.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <cmath>
#include <numbers>

#include "app/parts/layouts.h"
#include "app/parts/links.h"
#include "app/parts/screen_catalogue.h"
#include "leftovers/full_disk_access.h"
#include "platform/platform.h"
#include "platform/workspace.h"
#include "ui/text_label.h"

namespace tarnby {

namespace {

constexpr QSize window_size(560, 420);
constexpr int shake_ms = 420;
constexpr double shake_width = 14;
constexpr double shakes = 3;

}  // namespace

PrivacyDiskAccessViewController::PrivacyDiskAccessViewController(AppContext& context)
    : Screen(context),
      appDelegate(context.appDelegate),
      app_settings(context.settings()),
      shake_(context.clock, 0, [this] { move_window(); }) {
  setWindowTitle(context.text("Full disk access"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 3 * theme::grid);
  pages = new PrivacyFullDiskPageController(context);
  layout->addWidget(pages, 1);
  missing_label = text_label({}, theme::Type::detail, theme::light_text, this);
  layout->addWidget(missing_label);
  settings_button = new PushButton(context.text("Open settings"), ButtonKind::light, this);
  confirm_button = new PushButton(context.text("Check again"), ButtonKind::light, this);
  layout->addLayout(centred_row({settings_button, confirm_button}));
  connect(settings_button, &QAbstractButton::clicked, this, &PrivacyDiskAccessViewController::open_settings);
  connect(confirm_button, &QAbstractButton::clicked, this, &PrivacyDiskAccessViewController::confirm_disk_access);
}

void PrivacyDiskAccessViewController::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), theme::light_background);
}

/// The probe reads a file, so it runs beside the main thread; its answer comes back here.
void PrivacyDiskAccessViewController::confirm_disk_access() {
  confirm_button->setEnabled(false);
  look_up(
      context_.io_queue, [&platform = context_.platform] { return FullDiskAccess(platform).test(); },
      [this](DiskAccess access) {
        confirm_button->setEnabled(true);
        if (access == DiskAccess::granted) Q_EMIT dismissed();
        if (access == DiskAccess::denied) shake_window();
      });
}

void PrivacyDiskAccessViewController::open_settings() {
  context_.workspace.open_link(links::privacy_settings);
}

/// From right to left and back to where it was; without motion the words say it alone.
void PrivacyDiskAccessViewController::shake_window() {
  missing_label->setText(context_.text("Access is still missing."));
  if (!shake_.moving()) rest_ = window()->pos();
  shake_.jump_to(0);
  shake_.move_to(1, shake_ms, QEasingCurve::Linear);
}

void PrivacyDiskAccessViewController::move_window() {
  const double fading = 1 - shake_.value();
  const double way = std::sin(shake_.value() * shakes * 2 * std::numbers::pi) * shake_width * fading;
  if (isVisible()) window()->move(rest_ + QPoint(static_cast<int>(std::lround(way)), 0));
}

GuideWindow::GuideWindow(AppContext& context, QWidget* parent) : QDialog(parent) {
  content = new PrivacyDiskAccessViewController(context);
  setWindowTitle(content->windowTitle());
  setFixedSize(window_size);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(content);
  connect(content, &Screen::dismissed, this, &QWidget::close);
  content->pages->pages->page(0)->setFocus();
}

GuideWindow* GuideWindow::present(AppContext& context, QWidget* parent) {
  for (GuideWindow* open : parent->findChildren<GuideWindow*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (!open->isVisible()) continue;  // on its way out
    open->raise();
    return open;
  }
  auto* guide = new GuideWindow(context, parent);
  guide->setAttribute(Qt::WA_DeleteOnClose);
  guide->show();
  return guide;
}

}  // namespace tarnby
