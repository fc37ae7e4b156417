#include "app/desktop/linux/desktop_workspace.h"

#include <gtest/gtest.h>

#include <QTest>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

TEST(DesktopWorkspace, launches_a_program_by_its_path_whatever_stands_in_that) {
  test::TestPlatform ada;
  const std::string helper = "a helper; $(touch wrong) ☂";
  ada.tree.content(helper, "#!/bin/sh\ntouch \"$0 was here\"\n").mode(helper, 0700);
  BackgroundQueue io_queue;
  DesktopWorkspace(ada.platform, io_queue).launch(ada.url(helper));
  EXPECT_TRUE(QTest::qWaitFor([&] { return ada.tree.exists(helper + " was here"); }));
}

}  // namespace
}  // namespace tarnby
