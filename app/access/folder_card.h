#pragma once

#include <QWidget>

class QAbstractButton;
class QLabel;

namespace tarnby {

/// A card that asks for one folder: a picture of it, its name, why it is needed, how it stands, and the button that
/// gives it.
class FolderCard : public QWidget {
  Q_OBJECT
 public:
  enum class Picture { home, applications };
  enum class Tone { quiet, attention };

  FolderCard(Picture picture, const QString& title, const QString& why, QAbstractButton* button, QWidget* parent);

  /// How the folder stands, in words below those that tell why it is needed.
  QLabel* state;

  void show_state(const QString& words, Tone tone);
  /// A path as a line of the card, short enough for it.
  QString line_of(const QString& path) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Picture picture_;
  QAbstractButton* button_;
};

}  // namespace tarnby
