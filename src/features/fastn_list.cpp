// The list form of FastN's images.
#include "core/image.h"
#include "features/corner_scan.h"
#include "features/fastn_state.h"

OrvStatus orviFastN2DToVec_8u(const uint8_t* srcCorner, int32_t srcCornerStep, const uint8_t* srcScore,
                              int32_t srcScoreStep, OrvCornerFastN* dstVec, OrvSize roiSize, int32_t maxLen,
                              int32_t* numCorners, const uint8_t* state) {
  ORV_REQUIRE(allSet(srcCorner, dstVec, numCorners, state), orvStatusNullPtr);
  ORV_REQUIRE(validRoi(roiSize) && maxLen >= 0, orvStatusSize);
  const FastNState record = readState(state);
  ORV_REQUIRE(record.id == fastNId, orvStatusContext);
  if (const OrvStatus status = checkFastNType(record.dataType, record.channels)) return status;
  if (const OrvStatus status = checkFastNMode(record.mode, record.bins)) return status;
  const bool oriented = record.mode & orvFastNOrientation, scored = record.mode & orvFastNScore;
  ORV_REQUIRE(!scored || srcScore, orvStatusNullPtr);

  const Plane<const uint8_t> corners{srcCorner, srcCornerStep}, scores{srcScore, srcScoreStep};
  const float step = oriented ? 360.0f / (float)record.bins : 0;
  int32_t found = 0;
  // A full list ends its row: the rest of that row isn't looked at. In the next row counting begins behind the column
  // of the last one listed, below that at column 0.
  ptrdiff_t first = 0;
  for (ptrdiff_t y = 0; y < roiSize.height; ++y) {
    const uint8_t* const row = raw(corners.row(y));
    const bool listing = found < maxLen;
    const ptrdiff_t from = first;
    first = 0;
    scanCorners(row, from, roiSize.width, [&](ptrdiff_t x) {
      const int32_t number = found++;
      if (!listing) return true;
      const uint8_t byte = row[x];
      *loose(dstVec + number) = OrvCornerFastN{(int32_t)x,
                                               (int32_t)y,
                                               byte >> 7,
                                               oriented ? byte & 63 : -1,
                                               oriented ? (float)(byte & 63) * step : -1.0f,
                                               scored ? (float)scores.row(y)[x] : -1.0f};
      if (found < maxLen) return true;
      first = x + 1;
      return false;
    });
  }
  *numCorners = found;
  return orvStatusOk;
}
