// Integral images at work: local contrast of the photograph, and faces found in a drawn scene.
#pragma once
#include "sheet.h"

namespace demo {

void showDetection(Sheet& sheet, const Bytes& gray);

}  // namespace demo
