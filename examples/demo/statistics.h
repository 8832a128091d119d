// Statistics of the photograph, as a table.
#pragma once
#include "sheet.h"

namespace demo {

void showStatistics(Sheet& sheet, const Bytes& photo, const Bytes& gray);

}  // namespace demo
