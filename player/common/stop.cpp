#include "player/common/stop.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <mutex>

namespace player {
namespace {

std::mutex salvage_lock;
std::function<void()> salvage;

void set_salvage(std::function<void()> save) {
    const std::lock_guard lock(salvage_lock);
    salvage = std::move(save);
}

}  // namespace

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
    std::_Exit(stop_signal() == 0 ? 1 : 128 + stop_signal());
}

}  // namespace player
