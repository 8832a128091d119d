/* Gaussian smoothing. */
#ifndef ORVCV_FILTER_GAUSSIAN_H
#define ORVCV_FILTER_GAUSSIAN_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif
#endif
