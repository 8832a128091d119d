// Edges over the photograph, and straight lines on a drawn chessboard.
#pragma once
#include "sheet.h"

namespace demo {

void showEdges(Sheet& sheet, const Bytes& gray);
void showLines(Sheet& sheet);

}  // namespace demo
