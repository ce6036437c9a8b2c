#include <windows.h>

#include <atomic>
#include <csignal>

#include "player/common/stop.h"

namespace player {
namespace {

std::atomic<int> asked_by{0};

// Called in a thread of its own. A second one is left to the system, which ends the program.
BOOL WINAPI take_first(DWORD event) {
    int nobody = 0;
    return asked_by.compare_exchange_strong(nobody, event == CTRL_C_EVENT ? SIGINT : SIGTERM) ? TRUE : FALSE;
}

}  // namespace

void heed_stops() {
    SetConsoleCtrlHandler(take_first, TRUE);
}

int stop_signal() {
    return asked_by;
}

}  // namespace player
