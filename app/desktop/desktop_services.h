#pragma once

#include <QString>
#include <functional>
#include <memory>

class QWidget;

namespace tarnby {

class BackgroundQueue;
class Platform;
class Workspace;
struct Session;

/// What the window takes from the desktop around it, one implementation a system. The functions are called once each,
/// in this order, on the main thread.
class DesktopServices {
 public:
  virtual ~DesktopServices() = default;

  /// False when another window for the same settings was there before; it has been asked to come to the front.
  virtual bool is_first_window() const = 0;

  /// Takes over whether things may move, where the system can be asked at once. After the look is set.
  virtual void apply_motion() = 0;

  /// @param io_queue reads what the workspace shows; it outlives the workspace, as the platform does.
  virtual std::unique_ptr<Workspace> make_workspace(Platform& platform, BackgroundQueue& io_queue) = 0;

  /// Connects the services with the window: what they open belongs to it, and it comes to the front when it is asked
  /// to.
  /// @param nothing_opens called with what was to be opened where the desktop has nothing that opens it.
  virtual void serve(QWidget& window, std::function<void(const QString&)> nothing_opens) = 0;

  /// Asks what takes the desktop a while to answer. After the first picture, which does not need it.
  virtual void ask_for_motion() = 0;
};

/// The services of this system's desktops for a session.
std::unique_ptr<DesktopServices> desktop_services(const Session& session);

/// Begins, before the application is made, what the toolkit would otherwise do after it; where the returned object
/// goes, that is done. Nothing where a system needs none of it.
std::shared_ptr<void> work_beside_the_start();

}  // namespace tarnby
