#pragma once

#include <QPointer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/parts/app_context.h"
#include "app/parts/look_up.h"

namespace tarnby {

/// What a catalogue makes: a screen of the window, a sheet's or a popover's content. It leaves by posting a
/// notification, never by making another screen.
///
/// When it has been taken away (`retire`), nothing that it observed, delayed or waited for reaches it any more, even
/// while it still exists.
class Screen : public QWidget {
  Q_OBJECT
 public:
  explicit Screen(AppContext& context);
  ~Screen() override;

  /// Puts it where it is to be seen, without showing it yet.
  void put_into(QWidget* parent);
  /// Gives the keyboard to the control that asked for it while the screen was made; false when none did. To be called
  /// once it is shown.
  bool take_keyboard(Qt::FocusReason reason = Qt::OtherFocusReason);

  /// Called before and after it is put where it is seen.
  virtual void view_will_appear() {}
  virtual void view_did_appear() {}

  /// Escape was pressed while it is shown as a sheet or popover; closes that.
  virtual void escaped() { Q_EMIT dismissed(); }

  /// It is about to be deleted, and with it the screens within it; called once, by whoever showed it.
  void retire();

 Q_SIGNALS:
  /// Asks whoever shows it as a sheet to close that.
  void dismissed();

 protected:
  using Work = std::function<void()>;

  /// Its last chance to stop what it started. Nothing reaches it any more.
  virtual void will_retire() {}

  void post(std::string_view notification) { context_.notifications().post(notification); }
  void post_number(std::string_view notification, std::int64_t number) {
    context_.notifications().post(notification, number);
  }
  void observe(std::string notification, Work observer);
  void observe_number(std::string notification, std::function<void(std::int64_t)> observer);
  /// Runs work on the main queue after that time, if this screen is still there.
  void after(std::chrono::milliseconds delay, Work work);
  /// Runs work again and again, each time after that time, until it returns false.
  void every(std::chrono::milliseconds interval, std::function<bool()> work);
  /// Work that does nothing any more once this screen is gone. To be run on the main thread; may be kept anywhere.
  template <class Function>
  auto while_here(Function work) {
    return [here = here(), work = std::move(work)](const auto&... values) {
      if (!here.expired()) work(values...);
    };
  }
  /// Runs `look` on that queue and brings its value home: `then` gets it on the main thread, if this screen is still
  /// there. `look` owns what it uses, or refers to what the context holds; it never uses the screen.
  template <class Look, class Then>
  void look_up(BackgroundQueue& queue, Look look, Then then) {
    tarnby::look_up(queue, context_.main_queue(), std::move(look), while_here(std::move(then)));
  }
  /// Expires when this screen goes, before `will_retire`. Any thread may ask.
  std::weak_ptr<const bool> here() const { return here_; }
  /// Shows what `identifier` of a catalogue makes as a sheet over the window.
  void present_sheet(std::unique_ptr<Screen> content);
  /// Shows a sheet that nobody asked for, after that time. It never comes over another one, or beside another window of
  /// the program: then it waits as long again.
  void offer_sheet(std::chrono::milliseconds delay, std::function<std::unique_ptr<Screen>()> make);

  AppContext& context_;

 private:
  QPointer<QWidget> first_focus_;
  std::shared_ptr<const bool> here_ = std::make_shared<const bool>(true);
  std::vector<NotificationCenter::Token> observed_;
};

}  // namespace tarnby
