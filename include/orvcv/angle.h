/* Angles of vectors. */
#ifndef ORVCV_ANGLE_H
#define ORVCV_ANGLE_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif
#endif
