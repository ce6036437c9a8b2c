// What a random test is about, said on standard error when it crashes: by a signal, or by a finding of a
// sanitizer. Each platform has its own: posix/crash.cpp, windows/crash.cpp.
#pragma once

#include <string>

namespace tests {

// From now on a crash tells this. Call it inside a test case, whose beginning sets the handlers of doctest:
// those report the crash afterwards.
void note_for_crash(const std::string& what);

}  // namespace tests
