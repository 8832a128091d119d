// Fixed filters on a gray photograph: derivatives, Laplacian, lowpass.
#pragma once
#include "sheet.h"

namespace demo {

void showDerivatives(Sheet& sheet, const Bytes& gray);

}  // namespace demo
