/* Texts of statuses. */
#include <stddef.h>
#include "orvcore.h"

typedef struct {
  OrvStatus status;
  const char* text;
} StatusText;

static const StatusText statusTexts[] = {
    {orvStatusOk, "no error"},
    {orvStatusDivByZeroWarn, "warning: the denominator of a relative norm is zero"},
    {orvStatusSizeOverflowWarn, "warning: a reported size exceeds 32 bits"},
    {orvStatusLinesFullWarn, "warning: the list of lines is full"},
    {orvStatusSymKernelWarn, "warning: the kernel is not symmetric, its left half was taken"},
    {orvStatusRoiClippedWarn, "warning: the region was clipped to the image"},
    {orvStatusError, "general error"},
    {orvStatusBadArg, "an argument is out of its range"},
    {orvStatusSize, "a width, height or length is below 1"},
    {orvStatusRange, "a lower bound is above its upper bound"},
    {orvStatusNullPtr, "a required pointer is null"},
    {orvStatusNoMem, "memory is short"},
    {orvStatusOutOfRange, "a seed, point or threshold is outside its allowed range"},
    {orvStatusDataType, "the data type is not supported"},
    {orvStatusStep, "a row step is smaller than a row of the region"},
    {orvStatusContext, "a state record is not initialised or of another kind"},
    {orvStatusThreshold, "the threshold is negative"},
    {orvStatusMaskSize, "the mask size is not supported"},
    {orvStatusAnchor, "the anchor is outside the mask or kernel"},
    {orvStatusChannelCount, "the channel count is neither 1 nor 3"},
    {orvStatusCoi, "the channel of interest is not in 1..3"},
    {orvStatusChannels, "the channel count is not supported"},
    {orvStatusMetric, "a distance coefficient is out of range or order"},
    {orvStatusStepAlign, "a row step is not a whole number of elements"},
    {orvStatusBorder, "the border type is not supported"},
    {orvStatusNorm, "the norm is not supported"},
    {orvStatusFilterType, "the gradient filter is not supported"},
    {orvStatusInPlace, "source and destination are the same buffer"},
    {orvStatusNotSupported, "the comparison is not supported"},
};

const char* orvGetStatusString(OrvStatus status) {
  for (size_t i = 0; i < sizeof statusTexts / sizeof *statusTexts; i++) {
    if (statusTexts[i].status == status) return statusTexts[i].text;
  }
  return "unknown status";
}
