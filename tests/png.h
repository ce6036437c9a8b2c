// Pictures of bitmaps as PNG files, for failing tests.
#pragma once

#include <string>

#include "host/depth.h"

namespace tests {

// Throws host::Error when the file cannot be written.
void write_png(const std::string& path, const host::Image& image);

}  // namespace tests
