// The record of a prepared mask: sizes, construction, reading. The record and all of its pieces may lie at any address.
//
//   | record, 96 bytes | shape | rows and lengths of an ellipse | mask copy | erosion table | dilation table | work
//   area
//
// The shape takes 64 bytes of an ellipse, 32 of others, none of an arbitrary mask in 8u and 32f and of packed bits. The
// mask copy is aligned to 16 where the block has room for it; only 8u and 32f have tables of their own.
#pragma once
#include <string.h>
#include "morph/names.h"
#include "core/checks.h"
#include "core/image.h"

namespace ORV_VARIANT {

// What a record is made for. Two families build records: by default the anchor is that of the mask's centre, the
// classification starts with one violation in 8u, 32f and packed bits, so that these never reach orvMorphEllipse, and
// the record speaks of the whole mask. The older family counts from 0 and keeps a rectangle's bounding box alone.
struct MorphSetup {
  int32_t dataType;  // OrvDataType, 0 for packed bits
  int32_t channels;
  int32_t roiWidth;
  OrvSize maskSize;
  const uint8_t* mask;
  OrvPoint anchor;
  int32_t violations;
  bool boxed;
};

enum : int32_t { packedBits = 0, morphRecordBytes = 96 };

static constexpr int32_t morphElementBytes(int32_t dataType) {
  return dataType == orvData32f ? 4 : dataType == orvData16u || dataType == orvData16s ? 2 : 1;
}

static inline OrvPoint centreAnchor(OrvSize maskSize) {
  return {(maskSize.width - 1) >> 1, (maskSize.height - 1) >> 1};
}

// The setup of the records with a border argument, in the caller's memory. Of these only 16-bit types take ellipses.
static inline MorphSetup borderSetup(int32_t dataType, int32_t channels, int32_t roiWidth, const uint8_t* mask,
                                     OrvSize maskSize, OrvPoint anchor) {
  return {dataType, channels, roiWidth, maskSize, mask, anchor, morphElementBytes(dataType) == 2 ? 0 : 1, false};
}

// Reported sizes, 32 bits that wrap: of the block of a record, and of the scratch that building it and filtering take.
int32_t morphStateBytes(int32_t dataType, int32_t channels, int32_t roiWidth, OrvSize maskSize);
int32_t morphScratchBytes(int32_t dataType, int32_t channels, int32_t roiWidth, OrvSize maskSize);

// Builds the record in a block of morphStateBytes(). `work`: 24 bytes for each row of the mask, at any address.
void buildMorphState(const MorphSetup& setup, OrvMorphState* block, uint8_t* work);

static inline OrvMorphState readMorphState(const OrvMorphState* state) {
  OrvMorphState copy;
  memcpy(&copy, (const void*)state, sizeof copy);
  return copy;
}
// The shape of a mask that isn't arbitrary, up to its pointers.
static inline OrvMorphShape readMorphShape(const OrvMorphState& state) {
  OrvMorphShape copy = {};
  memcpy((void*)&copy, (const void*)state.shapeDesc, offsetof(OrvMorphShape, rowIndex));
  return copy;
}

}  // namespace ORV_VARIANT
