/* Separable filters as a row stage and a column stage. */
#ifndef ORVCV_FILTER_PIPELINE_H
#define ORVCV_FILTER_PIPELINE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif
#endif
