#include "app/desktop/linux/desktop_workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QWidget>

#include "app/desktop/information_window.h"
#include "app/desktop/preview_panel.h"
#include "app/desktop/resources.h"
#include "platform/platform.h"
#include "ui/qt_text.h"

namespace tarnby {

QUrl DesktopWorkspace::file_url(const Url& entry) {
  const QByteArray path = QByteArray::fromStdString(entry.path());
  return QUrl::fromEncoded("file://" + path.toPercentEncoding("/"), QUrl::StrictMode);
}

void DesktopWorkspace::reveal(std::span<const Url> entries) {
  if (entries.empty()) return;
  const auto open_folder = [this, folder = file_url(entries.front().parent())] { open(folder); };
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return open_folder();
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
      QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
  QStringList items;
  for (const Url& entry : entries) items << QString::fromLatin1(file_url(entry).toEncoded());
  call << items << QString();
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), window_);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, open_folder] {
    if (QDBusPendingReply<>(*watcher).isError()) open_folder();
    watcher->deleteLater();
  });
}

/// Used by the I/O queue alone: rows have a reader of their own, which no measurement holds up.
std::shared_ptr<IconReader> DesktopWorkspace::icons() {
  if (!icons_) icons_ = std::make_shared<IconReader>(platform_.files);
  return icons_;
}

void DesktopWorkspace::preview(const Url& entry) {
  if (!preview_) {
    preview_ = new PreviewPanel(platform_, io_queue_, icons(), window_);
    preview_->setAttribute(Qt::WA_DeleteOnClose);
  }
  preview_->show_entry(entry);
  preview_->show();
  preview_->raise();
  preview_->activateWindow();
}

void DesktopWorkspace::show_information(const Url& entry) {
  auto* information = new InformationWindow(platform_, io_queue_, icons(), entry, window_);
  information->setAttribute(Qt::WA_DeleteOnClose);
  information->show();
}

void DesktopWorkspace::open(const QUrl& url) const {
  if (!QDesktopServices::openUrl(url)) tell_(url.toDisplayString(QUrl::PreferLocalFile));
}

void DesktopWorkspace::launch(const Url& application) {
  const auto path = QString::fromLocal8Bit(QByteArray::fromStdString(application.path()));
  const QFileInfo info(path);
  if (info.isFile() && info.isExecutable() && QProcess::startDetached(path, {})) return;
  open(file_url(application));
}

void DesktopWorkspace::open_link(std::string_view address) {
  const QString text = to_qstring(address);
  if (text.contains(u':')) {
    open(QUrl(text));
  } else {
    open(QUrl::fromLocalFile(page_path(text, platform_.localization.language())));
  }
}

}  // namespace tarnby
