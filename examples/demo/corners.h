// Corners of a gray photograph, drawn as circles.
#pragma once
#include "sheet.h"

namespace demo {

void showCorners(Sheet& sheet, const Bytes& gray);

}  // namespace demo
