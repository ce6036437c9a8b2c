// One picture of many.
#pragma once

#include <vector>

#include "player/common/picture.h"

namespace player {

// All shots on one sheet, in reading order, with small margins. Shots are shrunk together, by a whole number,
// so that the sheet stays within about 1920 pixels. No shots: an empty picture.
Picture contact_sheet(const std::vector<Picture>& shots);

// Whether a picture is such a sheet: by its margin.
bool is_contact_sheet(const Picture& picture);

}  // namespace player
