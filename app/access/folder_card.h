#pragma once

#include <QWidget>

class QAbstractButton;

namespace tarnby {

/// A card that asks for one folder: a picture of it, its name, why it is needed, and the button that gives it.
class FolderCard : public QWidget {
  Q_OBJECT
 public:
  enum class Picture { home, applications };

  FolderCard(Picture picture, const QString& title, const QString& why, QAbstractButton* button, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Picture picture_;
};

}  // namespace tarnby
