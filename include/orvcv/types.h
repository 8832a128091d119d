/* Types, status values and enumerations that all families share. */
#ifndef ORVCV_TYPES_H
#define ORVCV_TYPES_H
#include <stdint.h>

/* Result of every function: zero is success, negative an error (nothing was written), positive a warning. */
typedef int32_t OrvStatus;
enum {
  orvStatusOk = 0,
  orvStatusDivByZeroWarn = 6,     /* relative norm: the denominator is zero */
  orvStatusSizeOverflowWarn = 12, /* a reported size exceeds 32 bits; the wrapped value was written */
  orvStatusLinesFullWarn = 33,    /* the list of lines was full before the image was exhausted */
  orvStatusSymKernelWarn = 38,    /* the kernel isn't symmetric; its left half was taken */
  orvStatusRoiClippedWarn = 48,   /* the region was clipped to the image */
  orvStatusError = -2,            /* a line with a negative number of points */
  orvStatusBadArg = -5,           /* a numeric or enumerated argument out of its range */
  orvStatusSize = -6,             /* width, height or length below 1 */
  orvStatusRange = -7,            /* a lower bound above its upper bound */
  orvStatusNullPtr = -8,          /* a required pointer is null */
  orvStatusNoMem = -9,            /* an allocation failed */
  orvStatusOutOfRange = -11,      /* a seed, end point or threshold outside its allowed range */
  orvStatusDataType = -12,        /* an OrvDataType that the function doesn't take */
  orvStatusStep = -14,            /* a row step smaller than a row of the region */
  orvStatusContext = -17,         /* a state record that isn't one */
  orvStatusThreshold = -18,       /* a negative threshold */
  orvStatusMaskSize = -33,        /* a mask size outside the allowed set */
  orvStatusAnchor = -34,          /* an anchor outside its kernel or mask */
  orvStatusChannelCount = -47,    /* Gaussian filters: a channel count other than 1 and 3 */
  orvStatusCoi = -52,             /* a channel of interest outside 1..3 */
  orvStatusChannels = -53,        /* a channel count that isn't supported, in all other functions */
  orvStatusMetric = -56,          /* distance coefficients out of range or order */
  orvStatusStepAlign = -108,      /* a row step that isn't a whole number of elements */
  orvStatusBorder = -225,         /* a border type that the function doesn't support */
  orvStatusNorm = -229,           /* a norm code that the function doesn't support */
  orvStatusFilterType = -230,     /* a gradient filter code that the function doesn't support */
  orvStatusInPlace = -9997,       /* source and destination are the same buffer */
  orvStatusNotSupported = -9999   /* a comparison code that the function doesn't support */
};

typedef struct {
  int32_t width, height;
} OrvSize;
typedef struct {
  int32_t x, y;
} OrvPoint;
typedef struct {
  int32_t x, y, width, height;
} OrvRect;
typedef struct {
  float x, y;
} OrvPoint32f;
typedef struct {
  float rho, theta;
} OrvPointPolar;

/* The enumerated arguments are 32-bit integers, so that flags combine in C and C++ alike. */

/* Element types, where one is an argument. */
typedef int32_t OrvDataType;
enum {
  orvData8u = 1,
  orvData8s = 3,
  orvData16u = 5,
  orvData16s = 7,
  orvData32f = 13,
  orvData64f = 19
};

/* What lies beyond the sides of a region: a kind (low four bits), and for each side a flag that says that the pixels
 * beyond it are real memory and are read as they are. With a line of n pixels, pixel p beyond its ends is:
 *   orvBorderConst  a value given by the caller
 *   orvBorderRepl   pixel 0, or pixel n - 1
 *   orvBorderWrap   pixel n + p, or pixel p - n
 *   orvBorderMirr   the reflection about the end pixel, which isn't repeated: -p, or 2(n - 1) - p
 *   orvBorderMirrR  the reflection with the end pixel repeated: -p - 1, or 2n - 1 - p
 *   orvBorderInMem  real memory on all four sides
 */
typedef int32_t OrvBorderType;
enum {
  orvBorderConst = 0,
  orvBorderRepl = 1,
  orvBorderWrap = 2,
  orvBorderMirr = 3,
  orvBorderMirrR = 4,
  orvBorderInMem = 6,
  orvBorderInMemTop = 16,
  orvBorderInMemBottom = 32,
  orvBorderInMemLeft = 64,
  orvBorderInMemRight = 128
};

/* Codes of the fixed filter masks. */
typedef int32_t OrvMaskSize;
enum { orvMaskSize3x3 = 33, orvMaskSize5x5 = 55 };

/* Which derivatives a detector takes: Sobel or Scharr filters, or the difference of the two neighbours. */
typedef int32_t OrvFilterKernel;
enum { orvFilterKernelSobel = 2, orvFilterKernelScharr = 5, orvFilterKernelCentralDiff = 8 };

/* Magnitude of a gradient: |dx| + |dy|, or the root of dx * dx + dy * dy. */
typedef int32_t OrvNormType;
enum { orvNormL1 = 2, orvNormL2 = 4 };

#endif
