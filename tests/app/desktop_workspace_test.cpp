#include "app/desktop/linux/desktop_workspace.h"

#include <gtest/gtest.h>

#include <QTest>

#include "tests/support/test_platform.h"

namespace tarnby {
namespace {

TEST(DesktopWorkspace, launches_a_program_by_its_path_whatever_stands_in_that) {
  test::TestPlatform user;
  const std::string helper = "a helper; $(touch wrong) ☂";
  user.tree.content(helper, "#!/bin/sh\ntouch \"$0 was here\"\n").mode(helper, 0700);
  BackgroundQueue io_queue;
  DesktopWorkspace(user.platform, io_queue).launch(user.url(helper));
  EXPECT_TRUE(QTest::qWaitFor([&] { return user.tree.exists(helper + " was here"); }));
}

}  // namespace
}  // namespace tarnby
