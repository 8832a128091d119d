// A picture for machines without a photograph.
#pragma once
#include "image.h"

namespace demo {

// A landscape at dusk: soft gradients, hard edges, thin lines and fine texture.
Bytes drawScene();

}  // namespace demo
