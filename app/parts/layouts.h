#pragma once

#include <initializer_list>

class QHBoxLayout;
class QVBoxLayout;
class QWidget;

/// The few arrangements that screens and sheets share, lengths in pixels. Main thread.
namespace tarnby {

/// How what a screen leaves free is shared between the parts above and below its contents, which stand a little lower
/// than its middle: the window's title bar is above them.
struct FreeRoom {
  int above;
  int below;
};
inline constexpr FreeRoom around_ring = {10, 7};

/// Around and between the panels of a page that is full of things to look through.
inline constexpr int panel_gap = 20;
/// From the sides of such a page to the words on its panels.
inline constexpr int page_edge = 28;
/// Between parts that belong closer together than two steps of the grid, and are more than one apart.
inline constexpr int close_gap = 12;

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
