#pragma once

#include <QPointer>
#include <QUrl>
#include <functional>
#include <memory>

#include "platform/queues.h"
#include "platform/workspace.h"

class QWidget;

namespace tarnby {

class IconReader;
class InformationWindow;
class Platform;
class PreviewPanel;

/// The workspace of a freedesktop.org desktop: a file manager that answers on the session bus, the desktop's openers,
/// and a preview panel and an information window of our own.
class DesktopWorkspace final : public Workspace {
 public:
  /// @param io_queue reads what the panels show.
  DesktopWorkspace(Platform& platform, BackgroundQueue& io_queue) : platform_(platform), io_queue_(io_queue) {}

  /// The window that panels belong to.
  void set_window(QWidget* window) { window_ = window; }

  /// To be called with what was to be opened when the desktop has nothing that opens it.
  void when_nothing_opens(std::function<void(const QString&)> tell) { tell_ = std::move(tell); }

  /// org.freedesktop.FileManager1.ShowItems; where no file manager answers, the first one's folder is opened.
  void reveal(std::span<const Url> entries) override;
  void preview(const Url& entry) override;
  void show_information(const Url& entry) override;
  /// A program is run; anything else is opened with what the desktop has for it.
  void launch(const Url& application) override;
  /// An address without a scheme is a file among the program's own resources.
  void open_link(std::string_view address) override;

  /// The file URL with every byte that needs it escaped, also those that are no UTF-8.
  static QUrl file_url(const Url& entry);

 private:
  void open(const QUrl& url) const;
  std::shared_ptr<IconReader> icons();

  Platform& platform_;
  BackgroundQueue& io_queue_;
  QPointer<QWidget> window_;
  std::shared_ptr<IconReader> icons_;
  QPointer<PreviewPanel> preview_;
  std::function<void(const QString&)> tell_ = [](const QString&) {};
};

}  // namespace tarnby
