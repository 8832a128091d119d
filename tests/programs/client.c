/* A C99 program that smooths an image and knows what must come out. */
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include "orvcore.h"
#include "orvcv.h"

enum { width = 21, height = 9, kernelSize = 5 };

static int failures = 0;
static void expect(int condition, const char* what) {
  if (!condition) {
    printf("client.c: %s\n", what);
    ++failures;
  }
}

/* The taps of an 8-bit Gaussian in 4096ths. */
static void makeTaps(double sigma, int taps[kernelSize]) {
  double weights[kernelSize], sum = 0;
  int i;
  for (i = 0; i < kernelSize; ++i) {
    const int j = i - kernelSize / 2;
    weights[i] = exp(-j * j / (2 * sigma * sigma));
    sum += weights[i];
  }
  for (i = 0; i < kernelSize; ++i) taps[i] = (int)(weights[i] / sum * 4096 + 0.5);
}

/* A single white pixel becomes the kernel, rounded after each of the two passes. */
static void smoothAPoint(void) {
  const OrvSize size = {width, height};
  uint8_t src[height][width], dst[height][width];
  int32_t specBytes, bufferBytes;
  OrvFilterGaussianSpec* spec;
  uint8_t* buffer;
  int taps[kernelSize], x, y;
  memset(src, 0, sizeof src);
  src[4][8] = 255;
  makeTaps(1.2, taps);

  expect(orviFilterGaussianGetBufferSize(size, kernelSize, orvData8u, 1, &specBytes, &bufferBytes) == orvStatusOk,
         "GetBufferSize");
  spec = orvMalloc(specBytes);
  buffer = orvMalloc(bufferBytes);
  expect(spec != NULL && buffer != NULL, "orvMalloc");
  expect(orviFilterGaussianInit(size, kernelSize, 1.2f, orvBorderRepl, orvData8u, 1, spec, buffer) == orvStatusOk,
         "Init");
  expect(orviFilterGaussianBorder_8u_C1R(&src[0][0], width, &dst[0][0], width, size, 0, spec, buffer) == orvStatusOk,
         "Border_8u_C1R");
  for (y = 0; y < height; ++y)
    for (x = 0; x < width; ++x) {
      int want = 0;
      if (x >= 6 && x <= 10 && y >= 2 && y <= 6)
        want = (int)rint(rint(255 * taps[x - 6] / 4096.0) * taps[y - 2] / 4096.0);
      expect(dst[y][x] == want, "a pixel of the smoothed point");
    }

  expect(orviFilterGaussianBorder_8u_C1R(NULL, width, &dst[0][0], width, size, 0, spec, buffer) == orvStatusNullPtr,
         "a null source must be refused");
  orvFree(buffer);
  orvFree(spec);
}

int main(void) {
  expect(strstr(orvcvGetLibVersion()->versionText, "8.2") != NULL, "version");
  expect(strlen(orvGetStatusString(orvStatusNullPtr)) > 0, "status text");
  smoothAPoint();
  if (failures == 0) printf("C99 client: right\n");
  return failures != 0;
}
