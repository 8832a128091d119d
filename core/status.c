/* Texts of statuses. */
#include "orvcore.h"

const char* orvGetStatusString(OrvStatus status) {
  switch (status) {
    case orvStatusOk:
      return "no error";
    case orvStatusDivByZeroWarn:
      return "warning: the denominator of a relative norm is zero";
    case orvStatusSizeOverflowWarn:
      return "warning: a reported size exceeds 32 bits";
    case orvStatusLinesFullWarn:
      return "warning: the list of lines is full";
    case orvStatusSymKernelWarn:
      return "warning: the kernel is not symmetric, its left half was taken";
    case orvStatusRoiClippedWarn:
      return "warning: the region was clipped to the image";
    case orvStatusError:
      return "general error";
    case orvStatusBadArg:
      return "an argument is out of its range";
    case orvStatusSize:
      return "a width, height or length is below 1";
    case orvStatusRange:
      return "a lower bound is above its upper bound";
    case orvStatusNullPtr:
      return "a required pointer is null";
    case orvStatusNoMem:
      return "memory is short";
    case orvStatusOutOfRange:
      return "a seed, point or threshold is outside its allowed range";
    case orvStatusDataType:
      return "the data type is not supported";
    case orvStatusStep:
      return "a row step is smaller than a row of the region";
    case orvStatusContext:
      return "a state record is not initialised or of another kind";
    case orvStatusThreshold:
      return "the threshold is negative";
    case orvStatusMaskSize:
      return "the mask size is not supported";
    case orvStatusAnchor:
      return "the anchor is outside the mask or kernel";
    case orvStatusChannelCount:
      return "the channel count is neither 1 nor 3";
    case orvStatusCoi:
      return "the channel of interest is not in 1..3";
    case orvStatusChannels:
      return "the channel count is not supported";
    case orvStatusMetric:
      return "a distance coefficient is out of range or order";
    case orvStatusStepAlign:
      return "a row step is not a whole number of elements";
    case orvStatusBorder:
      return "the border type is not supported";
    case orvStatusNorm:
      return "the norm is not supported";
    case orvStatusFilterType:
      return "the gradient filter is not supported";
    case orvStatusInPlace:
      return "source and destination are the same buffer";
    case orvStatusNotSupported:
      return "the comparison is not supported";
    default:
      return "unknown status";
  }
}
