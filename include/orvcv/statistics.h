/* Means, standard deviations and extrema of an image, of one of its channels, and of the pixels under a mask.
 *
 * Element types: 8u, 8s, 16u, 32f. Forms: C1R all pixels; C1MR those whose mask byte is not 0; C3CR and C3CMR the same
 * for one channel of a three-channel image, coi 1 to 3. The mask is a byte image, one byte a pixel. Steps are in bytes.
 *
 * Statuses, in this order: orvStatusNullPtr (src, mask, and mean of orviMean; the results of all others may be null and
 * are then left out), orvStatusSize (width, then height, below 1), orvStatusStep (srcStep below a row of the image,
 * then maskStep below the width), orvStatusStepAlign (16u, 32f: srcStep is no whole number of elements), orvStatusCoi
 * (coi outside 1 to 3). After a failure nothing has been written. No memory of the caller's is kept; any thread may
 * call.
 *
 * Precision: integers are summed exactly whatever the size, and rounded to a double once. 32f sums are 64-bit, in an
 * order that depends on the size and, for regions large enough to be shared by a team, on the number of threads: their
 * last bits may then differ from team to team, never from processor to processor.
 */
#ifndef ORVCV_STATISTICS_H
#define ORVCV_STATISTICS_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

/* mean = sum(x) / n over the n pixels taken; 0.0 if none is. */
OrvStatus orviMean_8u_C1MR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, OrvSize roiSize,
                           double* mean);
OrvStatus orviMean_8u_C3CMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, OrvSize roiSize,
                            int32_t coi, double* mean);
OrvStatus orviMean_8s_C1MR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, OrvSize roiSize,
                           double* mean);
OrvStatus orviMean_8s_C3CMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, OrvSize roiSize,
                            int32_t coi, double* mean);
OrvStatus orviMean_16u_C1MR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                            OrvSize roiSize, double* mean);
OrvStatus orviMean_16u_C3CMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                             OrvSize roiSize, int32_t coi, double* mean);
OrvStatus orviMean_32f_C1MR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, OrvSize roiSize,
                            double* mean);
OrvStatus orviMean_32f_C3CMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep, OrvSize roiSize,
                             int32_t coi, double* mean);

/* mean as above, and stdDev = sqrt(|sum(x * x) / n - mean * mean|), the deviation of a population. Where that formula
 * cancels too much for 32f (0.05 * mean * mean > stdDev * stdDev), stdDev = sqrt(sum((x - mean)^2) / n) is taken from
 * the image in a second pass. Both are 0.0 if no pixel is taken. Either pointer may be null. */
OrvStatus orviMean_StdDev_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_8u_C3CR(const uint8_t* src, int32_t srcStep, OrvSize roiSize, int32_t coi, double* mean,
                                  double* stdDev);
OrvStatus orviMean_StdDev_8u_C1MR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_8u_C3CMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                   OrvSize roiSize, int32_t coi, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_8s_C1R(const int8_t* src, int32_t srcStep, OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_8s_C3CR(const int8_t* src, int32_t srcStep, OrvSize roiSize, int32_t coi, double* mean,
                                  double* stdDev);
OrvStatus orviMean_StdDev_8s_C1MR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_8s_C3CMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                   OrvSize roiSize, int32_t coi, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_16u_C3CR(const uint16_t* src, int32_t srcStep, OrvSize roiSize, int32_t coi, double* mean,
                                   double* stdDev);
OrvStatus orviMean_StdDev_16u_C1MR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                   OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_16u_C3CMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    OrvSize roiSize, int32_t coi, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_32f_C1R(const float* src, int32_t srcStep, OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_32f_C3CR(const float* src, int32_t srcStep, OrvSize roiSize, int32_t coi, double* mean,
                                   double* stdDev);
OrvStatus orviMean_StdDev_32f_C1MR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                   OrvSize roiSize, double* mean, double* stdDev);
OrvStatus orviMean_StdDev_32f_C3CMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                    OrvSize roiSize, int32_t coi, double* mean, double* stdDev);

/* The smallest and the largest pixel taken, as floats, and where they are, relative to the region. Of equal pixels the
 * first counts, in the order of rows and then of columns. If no pixel is taken all results are 0. Infinities are
 * ordinary values; NaNs are passed over. Any of the four pointers may be null. The results are the same for every
 * number of threads. */
OrvStatus orviMinMaxIndx_8u_C1R(const uint8_t* src, int32_t srcStep, OrvSize roiSize, float* minVal, float* maxVal,
                                OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_8u_C3CR(const uint8_t* src, int32_t srcStep, OrvSize roiSize, int32_t coi, float* minVal,
                                 float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_8u_C1MR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                 OrvSize roiSize, float* minVal, float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_8u_C3CMR(const uint8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  OrvSize roiSize, int32_t coi, float* minVal, float* maxVal, OrvPoint* minIndex,
                                  OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_8s_C1R(const int8_t* src, int32_t srcStep, OrvSize roiSize, float* minVal, float* maxVal,
                                OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_8s_C3CR(const int8_t* src, int32_t srcStep, OrvSize roiSize, int32_t coi, float* minVal,
                                 float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_8s_C1MR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                 OrvSize roiSize, float* minVal, float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_8s_C3CMR(const int8_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  OrvSize roiSize, int32_t coi, float* minVal, float* maxVal, OrvPoint* minIndex,
                                  OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_16u_C1R(const uint16_t* src, int32_t srcStep, OrvSize roiSize, float* minVal, float* maxVal,
                                 OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_16u_C3CR(const uint16_t* src, int32_t srcStep, OrvSize roiSize, int32_t coi, float* minVal,
                                  float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_16u_C1MR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  OrvSize roiSize, float* minVal, float* maxVal, OrvPoint* minIndex,
                                  OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_16u_C3CMR(const uint16_t* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                   OrvSize roiSize, int32_t coi, float* minVal, float* maxVal, OrvPoint* minIndex,
                                   OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_32f_C1R(const float* src, int32_t srcStep, OrvSize roiSize, float* minVal, float* maxVal,
                                 OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_32f_C3CR(const float* src, int32_t srcStep, OrvSize roiSize, int32_t coi, float* minVal,
                                  float* maxVal, OrvPoint* minIndex, OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_32f_C1MR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                  OrvSize roiSize, float* minVal, float* maxVal, OrvPoint* minIndex,
                                  OrvPoint* maxIndex);
OrvStatus orviMinMaxIndx_32f_C3CMR(const float* src, int32_t srcStep, const uint8_t* mask, int32_t maskStep,
                                   OrvSize roiSize, int32_t coi, float* minVal, float* maxVal, OrvPoint* minIndex,
                                   OrvPoint* maxIndex);

#ifdef __cplusplus
}
#endif
#endif
