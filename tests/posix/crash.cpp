#include "tests/crash.h"

#include <unistd.h>

#include <csignal>
#include <cstring>
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>

// Has findings of undefined behaviour end in SIGABRT.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the sanitizer asks for this name
extern "C" [[gnu::used]] const char* __ubsan_default_options() {
    return "abort_on_error=1";
}
#endif

namespace tests {
namespace {

char crash_note[200];
struct sigaction handlers_before[NSIG];

void say_crash_note() {
    [[maybe_unused]] const auto written = write(STDERR_FILENO, crash_note, std::strlen(crash_note));
}

}  // namespace

void note_for_crash(const std::string& what) {
    crash_note[("crashed: " + what + "\n").copy(crash_note, sizeof crash_note - 1)] = '\0';
    struct sigaction action {};
    action.sa_handler = [](int signal) {
        say_crash_note();
        sigaction(signal, &handlers_before[signal], nullptr);
        raise(signal);
    };
    for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL}) {
        struct sigaction before {};
        sigaction(signal, &action, &before);
        if (before.sa_handler != action.sa_handler) handlers_before[signal] = before;
    }
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_death_callback(say_crash_note);
#endif
}

}  // namespace tests
