#include "app/desktop/linux/desktop_portal.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include "ui/motion.h"

namespace tarnby {

void ask_portal_for_stillness(QApplication& application) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
  call.setAutoStartService(false);
  call << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations");
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), &application);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    watcher->deleteLater();
    if (reply.isError()) return;
    QVariant value = reply.value().variant();
    // Older portals wrap the value twice.
    if (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    if (value.isValid() && !value.toBool()) motion::set_reduced(true);
  });
}

}  // namespace tarnby
