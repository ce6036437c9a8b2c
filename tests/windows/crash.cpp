#include "tests/crash.h"

#include <windows.h>

#include <cstdio>

namespace tests {
namespace {

char crash_note[200];
LPTOP_LEVEL_EXCEPTION_FILTER filter_before = nullptr;

LONG WINAPI say_crash_note(EXCEPTION_POINTERS* crash) {
    std::fputs(crash_note, stderr);
    return filter_before != nullptr ? filter_before(crash) : EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

void note_for_crash(const std::string& what) {
    crash_note[("crashed: " + what + "\n").copy(crash_note, sizeof crash_note - 1)] = '\0';
    const auto before = SetUnhandledExceptionFilter(say_crash_note);
    if (before != say_crash_note) filter_before = before;
}

}  // namespace tests
