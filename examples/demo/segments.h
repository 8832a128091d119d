// Connected regions: touching cells parted by a watershed, labels in colours, flood fills.
#pragma once
#include "sheet.h"

namespace demo {

void showSegments(Sheet& sheet, const Bytes& photo);

}  // namespace demo
