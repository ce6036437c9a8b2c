// How a run ends before its time: somebody asks for it, or the script cannot be made to come back.
#pragma once

#include <functional>
#include <string>

namespace player {

// ---- posix/stop_signals.cpp, windows/stop_signals.cpp

// From now on the first SIGINT, SIGTERM or SIGHUP asks for the end, and a second one ends the program at
// once. A signal that was ignored stays so. On Windows: Ctrl+C and Ctrl+Break, or a console that is closed.
void heed_stops();
// The signal by which somebody asked for the end; 0: nobody has.
int stop_signal();

// ---- stop.cpp

// What is to be saved should the program have to end while the script holds the thread that plays. While one
// of these lives, `save` may be called, from another thread, once.
class Salvage {
  public:
    explicit Salvage(std::function<void()> save);
    Salvage(const Salvage&) = delete;
    Salvage& operator=(const Salvage&) = delete;
    ~Salvage();
};

// Prints, saves, and ends the program from any thread: with status 1, or as a shell tells the signal that
// asked for the end.
[[noreturn]] void end_at_once(const std::string& message);

}  // namespace player
