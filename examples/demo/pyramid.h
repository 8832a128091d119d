// Pyramids: a photograph drawn down and up again.
#pragma once
#include "sheet.h"

namespace demo {

void showPyramid(Sheet& sheet, const Bytes& photo);

}  // namespace demo
