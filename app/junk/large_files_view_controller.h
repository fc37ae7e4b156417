#pragma once

#include <atomic>
#include <memory>

#include "app/junk/large_files_model.h"
#include "app/outline_view.h"
#include "app/screen.h"
#include "ui/pulse_view.h"
#include "ui/push_button.h"

class QLabel;
class QMenu;
class QSlider;

namespace tarnby {

/// The least size, in bytes, that the slider's position stands for.
std::int64_t large_file_size_at_index(int position);

/// The sheet in which a person picks large files: all of at least the size that the slider says, by kind. The search
/// runs once in a launch.
class LargeFilesViewController : public Screen {
  Q_OBJECT
 public:
  explicit LargeFilesViewController(AppContext& context);

  AppSettings& app_settings;
  OutlineView* outlineview;
  QSlider* slider;
  PushButton* submitt_button;  // the spelling is the name it is known by
  PulseView* progress;
  QLabel* overall_larges_label;
  QLabel* selected_larges_label;
  LargeFileRows outline_items;
  LargeFileList founded_files;
  LargeFileList selected_files;
  std::uint64_t overall_selected_size = 0;

  PushButton* cancel_button;
  QLabel* least_size_label;
  QMenu* file_menu;

  /// The slider was moved: other groups, and nothing ticked.
  void larges_file();
  void select_file(const QModelIndex& file, bool on);
  void show_in_finder(const QModelIndex& file);
  void preview(const QModelIndex& file);
  void cancel() { Q_EMIT dismissed(); }
  /// Makes the ticked files the engine's category, and tells how the sum changes.
  void submit();

 protected:
  void will_retire() override;

 private:
  void build();
  QLayout* size_line();
  QWidget* outline();
  void make_menu();
  QLayout* bottom_line();
  void start_search();
  void show_result();
  void show_selection();

  static constexpr QSize outline_size_{600, 300};
  LargeFilesModel::Ticked ticked_;
  LargeFilesModel* model_ = nullptr;
  QPersistentModelIndex menu_row_;
  bool searching_ = true;
  /// Set when nobody waits for the search any more: it ends early, and what it found is not kept.
  std::shared_ptr<std::atomic<bool>> given_up_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace tarnby
