#pragma once

#include <atomic>
#include <memory>

#include "app/junk/large_files_model.h"
#include "app/parts/outline_view.h"
#include "app/parts/screen.h"
#include "ui/pulse_view.h"
#include "ui/push_button.h"
#include "ui/step_slider.h"

class QLabel;
class QMenu;
class QVBoxLayout;

namespace tarnby {

/// The least size, in bytes, that the slider's position stands for.
std::int64_t large_file_size_at_index(int position);

/// The sheet in which a person picks large files: all of at least the size that the slider says, by kind. The search
/// runs once in a launch; opened again, the sheet shows what is known at once, and drops what is gone meanwhile.
class LargeFilesViewController : public Screen {
  Q_OBJECT
 public:
  explicit LargeFilesViewController(AppContext& context);

  AppSettings& app_settings;
  OutlineView* outlineview;
  StepSlider* slider;
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
  QLabel* count_label;
  /// Stands in the place of the groups when there are none.
  QLabel* nothing_label;
  /// What was chosen before, as long as nothing else is.
  QLabel* chosen_label;

  /// The slider was moved: other groups, and nothing ticked.
  void larges_file();
  void select_file(const QModelIndex& file, bool on);
  /// All files of a group.
  void select_group(const QModelIndex& group, bool on);
  void show_in_finder(const QModelIndex& file);
  void preview(const QModelIndex& file);
  void cancel() { Q_EMIT dismissed(); }
  /// Makes the ticked files the engine's category, and tells how the sum changes.
  void submit();

  QSize sizeHint() const override;

 protected:
  void will_retire() override;

 private:
  /// What is found out in the background: what another category lists, too, and what is gone.
  struct Details {
    AlsoListed also_listed;
    LargeFilesModel::Ticked gone;
  };

  void build();
  QLayout* heading();
  void make_slider();
  QWidget* list();
  QWidget* make_outline(QWidget* parent);
  void make_menu();
  QLayout* bottom_line();
  void search();
  void show_known();
  void look_again();
  void show_found();
  void show_details(const Details& details);
  /// Shows the files of at least that many bytes.
  void show_files(std::int64_t least);
  void note_tick(const std::shared_ptr<LargeFile>& file, bool on);
  void show_selection();
  QString nothing_text(std::int64_t least) const;

  LargeFilesModel::Ticked ticked_;
  LargeFilesModel* model_ = nullptr;
  QPersistentModelIndex menu_row_;
  bool searching_ = false;
  /// Set when nobody waits for the search any more: it ends early, and what it found is not kept.
  std::shared_ptr<std::atomic<bool>> given_up_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace tarnby
