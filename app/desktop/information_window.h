#pragma once

#include <QDialog>
#include <memory>

#include "app/icons/icon_reader.h"

class QFormLayout;
class QLabel;

namespace tarnby {

class BackgroundQueue;
class Platform;

/// Tells what is known of one entry: kind, size, place, when it changed. The size of a folder is measured in the
/// background.
class InformationWindow : public QDialog {
  Q_OBJECT
 public:
  /// @param icons reads the entry's icon; used by the I/O queue alone.
  InformationWindow(Platform& platform, BackgroundQueue& io_queue, std::shared_ptr<IconReader> icons, const Url& entry,
                    QWidget* parent);

  /// What people call that kind of entry.
  static QString kind_text(const Platform& platform, EntryKind kind);

 private:
  struct Facts {
    QString kind;
    QString size;
    QString changed;
  };
  static Facts look_at(Platform& platform, const Url& entry);
  QLabel* add_line(QFormLayout* form, const char* name, const QString& value);
  QString text(const char* english) const;

  Platform& platform_;
  std::shared_ptr<int> here_ = std::make_shared<int>();
};

}  // namespace tarnby
