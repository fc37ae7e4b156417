#pragma once

#include "app/parts/screen.h"
#include "ui/page_turner.h"
#include "ui/push_button.h"

namespace tarnby {

/// One page of the guide to full disk access.
class GuidePage : public Screen {
  Q_OBJECT
 public:
  /// @param number 1 to 3.
  GuidePage(AppContext& context, int number);

  /// Null on the first and on the last page.
  PushButton* back_button = nullptr;
  PushButton* next_button = nullptr;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int number_;
};

/// Turns the pages of the guide.
class PrivacyFullDiskPageController : public Screen {
  Q_OBJECT
 public:
  explicit PrivacyFullDiskPageController(AppContext& context);

  PageTurner* pages;
};

}  // namespace tarnby
