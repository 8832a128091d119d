// Boundaries by priority, which the watershed draws with.
#pragma once
#include "segment/names.h"

extern "C" {
// As orviBoundSegments, but of two differing neighbours the one with the larger priority becomes `border`; with equal
// priorities it is the right or lower one. Pixels are compared row by row: with the pixel above, then with the right
// neighbour; where corners connect (`fourConnected` 0), the row's pixels are then compared with their upper left and
// upper right neighbours. Steps in bytes; no checks.
void ownBoundSegments_8u(uint8_t* markers, int32_t markerStep, const int32_t* priority, int32_t priorityStep,
                         OrvSize roiSize, uint8_t border, int32_t fourConnected);
void ownBoundSegments_16u(uint16_t* markers, int32_t markerStep, const int32_t* priority, int32_t priorityStep,
                          OrvSize roiSize, uint16_t border, int32_t fourConnected);
}
