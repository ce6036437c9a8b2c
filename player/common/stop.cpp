#include "player/common/stop.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <mutex>

namespace player {
namespace {

volatile std::sig_atomic_t asked_by = 0;

std::mutex salvage_lock;
std::function<void()> salvage;

void set_salvage(std::function<void()> save) {
    const std::lock_guard lock(salvage_lock);
    salvage = std::move(save);
}

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

Salvage::Salvage(std::function<void()> save) {
    set_salvage(std::move(save));
}

Salvage::~Salvage() {
    set_salvage(nullptr);
}

// Nothing is destroyed: the thread that plays is in the middle of it all.
void end_at_once(const std::string& message) {
    std::fprintf(stderr, "%s\n", message.c_str());
    const std::lock_guard lock(salvage_lock);
    try {
        if (salvage) salvage();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    std::fflush(stdout);
    _exit(stop_signal() == 0 ? 1 : 128 + stop_signal());
}

}  // namespace player
