#include "tools/gallery/stage.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <future>
#include <map>
#include <mutex>
#include <optional>

#include "app/desktop/folder_chooser.h"
#include "engine/smart_selection.h"
#include "platform/platform.h"
#include "platform/workspace.h"
#include "tools/bundle_files.h"

namespace tarnby {

namespace {

Session invented_session(const QTemporaryDir& folder) {
  const std::string path = folder.path().toStdString();
  return {"ada", Url::file(path + "/ada"), Url(), {}, "C", "C", {}, {}, {Url::file(path + "/programs")}};
}

struct Entry {
  const char* name;
  std::int64_t kilobytes;
  /// Of the application's icon; without it what has no extension is a folder.
  std::optional<Color> color = {};
};

void write_file(const Url& file, const std::string& content) {
  QDir().mkpath(QString::fromStdString(file.parent().path()));
  QFile opened(QString::fromStdString(file.path()));
  if (opened.open(QIODevice::WriteOnly)) opened.write(content.data(), static_cast<qint64>(content.size()));
}

Image icon_of(const Url& home, const Url& place, const Entry& entry) {
  if (!entry.color) {
    if (place.path_extension().empty()) QDir().mkpath(QString::fromStdString(place.path()));
    return Image::icon_of(place);
  }
  const Url icon = home.appending("Applications").appending(std::string(entry.name) + ".icns");
  write_file(icon, icon_file(*entry.color));
  return Image::file(icon);
}

std::shared_ptr<CacheItem> cache_entry(const Url& home, const Entry& entry) {
  auto item = std::make_shared<CacheItem>();
  item->url = home.appending("Library/Caches").appending(entry.name);
  item->label = entry.name;
  item->image = icon_of(home, item->url, entry);
  item->size = entry.kilobytes * 1000;
  return item;
}

std::shared_ptr<LargeFile> file_entry(const Url& folder, const Entry& entry) {
  const Url place = folder.appending(entry.name);
  icon_of(folder, place, entry);
  return LargeFile::init_with_file_url(place, entry.name, entry.kilobytes * 1000, "");
}

std::shared_ptr<RemainderItem> remainder_entry(const Url& home, const Entry& entry) {
  auto item = std::make_shared<RemainderItem>();
  item->label = entry.name;
  item->size = entry.kilobytes * 1000;
  item->files = {home.appending("Library/Application Support").appending(entry.name)};
  return item;
}

std::shared_ptr<CleanerItem> client_entry(const Url& home, const Entry& entry) {
  auto item = std::make_shared<CleanerItem>();
  item->type = entry.name;
  item->size = entry.kilobytes * 1000;
  item->files = {home.appending("Library").appending(entry.name)};
  return item;
}

/// Files invented entries as the scan would.
void fill(Cleaner& cleaner, const std::map<std::string_view, std::vector<CleanerEntry>>& entries) {
  cleaner.smart_outline_items.clear();
  cleaner.smart_menu_items.clear();
  cleaner.total_smart_size = 0;
  for (const Category& category : smart_categories()) {
    auto item = std::make_shared<CleanerItem>();
    item->type = category.type;
    if (const auto found = entries.find(category.type); found != entries.end()) item->items = found->second;
    for (const CleanerEntry& entry : item->items) item->size += size_of(entry);
    cleaner.*category.item = item;
    cleaner.*category.smart.total = item->size;
    const auto row =
        SmartOutlineItem::init_with_label(std::string(category.label), item->size, std::string(category.type), {});
    cleaner.*category.smart.outline = row;
    cleaner.smart_outline_items.push_back(row);
    if (!category.smart.header.empty()) cleaner.smart_menu_items.emplace_back(std::string(category.smart.header));
    cleaner.smart_menu_items.emplace_back(row);
    cleaner.total_smart_size += item->size;
  }
}

}  // namespace

/// Keeps everything until it is asked for.
class Stage::Queue : public MainQueue {
 public:
  void async(Work work) override {
    const std::lock_guard lock(mutex);
    arrived.push_back(std::move(work));
  }
  void after(std::chrono::milliseconds, Work work) override { delayed.push_back(std::move(work)); }
  std::mutex mutex;
  std::vector<Work> arrived;
  std::vector<Work> delayed;
};

class Stage::NoWorkspace : public Workspace {
 public:
  void reveal(std::span<const Url>) override {}
  void launch(const Url&) override {}
  void preview(const Url&) override {}
  void show_information(const Url&) override {}
  void open_link(std::string_view) override {}
};

class Stage::NoChooser : public FolderChooser {
 public:
  void choose(QWidget*, const FolderRequest&, Done) override {}
};

Stage::Stage(Localization localization, QSize size)
    : queue_(std::make_unique<Queue>()),
      workspace_(std::make_unique<NoWorkspace>()),
      chooser_(std::make_unique<NoChooser>()),
      window_(std::make_unique<QWidget>()) {
  QDir(folder_.path()).mkdir(QStringLiteral("ada"));
  platform_ = std::make_unique<Platform>(invented_session(folder_), open_settings_file(Url()), *queue_,
                                         std::move(localization));
  delegate_ = std::make_unique<AppDelegate>(platform_->app_settings, [] {});
  application_ = std::make_unique<Application>(*platform_);
  cache_ = std::make_unique<Cache>(*platform_, *application_);
  remainders_ = std::make_unique<Remainders>(*platform_, *cache_);
  cleaner_ = std::make_unique<Cleaner>(*platform_, *cache_, *remainders_);
  cleaner_->url_home = home();
  context_ =
      std::unique_ptr<AppContext>(new AppContext{*platform_, clock_, *delegate_, background_work_, background_work_,
                                                 *workspace_, *chooser_, [this]() -> Cleaner& { return *cleaner_; }});
  window_->resize(size);
  background_ = new BackgroundView(clock_, window_.get());
  background_->setGeometry(window_->rect());
}

Stage::~Stage() {
  screen_.reset();
  background_work_.finish();
}

Url Stage::home() const {
  return Url::file(folder_.path().toStdString() + "/ada");
}

Screen* Stage::put(std::unique_ptr<Screen> screen, void (BackgroundView::*change)()) {
  screen_ = std::move(screen);
  screen_->setParent(window_.get());
  screen_->setGeometry(window_->rect());
  screen_->view_will_appear();
  screen_->show();
  if (change != nullptr) (background_->*change)();
  window_->show();
  screen_->view_did_appear();
  pass(2000);
  return screen_.get();
}

void Stage::pass(int milliseconds) {
  constexpr int step = 50;
  for (int passed = 0; passed < milliseconds; passed += step) clock_.pass(step);
  QApplication::processEvents();
}

void Stage::finish_background() {
  std::promise<void> done;
  background_work_.async([&] { done.set_value(); });
  done.get_future().wait();
}

void Stage::run_main_queue() {
  for (auto& work : std::exchange(queue_->arrived, {})) work();
  pass(1000);
}

void Stage::run_delayed() {
  for (auto& work : std::exchange(queue_->delayed, {})) work();
  pass(1000);
}

void pretend_smart_scan(Cleaner& cleaner) {
  const Url& home = cleaner.url_home;
  const Url logs = home.appending("Library/Logs");
  const Url downloads = home.appending("Downloads");
  const Url trash = home.appending(".Trash");
  fill(cleaner,
       {{"caches",
         {cache_entry(home, {"Firefox", 1'400'000, Color{240, 130, 50}}),
          cache_entry(home, {"Sketchbook", 1'120'000, Color{160, 110, 220}}),
          cache_entry(home, {"Terminal tools", 388'400})}},
        {"logs", {file_entry(logs, {"DiagnosticReports", 312'500}), file_entry(logs, {"Sketchbook", 100'200})}},
        {"remainders",
         {remainder_entry(home, {"Archiver by Oldmill", 820'000}),
          remainder_entry(home, {"Painter by Bluefern", 200'000})}},
        {"browsers", {client_entry(home, {"mozilla", 433'100}), client_entry(home, {"safari", 300'000})}},
        {"mails", {client_entry(home, {"apple-mail", 512'000}), client_entry(home, {"spark", 168'000})}},
        {"installs",
         {file_entry(downloads, {"Sketchbook 9.dmg", 640'200}), file_entry(downloads, {"Tools.pkg", 256'000})}},
        {"trash", {file_entry(trash, {"Old drafts", 264'000})}}});
}

void pretend_clean_home(Cleaner& cleaner) {
  fill(cleaner, {});
}

}  // namespace tarnby
