// Opening, closing, top-hat, black-hat and gradient of 8u and 32f images.
// One body serves both variants.
#include "morph/morph_adv.h"

ORV_ADV_FAMILY(8u_C1R, uint8_t, orvData8u, 1)
ORV_ADV_FAMILY(8u_C3R, uint8_t, orvData8u, 3)
ORV_ADV_FAMILY(8u_C4R, uint8_t, orvData8u, 4)
ORV_ADV_FAMILY(32f_C1R, float, orvData32f, 1)
ORV_ADV_FAMILY(32f_C3R, float, orvData32f, 3)
ORV_ADV_FAMILY(32f_C4R, float, orvData32f, 4)
