// Ascending sort of a vector in place.
//
// Quicksort with a partition that has no branch on the data, insertion sort for short ranges, heap sort for ranges that
// split badly too often: n log n at worst. It recurses into the shorter side, so the stack stays below 32 frames.
// A range whose left neighbour equals its pivot starts with copies of that value, which is the least of the range: they
// are set aside in one pass, so few distinct values cost less, not more.
#include "core/primitives.h"
#include "core/checks.h"
#include "core/image.h"

namespace {

using Number = Loose<double>;

void swap(Number* a, Number* b) {
  const double t = a->value;
  a->value = b->value;
  b->value = t;
}

void insertionSort(Number* first, Number* end) {
  for (Number* p = first + 1; p < end; ++p) {
    const double v = p->value;
    Number* q = p;
    for (; q > first && v < q[-1].value; --q) q->value = q[-1].value;
    q->value = v;
  }
}

// Moves the value at `hole` down a heap of n elements until no child is larger.
void siftDown(Number* heap, ptrdiff_t hole, ptrdiff_t n) {
  const double v = heap[hole].value;
  for (ptrdiff_t child; (child = 2 * hole + 1) < n; hole = child) {
    if (child + 1 < n && heap[child].value < heap[child + 1].value) ++child;
    if (!(v < heap[child].value)) break;
    heap[hole].value = heap[child].value;
  }
  heap[hole].value = v;
}

void heapSort(Number* first, Number* end) {
  const ptrdiff_t n = end - first;
  for (ptrdiff_t i = n / 2; i-- > 0;) siftDown(first, i, n);
  for (ptrdiff_t last = n - 1; last > 0; --last) {
    swap(first, first + last);
    siftDown(first, 0, last);
  }
}

// Puts the median of first, middle and last at the front.
void choosePivot(Number* first, Number* end) {
  Number *middle = first + (end - first) / 2, *last = end - 1;
  if (middle->value < first->value) swap(middle, first);
  if (last->value < first->value) swap(last, first);
  if (last->value < middle->value) swap(last, middle);
  swap(first, middle);
}

// Values for which goesLeft(value) holds come first; returns the first of the others.
template <class GoesLeft>
Number* partition(Number* first, Number* end, const GoesLeft& goesLeft) {
  Number* border = first;
  for (Number* p = first; p < end; ++p) {
    const double v = p->value;
    p->value = border->value;
    border->value = v;
    border += goesLeft(v);
  }
  return border;
}

// `lowest` tells that no neighbour stands left of the range; `badSplits` more lopsided ones are allowed.
void sortRange(Number* first, Number* end, bool lowest, int badSplits) {
  while (end - first > 24) {
    if (badSplits == 0) return heapSort(first, end);
    choosePivot(first, end);
    const double pivot = first->value;
    if (!lowest && !(first[-1].value < pivot)) {
      first = partition(first + 1, end, [=](double v) { return !(pivot < v); });
      continue;
    }
    Number* const middle = partition(first + 1, end, [=](double v) { return v < pivot; }) - 1;
    swap(first, middle);
    const ptrdiff_t left = middle - first, right = end - middle - 1;
    if ((left < right ? left : right) < (end - first) / 8) --badSplits;
    if (left < right) {
      sortRange(first, middle, lowest, badSplits);
      first = middle + 1;
      lowest = false;
    } else {
      sortRange(middle + 1, end, false, badSplits);
      end = middle;
    }
  }
  insertionSort(first, end);
}

}  // namespace

OrvStatus orvsSortAscend_64f_I(double* srcDst, int32_t length) {
  ORV_REQUIRE(allSet(srcDst), orvStatusNullPtr);
  ORV_REQUIRE(length >= 1, orvStatusSize);
  if (length == 1) return orvStatusOk;
  Number* const first = loose(srcDst);
  Number* const end = partition(first, first + length, [](double v) { return v == v; });  // NaNs last
  sortRange(first, end, true, 32 - __builtin_clz((uint32_t)length));
  return orvStatusOk;
}
