// Sizes and construction of the record of a prepared mask.
#include "morph/morph_state.h"
#include "morph/rank_driver.h"

namespace {

uint32_t roundUp(uint32_t bytes, uint32_t unit) { return (bytes + unit - 1) & ~(unit - 1); }

uint32_t maskBytes(OrvSize size) { return roundUp((uint32_t)size.width * (uint32_t)size.height, 16); }

// Scratch of the separable path; the 16-bit forms report twice their need.
uint32_t rankBytes(int32_t dataType, int32_t channels, int32_t width, int32_t height) {
  const int32_t element = morphElementBytes(dataType);
  const int32_t bytes = rankBufferBytes(wrapMul(width, channels, element), height);
  return (uint32_t)(element == 2 ? wrapMul(bytes, 2) : bytes);
}

// Scratch of the row-length path. Bytes of 8u count one channel, whatever the image has.
uint32_t ringBytes(int32_t dataType, int32_t channels, int32_t width, int32_t height) {
  const uint32_t h = (uint32_t)height, counted = dataType == orvData32f ? (uint32_t)channels : 1;
  return (h * h + 1) * ((uint32_t)width * counted * (uint32_t)morphElementBytes(dataType) + 32) + h * 40 + 40;
}

uint32_t larger(uint32_t a, uint32_t b) { return (int32_t)a > (int32_t)b ? a : b; }

// One run a row: all that the classification knows of a mask.
struct Rows {
  Loose<int32_t>*index, *length,
      *anchor;  // of each row with a run: its number, its run's length, the anchor in the run
  Loose<int32_t>*lengthIndex, *runLength, *runAnchor;
  int32_t count = 0, lengths = 0;
  int32_t left = INT32_MAX, right = 0;  // columns of all runs

  Rows(uint8_t* work, int32_t height) {
    Loose<int32_t>** const arrays[] = {&index, &length, &anchor, &lengthIndex, &runLength, &runAnchor};
    for (auto* array : arrays) *array = (Loose<int32_t>*)(void*)work, work += 4 * (ptrdiff_t)height;
  }
};

// Collects the runs and counts the rows that miss the anchor; false if a row has two runs.
bool collectRuns(const MorphSetup& setup, Rows& rows, int32_t& violations) {
  const int32_t width = setup.maskSize.width;
  for (int32_t y = 0; y < setup.maskSize.height; ++y) {
    const uint8_t* row = setup.mask + (ptrdiff_t)y * width;
    int32_t start = 0;
    while (start < width && !row[start]) ++start;
    if (start == width) continue;
    int32_t end = start;
    while (end < width && row[end]) ++end;
    for (int32_t x = end; x < width; ++x)
      if (row[x]) return false;
    if (start < rows.left) rows.left = start;
    if (end > rows.right) rows.right = end;
    if (setup.anchor.x < start || setup.anchor.x >= end) ++violations;
    rows.index[rows.count] = y;
    rows.length[rows.count] = end - start;
    rows.anchor[rows.count++] = setup.anchor.x - start;
  }
  if (setup.anchor.y < rows.index[0] || setup.anchor.y > rows.index[rows.count - 1]) ++violations;
  return true;
}

bool fillsItsBox(const Rows& rows) {
  for (int32_t i = 1; i < rows.count; ++i)
    if (rows.index[i] != rows.index[0] + i || rows.length[i] != rows.length[0] || rows.anchor[i] != rows.anchor[0])
      return false;
  return true;
}

// The table of different lengths, longest first; false if two rows of one length lie at different places.
bool tabulateLengths(Rows& rows) {
  for (int32_t i = 0; i < rows.count; ++i) {
    int32_t k = 0;
    while (k < rows.lengths && rows.runLength[k] > rows.length[i]) ++k;
    if (k < rows.lengths && rows.runLength[k] == rows.length[i]) {
      if (rows.runAnchor[k] != rows.anchor[i]) return false;
      continue;
    }
    for (int32_t j = rows.lengths++; j > k; --j)
      rows.runLength[j] = (int32_t)rows.runLength[j - 1], rows.runAnchor[j] = (int32_t)rows.runAnchor[j - 1];
    rows.runLength[k] = (int32_t)rows.length[i];
    rows.runAnchor[k] = (int32_t)rows.anchor[i];
  }
  for (int32_t i = 0; i < rows.count; ++i) {
    int32_t k = 0;
    while (rows.runLength[k] != rows.length[i]) ++k;
    rows.lengthIndex[i] = k;
  }
  return true;
}

bool selectsNothing(const MorphSetup& setup) {
  const ptrdiff_t count = (ptrdiff_t)setup.maskSize.width * setup.maskSize.height;
  for (ptrdiff_t i = 0; i < count; ++i)
    if (setup.mask[i]) return false;
  return true;
}

// In 32f with 3 and 4 channels small masks aren't worth a decomposition.
bool tooSmallForLengths(const MorphSetup& setup) {
  const int32_t positions = wrapMul(setup.maskSize.width, setup.maskSize.height);
  return setup.dataType == orvData32f &&
         ((setup.channels == 3 && positions < 17) || (setup.channels == 4 && positions < 49));
}

// The kind of a mask, with its shape.
int32_t classify(const MorphSetup& setup, Rows& rows, OrvMorphShape& shape) {
  shape.boxWidth = shape.boxHeight = 1;
  if (selectsNothing(setup)) return orvMorphEmpty;
  int32_t violations = setup.violations;
  if (!collectRuns(setup, rows, violations)) return orvMorphArbitrary;
  shape.boxWidth = rows.right - rows.left;
  shape.boxHeight = rows.index[rows.count - 1] - rows.index[0] + 1;
  shape.boxAnchorX = setup.anchor.x - rows.left;
  shape.boxAnchorY = setup.anchor.y - rows.index[0];
  if (fillsItsBox(rows)) return orvMorphRectangle;  // a rectangle may miss the anchor
  if (violations != 0 || tooSmallForLengths(setup) || !tabulateLengths(rows)) return orvMorphArbitrary;
  shape.rowCount = rows.count;
  shape.lengthCount = rows.lengths;
  return orvMorphEllipse;
}

// Lays the shape's arrays behind it; the next free byte.
uint8_t* layArrays(OrvMorphShape& shape, const Rows& rows, uint8_t* next) {
  const auto lay = [&](int32_t count, auto value) {
    auto* const array = (int32_t*)(void*)next;
    for (int32_t i = 0; i < count; ++i) loose(array)[i] = (int32_t)value(i);
    next += 4 * (ptrdiff_t)count;
    return array;
  };
  shape.rowIndex = lay(rows.count, [&](int32_t i) { return rows.index[i] - rows.index[0]; });
  shape.rowLengthIndex = lay(rows.count, [&](int32_t i) { return rows.lengthIndex[i]; });
  shape.runLength = lay(rows.lengths, [&](int32_t i) { return rows.runLength[i]; });
  shape.runAnchor = lay(rows.lengths, [&](int32_t i) { return rows.runAnchor[i]; });
  return next;
}

// 16 bytes for each position: the pattern if it is selected, else its complement. In 32f the patterns are the lowest
// and highest finite float, which differ in the sign alone.
void fillTable(uint8_t* table, const uint8_t* mask, ptrdiff_t positions, int32_t dataType, bool dilate) {
  for (ptrdiff_t i = 0; i < positions; ++i) {
    const bool high = (mask[i] != 0) == dilate;
    if (dataType == orvData8u) {
      memset(table + 16 * i, high ? 0xFF : 0, 16);
    } else {
      const uint32_t bits = high ? 0x7F7FFFFF : 0xFF7FFFFF, four[] = {bits, bits, bits, bits};
      memcpy(table + 16 * i, four, 16);
    }
  }
}

// Bytes in use, as the older family allocates them.
uint32_t usedBytes(const MorphSetup& setup, int32_t kind, const OrvMorphShape& shape) {
  const uint32_t copy = maskBytes(setup.maskSize), height = (uint32_t)setup.maskSize.height;
  const uint32_t pixel = (uint32_t)(setup.channels * morphElementBytes(setup.dataType));
  const uint32_t extended = (uint32_t)setup.roiWidth + (uint32_t)setup.maskSize.width;
  switch (kind) {
    case orvMorphEmpty:
      return copy + morphRecordBytes;
    case orvMorphRectangle:
      return copy + rankBytes(setup.dataType, setup.channels, setup.roiWidth, shape.boxHeight) + 128;
    case orvMorphEllipse:
      return copy + ringBytes(setup.dataType, setup.channels, setup.roiWidth, shape.boxHeight) +
             8 * (uint32_t)(shape.rowCount + shape.lengthCount) + 160;
    default:
      return 33 * copy + larger(((extended * pixel + 15) >> 4 << 5) * height, pixel * height) + 112;
  }
}

// Bytes of a row of the border copy. 16-bit types keep room for twice that beside an arbitrary mask.
int32_t strideOf(const MorphSetup& setup, int32_t kind) {
  const uint32_t pixels = (uint32_t)setup.roiWidth + (uint32_t)setup.maskSize.width;
  const uint32_t bytes = (uint32_t)(setup.channels * morphElementBytes(setup.dataType)) * pixels;
  const bool wide = morphElementBytes(setup.dataType) == 2 && kind == orvMorphArbitrary;
  return (int32_t)(wide ? 2 * roundUp(bytes, 16) : roundUp(bytes, 16));
}

// An address aligned to 16 at or after `next`, or `next` itself if the block has no room for that.
uint8_t* alignIfFits(uint8_t* next, ptrdiff_t bytes, const uint8_t* end) {
  const ptrdiff_t skip = (ptrdiff_t)(-(uintptr_t)next & 15);
  return end - next - bytes >= skip ? next + skip : next;
}

}  // namespace

int32_t ORV_VARIANT::morphStateBytes(int32_t dataType, int32_t channels, int32_t roiWidth, OrvSize maskSize) {
  const uint32_t copy = maskBytes(maskSize), height = (uint32_t)maskSize.height;
  if (dataType == packedBits) return (int32_t)(copy + morphRecordBytes);
  if (morphElementBytes(dataType) == 2) return (int32_t)(copy + 16 * height + 160);
  return (int32_t)(33 * copy + 16 * height + 160 + (uint32_t)morphScratchBytes(dataType, channels, roiWidth, maskSize));
}

int32_t ORV_VARIANT::morphScratchBytes(int32_t dataType, int32_t channels, int32_t roiWidth, OrvSize maskSize) {
  const uint32_t height = (uint32_t)maskSize.height;
  const uint32_t work = larger(rankBytes(dataType, channels, roiWidth, maskSize.height),
                               ringBytes(dataType, channels, roiWidth, maskSize.height));
  return (int32_t)(work + roundUp(height * 24, 16) + maskBytes(maskSize) + roundUp(height * 16 + 64, 16));
}

void ORV_VARIANT::buildMorphState(const MorphSetup& setup, OrvMorphState* block, uint8_t* work) {
  const int32_t type = setup.dataType;
  const bool tables = type == orvData8u || type == orvData32f;
  Rows rows(work, setup.maskSize.height);
  OrvMorphShape shape = {};
  const int32_t kind = classify(setup, rows, shape);
  const bool shaped = type != packedBits && !(tables && kind == orvMorphArbitrary);

  OrvMorphState state = {};
  auto* const start = (uint8_t*)(void*)block;
  uint8_t* next = start + morphRecordBytes;
  if (shaped) {
    state.shapeDesc = (OrvMorphShape*)(void*)next;
    const bool arrays = kind == orvMorphEllipse;
    const size_t shapeBytes = arrays ? sizeof shape : offsetof(OrvMorphShape, rowIndex);
    next += shapeBytes;
    if (arrays) next = layArrays(shape, rows, next);
    memcpy((void*)state.shapeDesc, (const void*)&shape, shapeBytes);
  }

  const bool boxed = setup.boxed && kind == orvMorphRectangle;
  const OrvSize size = boxed ? OrvSize{shape.boxWidth, shape.boxHeight} : setup.maskSize;
  const OrvPoint anchor = boxed ? OrvPoint{shape.boxAnchorX, shape.boxAnchorY} : setup.anchor;
  const ptrdiff_t positions = (ptrdiff_t)size.width * size.height;
  const uint8_t* const end = start + morphStateBytes(type, setup.channels, setup.roiWidth, setup.maskSize);
  state.maskCopy = alignIfFits(next, positions, end);
  if (boxed) memset(state.maskCopy, 1, (size_t)positions);
  else memcpy(state.maskCopy, setup.mask, (size_t)positions);
  const ptrdiff_t copyBytes = (ptrdiff_t)maskBytes(setup.maskSize);
  state.workArea = state.maskCopy + copyBytes;
  if (tables && kind != orvMorphEmpty) {
    state.erodeTable = state.workArea;
    state.dilateTable = state.erodeTable + 16 * copyBytes;
    state.workArea = state.dilateTable + 16 * copyBytes;
    // The 8u tables of erosion are high where nothing is selected, those of 32f too: min(src | entry) and
    // min(max(src, entry)) leave selected pixels as they are.
    fillTable(state.erodeTable, state.maskCopy, positions, type, false);
    fillTable(state.dilateTable, state.maskCopy, positions, type, true);
  } else if (!tables) {
    state.erodeTable = state.dilateTable = state.maskCopy;
  }

  const bool empty = kind == orvMorphEmpty;
  state.maskWidth = size.width;
  state.maskHeight = size.height;
  state.anchorX = empty && tables ? 0 : anchor.x;
  state.anchorY = empty && tables ? 0 : anchor.y;
  state.rightExtent = empty ? 0 : size.width - anchor.x - 1;
  state.bottomExtent = empty ? 0 : size.height - anchor.y - 1;
  state.rowStride = strideOf(setup, kind);
  state.totalSize = morphElementBytes(type) == 2 ? 0 : (int32_t)usedBytes(setup, kind, shape);
  state.dataType = type;
  state.channels = setup.channels;
  state.roiWidth = setup.roiWidth;
  state.marker = -1;
  state.shapeKind = kind;
  memcpy((void*)block, (const void*)&state, sizeof state);
}
