#pragma once

#include "app/junk/junk_rows.h"
#include "app/parts/screen.h"
#include "ui/page_turner.h"

namespace tarnby {

/// The two category pages, side by side.
class PageController : public Screen {
  Q_OBJECT
 public:
  explicit PageController(AppContext& context);

  PageTurner* pages;
};

/// What is told about the categories of one page, a page each.
class AboutPageController : public Screen {
  Q_OBJECT
 public:
  PageTurner* pages;

 protected:
  AboutPageController(AppContext& context, std::span<const JunkRow> rows);
};

class ApplicationsPageController : public AboutPageController {
  Q_OBJECT
 public:
  explicit ApplicationsPageController(AppContext& context) : AboutPageController(context, applications_rows()) {}
};

class MediaPageController : public AboutPageController {
  Q_OBJECT
 public:
  explicit MediaPageController(AppContext& context) : AboutPageController(context, media_rows()) {}
};

}  // namespace tarnby
