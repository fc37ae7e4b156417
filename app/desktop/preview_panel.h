#pragma once

#include <QDialog>
#include <QImage>
#include <memory>

#include "app/icons/icon_reader.h"

class QLabel;
class QPlainTextEdit;
class QStackedLayout;

namespace tarnby {

class BackgroundQueue;
class Platform;

/// A quick look at one entry: a picture, the beginning of a text, what a folder holds, or what is known of anything
/// else. Space and Escape close it. What it shows is read in the background.
class PreviewPanel : public QDialog {
  Q_OBJECT
 public:
  /// @param icons reads the icon of what cannot be looked into; used by the I/O queue alone.
  PreviewPanel(Platform& platform, BackgroundQueue& io_queue, std::shared_ptr<IconReader> icons, QWidget* parent);

  /// Shows another entry.
  void show_entry(const Url& entry);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Found {
    QImage picture;
    QString text;
    QString facts;
    QImage icon;
  };
  static Found look_at(Platform& platform, IconReader& icons, PictureProcess& pictures, const Url& entry,
                       double sharpness);
  void show_found(const Found& found);
  void fit_picture();

  Platform& platform_;
  BackgroundQueue& io_queue_;
  std::shared_ptr<IconReader> icons_;
  /// Used by the I/O queue alone, like the icons; it ends with the last task that asks it.
  std::shared_ptr<PictureProcess> pictures_;
  QStackedLayout* pages_;
  QLabel* picture_;
  QPlainTextEdit* text_;
  QWidget* told_;
  QLabel* icon_;
  QLabel* facts_;
  QImage image_;
  /// What was asked for last; an answer for anything else is too late.
  std::shared_ptr<int> asked_;
};

}  // namespace tarnby
