// Opening, closing, top-hat, black-hat and gradient of 16u and 16s images.
#include "morph/morph_adv.h"

ORV_ADV_FAMILY(16u_C1R, uint16_t, orvData16u, 1)
ORV_ADV_FAMILY(16s_C1R, int16_t, orvData16s, 1)
