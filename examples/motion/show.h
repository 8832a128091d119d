// Pages of the contact sheet.
#pragma once
#include "demo/sheet.h"
#include "sequence.h"

namespace motion {

// Follows corners through the sequence; where its camera's motion is known, tells how near they stay to it.
void showTracking(demo::Sheet& sheet, const Sequence& sequence);

// What the three models make of the sequence; where the truth is known, beside that, with scores.
void showForeground(demo::Sheet& sheet, const Sequence& sequence);

}  // namespace motion
