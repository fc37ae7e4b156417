#pragma once

#include <QWidget>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "app/parts/app_context.h"
#include "app/parts/screen.h"
#include "app/parts/screen_catalogue.h"
#include "ui/background_view.h"

namespace tarnby {

/// The content of the one window: two layers, each holding one screen at most, over the moving background. Screens are
/// put into the layers in answer to notifications; see the table in the source.
class ViewController : public QWidget {
  Q_OBJECT
 public:
  enum class Layer { content, overlay };

  /// One notification that shows a screen.
  struct Navigation {
    std::string_view notification;
    const ScreenCatalogue& (*catalogue)();
    std::string_view identifier;
    Layer layer;
    /// What the background does; null: nothing.
    void (BackgroundView::*background)();
    /// Posted, and so answered, before the screen is made; empty: nothing.
    std::string_view first;
    /// How long after that the screen is made; 0: at once.
    int delay_ms = 0;
    /// Leaves the line "remove" in the system's log when it takes another screen's place.
    bool logs_removal = false;
    /// Of a scan: called when that may begin, before anything else happens. Nothing at all happens while another scan
    /// or a removal is under way. Null for what is no scan.
    void (*begin_scan)(AppContext& context) = nullptr;
  };
  /// In the order in which they are observed.
  static std::span<const Navigation> navigation();

  /// Shows the home screen when both grants lead to the folders that are meant, else the screen that asks for them.
  ViewController(AppContext& context, QWidget* parent);
  ~ViewController() override;

  AppSettings& app_settings;
  QWidget* containerView;  // the content layer
  std::unique_ptr<Screen> viewcontrollerC;
  std::unique_ptr<Screen> viewcontrollerA;
  QWidget* popview;  // the overlay layer, above the content
  const ScreenCatalogue& smart_storyboard;
  BackgroundView* animationView;

  void sandbox_end_anim_complete() { clear(Layer::overlay); }
  void home_end_anim_complete() { clear(Layer::content); }
  void scan_end_anim_complete() { clear(Layer::overlay); }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void answer(const Navigation& row);
  void show(const Navigation& row, EngineTurn::Held turn);
  void clear(Layer layer);
  void take_away(std::unique_ptr<Screen>& screen);
  std::unique_ptr<Screen>& screen_of(Layer layer) {
    return layer == Layer::content ? viewcontrollerC : viewcontrollerA;
  }
  QWidget* view_of(Layer layer) { return layer == Layer::content ? containerView : popview; }
  void observe(std::string_view notification, std::function<void()> observer);

  AppContext& context_;
  /// Of the scan whose screen is in the overlay layer.
  EngineTurn::Held turn_;
  std::vector<NotificationCenter::Token> observed_;
  std::shared_ptr<const bool> here_ = std::make_shared<const bool>(true);
};

}  // namespace tarnby
