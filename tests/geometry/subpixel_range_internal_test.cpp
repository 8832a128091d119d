// The internal windows of optical flow: what lies outside the range stays.
// One body serves both variants.
#include "geometry/subpixel_cases.h"
#include "geometry/subpixel_internal.h"

using namespace test;

TEST(ranges) {
  scaledWindows("ownGetRectSubpix_8u16u_C1R_Sfs", ownGetRectSubpix_8u16u_C1R_Sfs, -7, false);
  const reference::Subpixel<uint16_t, float> words{0, 1e-6f, 1e-9f};
  windows("ownGetRectSubpix_16u32f_C1R", ownGetRectSubpix_16u32f_C1R, words, false);
  const reference::Subpixel<float, float> floats{0, 1e-6f, 1e-6f};
  windows("ownGetRectSubpix_32f_C1R", ownGetRectSubpix_32f_C1R, floats, false);
}
