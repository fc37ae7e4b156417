#pragma once

#include "app/parts/screen.h"
#include "ui/push_button.h"

class QLabel;

namespace tarnby {

/// The parts of a sheet that asks one thing.
struct Question {
  QLabel* words;
  PushButton* refuse;
  PushButton* accept;
};

/// Fills a sheet's content: its window title as a heading, the words, and two buttons. Refusing closes the sheet.
Question ask(Screen& sheet, const QString& words, const QString& refuse, const QString& accept);

}  // namespace tarnby
