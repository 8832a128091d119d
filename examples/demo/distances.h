// Distance maps of one shape, and a photograph repaired.
#pragma once
#include "sheet.h"

namespace demo {

void showDistances(Sheet& sheet);
void showInpainting(Sheet& sheet, const Bytes& photo, const Bytes& gray);

}  // namespace demo
