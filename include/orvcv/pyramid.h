/* Image pyramids. */
#ifndef ORVCV_PYRAMID_H
#define ORVCV_PYRAMID_H
#include "orvcv/types.h"

/* The levels of an image pyramid, level 0 the largest. All arrays have level + 1 entries. */
typedef struct {
  void** images;  /* first pixel of each level */
  OrvSize* roi;   /* size of each level */
  double* rates;  /* from coordinates of level 0 to those of the level: 1, 1/r, 1/r^2, ... */
  int32_t* steps; /* row step of each level in bytes */
  void* state;    /* the caller's */
  int32_t level;  /* index of the last level */
} OrvPyramid;

#endif
