// Scratch of the Harris response.
#pragma once
#include "features/names.h"

namespace ORV_VARIANT {

// The size that is reported for arguments that have passed the checks, in 32 bits that wrap.
int32_t harrisBytes(OrvSize roi, OrvMaskSize maskSize, int32_t avgWindow, OrvDataType dataType);

}  // namespace ORV_VARIANT
