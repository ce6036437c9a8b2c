#include "player/script/playing_thread.h"

#include <windows.h>

namespace player {
namespace {

HANDLE handle_of(std::uintptr_t thread) {
    return reinterpret_cast<HANDLE>(thread);
}

// Units of 100 ns.
double seconds(const FILETIME& time) {
    return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 +
            static_cast<double>(time.dwLowDateTime)) /
           1e7;
}

}  // namespace

PlayingThread::PlayingThread() : thread_(0) {
    HANDLE thread = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &thread, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    thread_ = reinterpret_cast<std::uintptr_t>(thread);
}

PlayingThread::~PlayingThread() {
    CloseHandle(handle_of(thread_));
}

std::thread PlayingThread::beside(std::function<void()> run) {
    return std::thread(std::move(run));
}

double PlayingThread::processor_seconds() const {
    FILETIME made{}, ended{}, kernel{}, user{};
    GetThreadTimes(handle_of(thread_), &made, &ended, &kernel, &user);
    return seconds(kernel) + seconds(user);
}

bool PlayingThread::interrupt(void (*look)()) {
    const HANDLE thread = handle_of(thread_);
    if (SuspendThread(thread) == static_cast<DWORD>(-1)) return false;
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    GetThreadContext(thread, &context);  // comes back when the thread really stands
    look();
    ResumeThread(thread);
    return true;
}

}  // namespace player
