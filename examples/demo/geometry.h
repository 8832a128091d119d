// Geometry and motion: a straightened chessboard, a sequence of low resolution made sharp, points followed.
#pragma once
#include "sheet.h"

namespace demo {

void showUndistortion(Sheet& sheet);
void showSuperResolution(Sheet& sheet, const Bytes& gray);
void showFlow(Sheet& sheet, const Bytes& gray);

}  // namespace demo
