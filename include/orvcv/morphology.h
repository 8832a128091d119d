/* Morphology with a structuring mask: erosion, dilation, and what is composed of them.
 *
 * Mask: maskSize.width * maskSize.height bytes, row by row without gaps; a byte that isn't zero selects its position.
 * The mask is not reflected: erosion and dilation use it in the same orientation. The anchor, the position that lies on
 * the pixel of the result, is ((width - 1) >> 1, (height - 1) >> 1), left of and above the centre of an even mask.
 */
#ifndef ORVCV_MORPHOLOGY_H
#define ORVCV_MORPHOLOGY_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* Shapes of a mask. */
enum {
  orvMorphArbitrary = 0,
  orvMorphRectangle = 1, /* the selected positions fill their bounding box */
  orvMorphEllipse = 2,   /* each row one run around the anchor's column, equal lengths at equal places */
  orvMorphEmpty = 3      /* nothing is selected: erosion and dilation copy */
};

/* What is known of a shape that is not arbitrary. */
typedef struct {
  int32_t boxWidth, boxHeight;    /* bounding box of the selected positions; 1, 1 of an empty mask */
  int32_t boxAnchorX, boxAnchorY; /* the anchor in the box; of a rectangle it may lie outside */
  int32_t reserved[2];
  int32_t rowCount, lengthCount; /* ellipse: rows with a run, different run lengths */
  int32_t* rowIndex;             /* ellipse: for each such row its place below the first one */
  int32_t* rowLengthIndex;       /* ellipse: for each such row an index into the next two */
  int32_t* runLength;            /* ellipse: the lengths, strictly descending */
  int32_t* runAnchor;            /* ellipse: the anchor's place in a run of each length */
} OrvMorphShape;

/* A prepared mask: a block of memory that starts with this record, at any address. Its pointers lead into the block
 * itself, so it must not be moved. Filters only read it. A rectangle's shape record ends before its pointers. */
typedef struct {
  uint8_t* maskCopy;    /* of the mask; zeros if it is empty */
  uint8_t* erodeTable;  /* 8u, 32f: 16 bytes for each position, the neutral element of erosion unless selected */
  uint8_t* dilateTable; /* the same of dilation; both are the mask copy in other types, and null if it is empty */
  uint8_t* workArea;    /* behind the tables */
  OrvMorphShape* shapeDesc;
  int32_t maskWidth, maskHeight;
  int32_t anchorX, anchorY;
  int32_t rightExtent, bottomExtent; /* columns right of the anchor, rows below it; 0 of an empty mask */
  int32_t rowStride;                 /* bytes of a row of roiWidth pixels and a mask's width beside it */
  int32_t totalSize;                 /* bytes of the block in use; 0 in 16u and 16s */
  int32_t dataType;                  /* OrvDataType, 0 for packed bits */
  int32_t channels;
  int32_t roiWidth; /* the width it was built for */
  int32_t marker;   /* -1 */
  int32_t shapeKind;
} OrvMorphState;

#ifdef __cplusplus
}
#endif
#endif
