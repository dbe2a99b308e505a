#pragma once

#include <QObject>
#include <QString>
#include <functional>

namespace platform {

class MediaPlayerControls;

/// Puts the application on the desktop's media keys, headset buttons and panels, as a player of MPRIS.
///
/// It appears on the session bus when it first plays, because the desktop gives the keys to the players it
/// sees, and leaves with its own end. Main thread, never waits; without a session bus it does nothing,
/// silently.
class MediaPlayerService final : public QObject {
 public:
  enum class Status { stopped, paused, playing };
  struct State {
    Status status = Status::stopped;
    QString title;  ///< of what plays

    bool operator==(const State&) const = default;
  };
  /// What the desktop asks for; each is called from the event loop.
  struct Commands {
    std::function<void()> play;
    std::function<void()> pause;
    std::function<void()> playPause;
    std::function<void()> stop;
    std::function<void()> previous;    ///< back to the start
    std::function<double()> position;  ///< in seconds
    std::function<void()> raise;
    std::function<void()> quit;
  };

  /// The desktop entry is named without its suffix. Its name on the bus is the application's in small
  /// letters.
  MediaPlayerService(QString desktopEntry, Commands commands);
  ~MediaPlayerService() override;

  void setState(const State& state);

  /// Tells that the position jumped rather than ran.
  void tellJump();

 private:
  void appear();

  const QString desktopEntry_;
  const Commands commands_;
  State state_;
  bool hasAppeared_ = false;
  MediaPlayerControls* const controls_;  // a child

  friend class MediaPlayerRoot;
  friend class MediaPlayerControls;
};

}  // namespace platform
