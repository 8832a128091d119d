// The internal windows of optical flow: what lies outside the range stays.
// One body serves both variants.
#include "geometry/subpixel_cases.h"
#include "geometry/subpixel_internal.h"

using namespace test;

TEST(ranges) {
  const auto bytes = scaledCase("ownGetRectSubpix_8u16u_C1R_Sfs", ownGetRectSubpix_8u16u_C1R_Sfs, -7, false);
  const auto words = windowCase("ownGetRectSubpix_16u32f_C1R", ownGetRectSubpix_16u32f_C1R, {0, 1e-6f, 1e-9f}, false);
  const auto floats = windowCase("ownGetRectSubpix_32f_C1R", ownGetRectSubpix_32f_C1R, {0, 1e-6f, 1e-6f}, false);
  sweepWindows(bytes), walkWindow(bytes);
  sweepWindows(words), walkWindow(words);
  sweepWindows(floats), walkWindow(floats);
}
