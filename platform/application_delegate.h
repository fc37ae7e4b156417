#pragma once

namespace tarnby {

/// The delegate of the running application, as the objects below the window know it: they keep a pointer to it and call
/// nothing.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;
};

}  // namespace tarnby
