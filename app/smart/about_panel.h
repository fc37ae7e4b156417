#pragma once

#include <string_view>

#include "app/parts/screen.h"

namespace tarnby {

/// Tells what one category is and what removing it means.
class AboutPanel : public Screen {
  Q_OBJECT
 public:
  AboutPanel(AppContext& context, std::string_view type);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string_view type_;
};

}  // namespace tarnby
