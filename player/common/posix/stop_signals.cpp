#include <csignal>

#include "player/common/stop.h"

namespace player {
namespace {

volatile std::sig_atomic_t asked_by = 0;

}  // namespace

void heed_stops() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) continue;
        action = {};
        action.sa_handler = [](int which) { asked_by = which; };
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
        sigaction(signal, &action, nullptr);
    }
}

int stop_signal() {
    return asked_by;
}

}  // namespace player
