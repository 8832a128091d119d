/* Morphology with a structuring mask: erosion, dilation, and what is composed of them.
 *
 * Mask: maskSize.width * maskSize.height bytes, row by row without gaps; a byte that isn't zero selects its position.
 * The mask is not reflected: erosion and dilation use it in the same orientation. The anchor, the position that lies on
 * the pixel of the result, is ((width - 1) >> 1, (height - 1) >> 1), left of and above the centre of an even mask.
 *
 * Images: 8u with 1, 3 or 4 channels, 16u and 16s with one, 32f with 1, 3 or 4, and packed bits (1u): pixel p of a row
 * is bit (offset + p) & 7, the least significant first, of byte (offset + p) >> 3 behind the row's pointer; offsets are
 * not negative and may exceed 7, and no bit beside the region is changed. Channels are filtered independently.
 *
 * Borders. borderType is orvBorderRepl, with flags for sides that are real memory, or orvBorderInMem, which means all
 * four sides whatever flags stand beside it. Pixels beyond a side that isn't in memory repeat the nearest pixel of the
 * region, columns and rows each by themselves. Sides in memory are read as far as the mask reaches from the region.
 * borderValue is never read.
 *
 * Threads. Filters run on the caller's thread. All functions may be called from any number of threads at once; a
 * prepared mask may be shared, a buffer may not.
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

/* Sizes in bytes of the record with what lies behind it, and of the scratch buffer that Init and the filters take, for
 * regions of at most roiWidth pixels a row. Both may lie at any address. 32-bit arithmetic that wraps.
 * Returns, in order: orvStatusNullPtr (specSize, bufferSize), orvStatusSize (roiWidth, mask width or height below 1).
 */
OrvStatus orviMorphologyBorderGetSize_1u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                             int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_8u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                             int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_8u_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                             int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_8u_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                             int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_16u_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                              int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_16s_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                              int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_32f_C1R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                              int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_32f_C3R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                              int32_t* bufferSize);
OrvStatus orviMorphologyBorderGetSize_32f_C4R(int32_t roiWidth, OrvSize maskSize, int32_t* specSize,
                                              int32_t* bufferSize);

/* Prepares a mask in the caller's memory. There is nothing to free; another Init may use the memory again.
 * Returns, in order: orvStatusNullPtr (mask, state, buffer), orvStatusSize (roiWidth, mask width or height below 1). */
OrvStatus orviMorphologyBorderInit_1u_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvMorphState* state,
                                          uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_8u_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvMorphState* state,
                                          uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_8u_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvMorphState* state,
                                          uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_8u_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize, OrvMorphState* state,
                                          uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_16u_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                                           OrvMorphState* state, uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_16s_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                                           OrvMorphState* state, uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_32f_C1R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                                           OrvMorphState* state, uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_32f_C3R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                                           OrvMorphState* state, uint8_t* buffer);
OrvStatus orviMorphologyBorderInit_32f_C4R(int32_t roiWidth, const uint8_t* mask, OrvSize maskSize,
                                           OrvMorphState* state, uint8_t* buffer);

/* Erosion and dilation (J. Serra, "Image Analysis and Mathematical Morphology", 1982):
 *
 *   dst(x, y) = min, or max, of src(x + j - anchorX, y + i - anchorY) over the selected positions (i, j)
 *
 * An empty mask copies. 32f: the result of a NaN in a window is unspecified, and so is the sign of a zero; an arbitrary
 * mask folds from the largest finite value (erosion) or the lowest (dilation), so a window of nothing but infinities of
 * that sign gives it.
 * Returns, in order: orvStatusNullPtr (src, dst, state, buffer), orvStatusSize (1u: a negative bit offset),
 * orvStatusSize (region), orvStatusStep (a step below a row; 1u: below (width + 7) / 8, whatever the offset),
 * orvStatusStepAlign (16u, 16s, 32f), orvStatusBorder, orvStatusSize (a region wider than the record's, all but 1u),
 * orvStatusInPlace (16u, 16s, 1u: src equals dst; in other types the result is unspecified then). */
OrvStatus orviErodeBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst,
                                 int32_t dstStep, int32_t dstBitOffset, OrvSize roiSize, OrvBorderType borderType,
                                 uint8_t borderValue, const OrvMorphState* state, uint8_t* buffer);
OrvStatus orviDilateBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst,
                                  int32_t dstStep, int32_t dstBitOffset, OrvSize roiSize, OrvBorderType borderType,
                                  uint8_t borderValue, const OrvMorphState* state, uint8_t* buffer);
OrvStatus orviErodeBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                 OrvBorderType borderType, uint8_t borderValue, const OrvMorphState* state,
                                 uint8_t* buffer);
OrvStatus orviDilateBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, uint8_t borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviErodeBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                 OrvBorderType borderType, uint8_t borderValue, const OrvMorphState* state,
                                 uint8_t* buffer);
OrvStatus orviDilateBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, uint8_t borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviErodeBorder_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                 OrvBorderType borderType, uint8_t borderValue, const OrvMorphState* state,
                                 uint8_t* buffer);
OrvStatus orviDilateBorder_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, uint8_t borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviErodeBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, uint16_t borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviDilateBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                   OrvSize roiSize, OrvBorderType borderType, uint16_t borderValue,
                                   const OrvMorphState* state, uint8_t* buffer);
OrvStatus orviErodeBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, int16_t borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviDilateBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep, OrvSize roiSize,
                                   OrvBorderType borderType, int16_t borderValue, const OrvMorphState* state,
                                   uint8_t* buffer);
OrvStatus orviErodeBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, float borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviDilateBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   OrvBorderType borderType, float borderValue, const OrvMorphState* state,
                                   uint8_t* buffer);
OrvStatus orviErodeBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, float borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviDilateBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   OrvBorderType borderType, float borderValue, const OrvMorphState* state,
                                   uint8_t* buffer);
OrvStatus orviErodeBorder_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                  OrvBorderType borderType, float borderValue, const OrvMorphState* state,
                                  uint8_t* buffer);
OrvStatus orviDilateBorder_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                   OrvBorderType borderType, float borderValue, const OrvMorphState* state,
                                   uint8_t* buffer);

/* A prepared pair of masks: the caller's, and the same turned by 180 degrees for the second fold of an opening or
 * closing. In the caller's memory the record is followed at once by the two prepared masks. */
typedef struct {
  OrvMorphState*
      forwardState;           /* for regions of roiSize.width + maskSize.width - 1 pixels a row (allocated: as given) */
  OrvMorphState* turnedState; /* for regions of roiSize.width pixels a row */
  uint8_t* tempImage;         /* image of the gradient: in the buffer given to Init, or memory of the record's own */
  int32_t tempSize;           /* its bytes, which no intermediate image may exceed */
  int32_t bufferHalf;         /* scratch bytes of one fold; 0 of an allocated record */
} OrvMorphAdvState;

/* Sizes in bytes of the record with what lies behind it, and of the buffer that Init and the filters take, for regions
 * of at most roiSize. Both may lie at any address. 32-bit arithmetic that wraps.
 * Returns, in order: orvStatusNullPtr (specSize, bufferSize), orvStatusSize (region or mask). */
OrvStatus orviMorphAdvGetSize_1u_C1R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_8u_C1R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_8u_C3R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_8u_C4R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_16u_C1R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_16s_C1R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_32f_C1R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_32f_C3R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);
OrvStatus orviMorphAdvGetSize_32f_C4R(OrvSize roiSize, OrvSize maskSize, int32_t* specSize, int32_t* bufferSize);

/* Prepares both masks in the caller's memory. `buffer` has the reported size here too, and must stay valid as long as
 * gradients are computed with the record: its intermediate image lies there. There is nothing to free.
 * Returns, in order: orvStatusNullPtr (mask, state, buffer), orvStatusSize (region or mask). */
OrvStatus orviMorphAdvInit_1u_C1R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                  uint8_t* buffer);
OrvStatus orviMorphAdvInit_8u_C1R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                  uint8_t* buffer);
OrvStatus orviMorphAdvInit_8u_C3R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                  uint8_t* buffer);
OrvStatus orviMorphAdvInit_8u_C4R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                  uint8_t* buffer);
OrvStatus orviMorphAdvInit_16u_C1R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                   uint8_t* buffer);
OrvStatus orviMorphAdvInit_16s_C1R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                   uint8_t* buffer);
OrvStatus orviMorphAdvInit_32f_C1R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                   uint8_t* buffer);
OrvStatus orviMorphAdvInit_32f_C3R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                   uint8_t* buffer);
OrvStatus orviMorphAdvInit_32f_C4R(OrvSize roiSize, const uint8_t* mask, OrvSize maskSize, OrvMorphAdvState* state,
                                   uint8_t* buffer);

/* Opening: erosion, then dilation under the turned mask. Closing: dilation, then erosion under the turned mask. Sides
 * that aren't in memory are repeated in each of the two: in the second it is the filtered image whose border is
 * repeated. Beyond sides in memory the first fold goes on as far as the second reads, so with all four of them the
 * result is that of an image without end; the source is then read up to maskSize - 1 pixels beyond the region.
 *
 *   top-hat    src - opening          black-hat   closing - src          gradient   dilation - erosion
 *
 * Differences saturate: unsigned and packed bits at 0 (bit by bit: a and not b), 16s at both ends of its range (so
 * negative ones stay), 32f ones below 0, and -0, become +0. An empty mask opens and closes to a copy.
 *
 * src may equal dst in an opening or closing; a hat of it is 0 then. A record may be shared by threads that filter with
 * a buffer each, but for gradients, which write tempImage. With an allocated record the buffer has the size that
 * GetSize reports for the same region and mask.
 *
 * Returns, in order: orvStatusNullPtr (src, dst, state, buffer), orvStatusSize (1u: a negative bit offset),
 * orvStatusSize (region), orvStatusStep (a step below a row), orvStatusStepAlign (16u, 16s, 32f), orvStatusBorder,
 * orvStatusSize (a region larger than the record was made for, or whose intermediate image is larger than tempSize:
 * it has (bytes of the first fold's row + 31) & ~31 bytes a row, packed bits as many bytes as pixels); gradients of
 * 16u, 16s and 1u then orvStatusInPlace (src equals dst). */
OrvStatus orviMorphOpenBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst,
                                     int32_t dstStep, int32_t dstBitOffset, OrvSize roiSize, OrvBorderType borderType,
                                     uint8_t borderValue, OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphCloseBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst,
                                      int32_t dstStep, int32_t dstBitOffset, OrvSize roiSize, OrvBorderType borderType,
                                      uint8_t borderValue, OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphTophatBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst,
                                       int32_t dstStep, int32_t dstBitOffset, OrvSize roiSize, OrvBorderType borderType,
                                       uint8_t borderValue, OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst,
                                         int32_t dstStep, int32_t dstBitOffset, OrvSize roiSize,
                                         OrvBorderType borderType, uint8_t borderValue, OrvMorphAdvState* state,
                                         uint8_t* buffer);
OrvStatus orviMorphGradientBorder_1u_C1R(const uint8_t* src, int32_t srcStep, int32_t srcBitOffset, uint8_t* dst,
                                         int32_t dstStep, int32_t dstBitOffset, OrvSize roiSize,
                                         OrvBorderType borderType, uint8_t borderValue, OrvMorphAdvState* state,
                                         uint8_t* buffer);
OrvStatus orviMorphOpenBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                     OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphCloseBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                      OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphTophatBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                       OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                       OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                         OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_8u_C1R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                         OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphOpenBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                     OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphCloseBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                      OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphTophatBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                       OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                       OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                         OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_8u_C3R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                         OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphOpenBorder_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                     OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                     OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphCloseBorder_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                      OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                      OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphTophatBorder_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                       OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                       OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                         OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_8u_C4R(const uint8_t* src, int32_t srcStep, uint8_t* dst, int32_t dstStep,
                                         OrvSize roiSize, OrvBorderType borderType, uint8_t borderValue,
                                         OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphOpenBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, OrvBorderType borderType, uint16_t borderValue,
                                      OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphCloseBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                       OrvSize roiSize, OrvBorderType borderType, uint16_t borderValue,
                                       OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphTophatBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                        OrvSize roiSize, OrvBorderType borderType, uint16_t borderValue,
                                        OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, uint16_t borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_16u_C1R(const uint16_t* src, int32_t srcStep, uint16_t* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, uint16_t borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphOpenBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                      OrvSize roiSize, OrvBorderType borderType, int16_t borderValue,
                                      OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphCloseBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                       OrvSize roiSize, OrvBorderType borderType, int16_t borderValue,
                                       OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphTophatBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                        OrvSize roiSize, OrvBorderType borderType, int16_t borderValue,
                                        OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, int16_t borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_16s_C1R(const int16_t* src, int32_t srcStep, int16_t* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, int16_t borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphOpenBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                      uint8_t* buffer);
OrvStatus orviMorphCloseBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                       uint8_t* buffer);
OrvStatus orviMorphTophatBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                        OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                        uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_32f_C1R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphOpenBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                      uint8_t* buffer);
OrvStatus orviMorphCloseBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                       uint8_t* buffer);
OrvStatus orviMorphTophatBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                        OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                        uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_32f_C3R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphOpenBorder_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                      OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                      uint8_t* buffer);
OrvStatus orviMorphCloseBorder_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                       OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                       uint8_t* buffer);
OrvStatus orviMorphTophatBorder_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep, OrvSize roiSize,
                                        OrvBorderType borderType, float borderValue, OrvMorphAdvState* state,
                                        uint8_t* buffer);
OrvStatus orviMorphBlackhatBorder_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);
OrvStatus orviMorphGradientBorder_32f_C4R(const float* src, int32_t srcStep, float* dst, int32_t dstStep,
                                          OrvSize roiSize, OrvBorderType borderType, float borderValue,
                                          OrvMorphAdvState* state, uint8_t* buffer);

#ifdef __cplusplus
}
#endif
#endif
