#pragma once

#include <initializer_list>

class QHBoxLayout;
class QVBoxLayout;
class QWidget;

/// The few arrangements that screens and sheets share. Main thread.
namespace tarnby {

/// Lets a widget's contents stand below one another, with a screen's margins.
QVBoxLayout* screen_column(QWidget* screen);

/// The same for a sheet's content; it begins with its window title as a heading.
QVBoxLayout* sheet_column(QWidget* sheet);

/// The same for a sheet that is full of something to look through, which stands closer to the edges.
QVBoxLayout* wide_sheet_column(QWidget* sheet);

/// Widgets side by side in the middle.
QHBoxLayout* centred_row(std::initializer_list<QWidget*> widgets);

/// What stands below or beside a widget that hides does not move.
void keep_place_when_hidden(QWidget* widget);

}  // namespace tarnby
