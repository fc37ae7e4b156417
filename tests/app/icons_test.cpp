#include "app/icons/icons.h"

#include <gmock/gmock.h>

#include <QPainter>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "app/smart/smart_clean_view_controller.h"
#include "tests/app/test_window.h"

namespace tarnby {
namespace {

using test::TestPlatform;
using test::TestWindow;

constexpr Color red = {200, 40, 40};
constexpr int side = 40;

QColor middle_of(const QImage& icon) {
  return icon.pixelColor(icon.width() / 2, icon.height() / 2);
}
QColor to_qcolor(Color color) {
  return {color.red, color.green, color.blue};
}

const std::string one_red_pixel_as_gif("GIF87a\1\0\1\0\x80\0\0\xC8\x28\x28\0\0\0,\0\0\0\0\1\0\1\0\0\2\2\x44\1\0;", 35);

std::string with_length(const std::string& kind, const std::string& content) {
  const std::size_t length = content.size() + 8;
  return kind + '\0' + static_cast<char>(length >> 16 & 0xFF) + static_cast<char>(length >> 8 & 0xFF) +
         static_cast<char>(length & 0xFF) + content;
}

std::vector<std::string> lines_of(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  std::vector<std::string> lines;
  for (std::string line; std::getline(status, line);) lines.push_back(line);
  return lines;
}

/// A bundle whose icon file is made by each case.
class IconTest : public testing::Test {
 protected:
  IconTest() {
    user.application(bundle, {"com.larkfield.lens", "", "", "AppIcon", ""});
    user.tree.folder(bundle + "/Contents/Resources");
  }
  /// The icon of the bundle, with nothing of the desktop.
  QImage read() { return IconReader(user.files, {}).read(Image::icon_of(user.url(bundle)), side); }
  QImage of_any_application() { return IconReader(user.files, {}).read({}, side); }

  const std::string bundle = "Applications/Lens.app";
  const std::string place = bundle + "/Contents/Resources/AppIcon.icns";
  TestPlatform user;
};

TEST_F(IconTest, a_bad_icon_file_gives_the_icon_of_any_application) {
  const std::string good = icon_file(red);
  std::string damaged = good;
  for (std::size_t byte = 40; byte < damaged.size(); byte += 7) damaged[byte] = static_cast<char>(~damaged[byte]);
  std::string many;
  while (many.size() < 1'000'000) many += with_length("ic07", {});
  user.tree.fifo("pipe").content("elsewhere.icns", good);
  const std::string drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9"><image href=")" +
                              user.tree.path("pipe") + R"(" width="9" height="9"/></svg>)";
  struct Case {
    const char* what;
    std::function<void()> make;
  };
  const Case cases[] = {
      {"none", [] {}},
      {"empty", [&] { user.tree.content(place, ""); }},
      {"cut", [&] { user.tree.content(place, std::string_view(good).substr(0, 300)); }},
      {"damaged", [&] { user.tree.content(place, damaged); }},
      {"a text", [&] { user.tree.content(place, "no icon"); }},
      {"a drawing that names a pipe", [&] { user.tree.content(place, drawing); }},
      {"a format that no bundle carries", [&] { user.tree.content(place, one_red_pixel_as_gif); }},
      {"millions of frames", [&] { user.tree.content(place, with_length("icns", many)); }},
      {"enormous", [&] { user.tree.content(place, good).file(place, 33 << 20); }},
      {"a pipe", [&] { user.tree.fifo(place); }},
      {"a link out of the bundle", [&] { user.tree.link(place, user.tree.path("elsewhere.icns")); }},
      {"a folder", [&] { user.tree.folder(place); }},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.what);
    one.make();
    EXPECT_EQ(read(), of_any_application());
    std::filesystem::remove(user.tree.path(place));
  }
}

TEST_F(IconTest, a_picture_that_ends_or_stalls_its_decoder_loses_its_own_icon_only) {
  const auto good = QByteArray::fromStdString(icon_file(red));
  pid_t last = 0;
  {
    PictureProcess pictures({"icns", "png"}, {}, std::chrono::seconds(3));
    for (const int signal : {SIGKILL, SIGSTOP, SIGKILL}) {
      ASSERT_EQ(middle_of(pictures.square(good, side)), to_qcolor(red));
      EXPECT_THAT(lines_of(pictures.process()), testing::IsSupersetOf({"Seccomp:\t2", "NoNewPrivs:\t1", "Threads:\t1"}))
          << "the process that is shipped has given up its rights";
      kill(pictures.process(), signal);
      EXPECT_TRUE(pictures.square(good, side).isNull());
    }
    EXPECT_EQ(pictures.whole(good).size(), QSize(128, 128));
    last = pictures.process();
  }
  EXPECT_EQ(kill(last, 0), -1) << "nothing of it stays";
}

TEST_F(IconTest, answers_of_the_decoder_are_checked) {
  struct Case {
    const char* what;
    const char* answer;
  };
  const Case cases[] = {
      {"no word", "exit 1"},
      {"another word", "printf x"},
      {"a word alone", "printf +"},
      {"half an answer", "printf '+\\50\\0'"},
      {"a square that nobody asked for", "printf '+\\51\\0\\0\\0\\51\\0\\0\\0'; cat /dev/zero"},
      {"one side of none", "printf '+\\50\\0\\0\\0\\0\\0\\0\\0'; cat /dev/zero"},
      {"the largest numbers there are", "printf '+\\377\\377\\377\\377\\377\\377\\377\\377'; cat /dev/zero"},
      {"too few pixels", "printf '+\\50\\0\\0\\0\\50\\0\\0\\0some'"},
      {"pixels that never come", "printf '+\\50\\0\\0\\0\\50\\0\\0\\0'; cat"},
  };
  const auto good = QByteArray::fromStdString(icon_file(red));
  for (const Case& one : cases) {
    SCOPED_TRACE(one.what);
    user.tree.content("child", "#!/bin/sh\necho >> \"$0.starts\"\n" + std::string(one.answer) + "\n")
        .mode("child", 0700);
    user.tree.content("child.starts", "");
    PictureProcess pictures({"png"}, QByteArray::fromStdString(user.tree.path("child")), std::chrono::seconds(1));
    for (int round = 0; round < 2; ++round) EXPECT_TRUE(pictures.square(good, side).isNull());
    EXPECT_EQ(pictures.process(), 0);
  }
  user.tree.content("child", "#!/bin/sh\necho >> \"$0.starts\"\n").content("child.starts", "");
  PictureProcess pictures({"png"}, QByteArray::fromStdString(user.tree.path("child")));
  for (int round = 0; round < 9; ++round) EXPECT_TRUE(pictures.square(good, side).isNull());
  EXPECT_EQ(std::filesystem::file_size(user.tree.path("child.starts")), 3) << "what never starts is left alone";
  EXPECT_TRUE(PictureProcess({"png"}, "/nowhere/at/all").square(good, side).isNull());
}

TEST_F(IconTest, the_frame_that_suits_is_taken_and_what_cannot_be_read_is_passed_over) {
  const auto frame = [](const char* kind, Color color) { return with_length(kind, icon_file(color).substr(16)); };
  const std::string no_decoder = with_length("icp6", std::string("\0\0\0\x0CjP  \r\n\x87\n", 12) + "more of it");
  user.tree.content(place, with_length("icns", frame("ic07", {1, 2, 3}) + frame("ic12", red) + no_decoder +
                                                   frame("ic11", {4, 5, 6})));
  EXPECT_EQ(middle_of(read()), to_qcolor(red));
  EXPECT_EQ(read().size(), QSize(side, side));
}

TEST_F(IconTest, entries_have_the_icons_of_the_theme_and_drawings_where_it_has_none) {
  const auto picture = [](Color color) { return icon_file(color).substr(16); };
  user.tree.content("themes/mine/index.theme",
                    "[Icon Theme]\nInherits=mine,other\nDirectories=16/kinds,big\n"
                    "[16/kinds]\nSize=16\nType=Fixed\n[big]\nSize=64\nMinSize=32\nMaxSize=256\nType=Scalable\n");
  user.tree.content("themes/other/index.theme", "[Icon Theme]\nDirectories=any\n[any]\nSize=48\n");
  user.tree.content("themes/mine/16/kinds/folder.png", picture({1, 2, 3}))
      .content("themes/mine/big/folder.png", picture(red));
  user.tree.content("themes/other/any/folder.png", picture({4, 5, 6}));
  user.tree.content("themes/other/any/video-x-generic.png", picture({7, 8, 9}));
  user.tree.fifo("themes/other/any/audio-x-generic.png");
  user.tree.folder("ada/box").folder("ada/Photos.photoslibrary").link("ada/link.mp4", "/dev/zero");
  IconReader reader(user.files, {{"", "absent", "mine"}, {QString::fromStdString(user.tree.path("themes"))}});
  const auto icon = [&](const char* path) { return reader.read(Image::icon_of(user.url(path)), side); };
  const auto drawn = [](EntryPicture what) {
    QImage drawing(side, side, QImage::Format_ARGB32_Premultiplied);
    drawing.fill(Qt::transparent);
    QPainter painter(&drawing);
    draw_entry_picture(painter, drawing.rect(), what);
    painter.end();
    return drawing;
  };
  EXPECT_EQ(middle_of(icon("ada/box")), to_qcolor(red));
  EXPECT_EQ(middle_of(icon("ada/gone.mov")), to_qcolor({7, 8, 9}));
  EXPECT_EQ(middle_of(icon("ada/link.mp4")), to_qcolor({7, 8, 9}));
  EXPECT_EQ(icon("ada/song.mp3"), drawn(EntryPicture::audio));
  EXPECT_EQ(icon("ada/disk.dmg"), drawn(EntryPicture::archive));
  EXPECT_EQ(icon("ada/no idea"), drawn(EntryPicture::file));
  EXPECT_EQ(icon("ada/Photos.photoslibrary"), drawn(EntryPicture::package));
  EXPECT_EQ(icon("Applications/Lens.app"), drawn(EntryPicture::application));
}

TEST_F(IconTest, a_row_shows_its_icon_when_it_has_been_read_and_what_was_scrolled_past_is_forgotten) {
  user.tree.content(place, icon_file(red)).file("ada/Library/Caches/com.larkfield.lens/data", 1000);
  TestWindow window(user);
  window.open_on_screen();
  window.scan();
  auto* screen = window.screen<SmartCleanViewController>();
  ASSERT_NE(screen, nullptr);
  OutlineView* outline = screen->outlineview;
  const QModelIndex caches = outline->model()->index(0, 0);
  outline->setAnimated(false);
  screen->show_items(caches);
  const QModelIndex lens = outline->model()->index(0, 0, caches);
  const auto shown = [&] {
    const QImage picture = outline->viewport()->grab().toImage();
    const QRect icon = OutlineRow(lens, outline->visualRect(lens), Qt::LeftToRight).icon;
    return picture.pixelColor(icon.center() * picture.devicePixelRatio());
  };
  EXPECT_NE(shown(), to_qcolor(red));  // asks for it, and does not wait
  window.settle();
  EXPECT_EQ(shown(), to_qcolor(red));

  Icons& icons = window.context.icons;
  const auto file = [&](int number) { return Image::icon_of(user.url("ada/" + std::to_string(number) + ".log")); };
  constexpr int rows = 2000;
  test::HeldThread slow_disk(user.main_queue);
  for (int number = 0; number < rows; ++number) {
    icons.icon(file(number), side, 1);
    if (number == 1) slow_disk.wait_until_held();
  }
  slow_disk.release();
  window.settle();
  EXPECT_TRUE(icons.icon(file(rows / 2), side, 1).isNull());
  EXPECT_FALSE(icons.icon(file(rows - 1), side, 1).isNull());
}

}  // namespace
}  // namespace tarnby
