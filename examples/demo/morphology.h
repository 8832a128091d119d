// Morphology through the library, on a drawn page of print with two coins on it.
#pragma once
#include "sheet.h"

namespace demo {

// Opening, closing and their differences: a section of the sheet.
void showMorphology(Sheet& sheet);

}  // namespace demo
