// Rectangles on regions with sides in memory: see rank_region.h.
#include "morph/rank_region.h"
#include "morph/rank_driver.h"

namespace {

// A window along a line of n pixels: all of it where the line goes on in memory, else what a pixel of the line meets.
Reach reachOf(int32_t length, int32_t anchor, int32_t n, bool memoryBefore, bool memoryBehind) {
  const Reach clipped = rankReach(length, anchor, n);
  return {memoryBefore ? anchor : clipped.before, memoryBehind ? length - 1 - anchor : clipped.behind};
}

template <class T>
bool fold(const MaskFold& call, int32_t channels, OrvSize box, OrvPoint anchor) {
  const bool left = call.sides & orvBorderInMemLeft, right = call.sides & orvBorderInMemRight;
  const bool top = call.sides & orvBorderInMemTop, bottom = call.sides & orvBorderInMemBottom;
  const Reach rows = reachOf(box.height, anchor.y, call.roi.height, top, bottom);
  const Reach columns = reachOf(box.width, anchor.x, call.roi.width, left, right);
  const RankMargin margin = {left ? columns.before : 0, top ? rows.before : 0, right ? columns.behind : 0,
                             bottom ? rows.behind : 0};
  return runRank<T>({{(const T*)call.src, call.srcStep},
                     {(T*)call.dst, call.dstStep},
                     call.roi.width,
                     call.roi.height,
                     channels,
                     rows,
                     columns,
                     margin,
                     call.scratch,
                     call.scratchBytes},
                    rankKernels<T>(call.dilate ? Rank::max : Rank::min));
}

}  // namespace

bool ORV_VARIANT::foldRectangle(const MaskFold& call, int32_t dataType, int32_t channels, OrvSize box,
                                OrvPoint anchor) {
  switch (dataType) {
    case orvData16u:
      return fold<uint16_t>(call, channels, box, anchor);
    case orvData16s:
      return fold<int16_t>(call, channels, box, anchor);
    case orvData32f:
      return fold<float>(call, channels, box, anchor);
    default:
      return fold<uint8_t>(call, channels, box, anchor);
  }
}
