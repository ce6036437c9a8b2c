// The thread that plays, as another one sees it. Each platform has its own: posix/playing_thread.cpp,
// windows/playing_thread.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <thread>

namespace player {

// The thread that makes it.
class PlayingThread {
  public:
    PlayingThread();
    PlayingThread(const PlayingThread&) = delete;
    PlayingThread& operator=(const PlayingThread&) = delete;
    ~PlayingThread();

    // Another thread, which leaves the signals to this one.
    [[nodiscard]] static std::thread beside(std::function<void()> run);

    [[nodiscard]] double processor_seconds() const;  // that it has had
    // Has `look` called while the thread does nothing else, wherever it is: `look` takes neither locks nor
    // memory. False: it was not called, or not soon enough. For one thread, once.
    [[nodiscard]] bool interrupt(void (*look)());

  private:
    std::uintptr_t thread_;  // to the system
};

}  // namespace player
