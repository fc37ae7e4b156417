#pragma once

#include <functional>

namespace tarnby::test {

/// Runs `body` in a child process that may mount what it likes without anybody else seeing it, and adds a failure when
/// an expectation fails there. False, and nothing run, where the system does not permit that.
///
/// To be called before the test has made any thread.
[[nodiscard]] bool with_own_mounts(const std::function<void()>& body);

}  // namespace tarnby::test
