#pragma once

#include <QScrollBar>

class QAbstractScrollArea;

namespace tarnby {

/// A slim scroll bar without arrows and groove, that grows a little under the pointer.
class Scroller : public QScrollBar {
  Q_OBJECT
 public:
  Scroller(Qt::Orientation orientation, QWidget* parent);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QRectF handle() const;
};

/// Gives `area` a scroller for each direction and takes its frame and ground away, so that what is behind it shows.
void use_scrollers(QAbstractScrollArea* area);

}  // namespace tarnby
