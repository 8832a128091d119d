/* Accumulation of images into a float image. */
#ifndef ORVCV_ACCUMULATE_H
#define ORVCV_ACCUMULATE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif
#endif
