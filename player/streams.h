// The three streams that a program begins with. Each platform has its own: posix/streams.cpp,
// windows/streams.cpp.
#pragma once

namespace player {

// Opens what whoever started the program has closed. Without them the next files to be opened would get their
// numbers, and what is printed would land in a film. False: it cannot be done.
bool open_missing_streams();

}  // namespace player
