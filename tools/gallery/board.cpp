#include "tools/gallery/board.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>

#include "ui/theme.h"

namespace tarnby {

Board::Board() : ground_(std::make_unique<QWidget>()), grid_(new QGridLayout(ground_.get())) {
  QPalette colors = ground_->palette();
  colors.setColor(QPalette::Window, theme::background);
  ground_->setPalette(colors);
  ground_->setAutoFillBackground(true);
  grid_->setSpacing(2 * theme::grid);
  grid_->setContentsMargins(3 * theme::grid, 3 * theme::grid, 3 * theme::grid, 3 * theme::grid);
}

void Board::place(QWidget* widget, const QString& state) {
  const int row = 2 * (count_ / columns_);
  const int column = count_++ % columns_;
  grid_->addWidget(widget, row, column, Qt::AlignCenter);
  auto* words = new QLabel(state, ground());
  words->setFont(theme::font(theme::Type::tiny));
  QPalette colors = words->palette();
  colors.setColor(QPalette::WindowText, theme::secondary);
  words->setPalette(colors);
  grid_->addWidget(words, row + 1, column, Qt::AlignHCenter | Qt::AlignTop);
}

void Board::show() {
  ground_->resize(grid_->sizeHint());
  ground_->show();
  QApplication::setActiveWindow(ground_.get());
  ground_->setFocus();  // or the first button would have it
  QApplication::processEvents();
}

}  // namespace tarnby
