// A cascade run over an image at many scales.
//
//   image -> tables of sums and squares, once                                        orviSqrIntegral_8u32s64f_C1R
//   for each scale:
//     deviation of each window -> norm                                               orviRectStdDev_32s32f_C1R
//     mask: 1 where windows are looked at, 0 where they are flat or left out
//     for each stage: windows whose votes fall short are cleared from the mask       orviApplyHaarClassifier_32s32f_C1R
//     what is left are hits
//   hits that overlap are one object
#pragma once
#include "cascade.h"
#include "demo/image.h"

namespace detect {

struct Search {
  float smallest = 1, factor = 1.15f;  // scale of the smallest window, and from one to the next
  float flat = 8;                      // windows with a smaller deviation are not looked at
};

// The windows that pass all stages, in a gray image.
std::vector<OrvRect> findWindows(const demo::Bytes& gray, const Cascade& cascade, const Search& search = {});

// An object: the mean of the windows that found it, and how many they were.
struct Found {
  OrvRect place;
  int windows;
};

// Windows of about the same place and size belong together; an object has at least `least` of them. The largest first.
std::vector<Found> group(const std::vector<OrvRect>& windows, int least = 3);

// Draws frames around objects into a colour image.
void drawFrames(demo::Bytes& colour, const std::vector<Found>& objects);

// Area that two rectangles share, as a part of the area that they cover together.
float overlap(const OrvRect& a, const OrvRect& b);

}  // namespace detect
