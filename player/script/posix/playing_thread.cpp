#include "player/script/playing_thread.h"

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>

namespace player {
namespace {

using namespace std::chrono_literals;

// What the playing thread does in its signal handler.
std::atomic<void (*)()> asked{nullptr};
std::atomic<bool> answered{false};

void answer(int) {
    asked.load()();
    answered = true;
}

}  // namespace

PlayingThread::PlayingThread() : thread_(pthread_self()) {}

PlayingThread::~PlayingThread() = default;

std::thread PlayingThread::beside(std::function<void()> run) {
    sigset_t all{}, before{};
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread made(std::move(run));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return made;
}

double PlayingThread::processor_seconds() const {
    clockid_t processor{};
    timespec time{};
    pthread_getcpuclockid(thread_, &processor);
    clock_gettime(processor, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

bool PlayingThread::interrupt(void (*look)()) {
    asked = look;
    struct sigaction action {};
    action.sa_handler = answer;
    action.sa_flags = SA_RESTART;
    sigaction(SIGUSR1, &action, nullptr);
    pthread_kill(thread_, SIGUSR1);
    for (int i = 0; i < 50 && !answered; ++i) std::this_thread::sleep_for(10ms);
    return answered;
}

}  // namespace player
