#include "app/parts/layouts.h"

#include <QVBoxLayout>

#include "ui/text_label.h"

namespace tarnby {

namespace {

QVBoxLayout* column(QWidget* widget, int edge, int bottom) {
  auto* layout = new QVBoxLayout(widget);
  layout->setContentsMargins(edge * theme::grid, edge * theme::grid, edge * theme::grid, bottom * theme::grid);
  return layout;
}

QVBoxLayout* headed_column(QWidget* sheet, int edge, int bottom) {
  QVBoxLayout* layout = column(sheet, edge, bottom);
  layout->setSpacing(theme::grid);
  layout->addWidget(text_label(sheet->windowTitle(), theme::Type::heading, theme::text, sheet, theme::Weight::strong));
  return layout;
}

}  // namespace

QVBoxLayout* screen_column(QWidget* screen) {
  return column(screen, 2, 2);
}

QVBoxLayout* sheet_column(QWidget* sheet) {
  return headed_column(sheet, 4, 3);
}

QVBoxLayout* wide_sheet_column(QWidget* sheet) {
  return headed_column(sheet, 3, 3);
}

QHBoxLayout* centred_row(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  row->setSpacing(theme::grid);
  row->addStretch();
  for (QWidget* widget : widgets) row->addWidget(widget);
  row->addStretch();
  return row;
}

void keep_place_when_hidden(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

}  // namespace tarnby
