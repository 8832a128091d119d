// Making, measuring, turning and releasing classifiers; their block, word by word.
// One body serves both variants.
#include <string.h>
#include "detect/haar_cases.h"
#include "framework/harness.h"
#include "framework/steered_core.h"

using namespace test;

namespace {

// The four features have 4, 2, 3 and 1 rectangles.
template <class V>
struct Arrays {
  OrvRect rects[10] = {{4, 3, 2, 2}, {5, 2, 3, 4}, {1, 6, 2, 1}, {9, 9, 1, 5}, {3, 2, 1, 1},
                       {6, 5, 2, 3}, {7, 4, 4, 2}, {2, 8, 3, 2}, {8, 7, 5, 6}, {5, 5, 1, 1}};
  V weights[10] = {-1, 2, -1, 3, 4, -1, 5, -1, 6, 7}, thresholds[4] = {1, 2, 3, 4}, below[4] = {5, 6, 7, 8},
    above[4] = {9, 10, 11, 12};
  int32_t counts[4] = {4, 2, 3, 1}, featureCount = 4;
};

template <class V>
OrvStatus make(OrvHaarClassifier** s, const Arrays<V>& a, bool tilted) {
  return makeClassifier(tilted, s, a.rects, a.weights, a.thresholds, a.below, a.above, a.counts, a.featureCount);
}

// Compares 32-bit words of the block from a byte offset on.
void expectWords(const OrvHaarClassifier* state, size_t offset, std::initializer_list<int32_t> expected) {
  for (const int32_t want : expected) {
    int32_t got;
    memcpy(&got, (const uint8_t*)(const void*)state + offset, 4);
    CHECK(got == want, "word at %d is %d, not %d", (int)offset, (int)got, (int)want);
    offset += 4;
  }
}
constexpr size_t tagOf(size_t feature) { return 56 + 32 * feature + 28; }
constexpr size_t cornersOf(size_t rect) { return 56 + 32 * 4 + 36 * rect; }

template <class V>
void layout() {
  Arrays<V> a;
  OrvHaarClassifier* s;
  OrvSize size;
  CHECK(make(&s, a, false) == orvStatusOk);
  expectWords(s, 0, {4, 10});
  expectWords(s, 16, {1, 2, 12, 11, 0});  // the bound keeps its height where a lower rectangle meets a higher top
  isFloat<V> ? expectWords(s, 36, {1, 2, 10, 0}) : expectWords(s, 36, {10, 1, 2, 0});
  for (size_t i = 0; i < 4; ++i) expectWords(s, tagOf(i), {"\1\2\0\3"[i] << 8});
  expectWords(s, cornersOf(1), {8, 8, 6, 8, 8, 5, 6, 5});
  CHECK(sizeOf<V>(s, &size) == orvStatusOk && size.width == 13 && size.height == 14);
  CHECK(release<V>(s) == orvStatusOk);

  a.weights[4] = a.weights[6] = a.weights[9] = -1;
  CHECK(make(&s, a, true) == orvStatusOk);
  expectWords(s, 16, {1, 2, 8, 16, 1});
  isFloat<V> ? expectWords(s, 36, {0, 0, 10, 1}) : expectWords(s, 36, {10, 0, 0, 1});
  for (size_t i = 0; i < 4; ++i) expectWords(s, tagOf(i), {((int32_t)i << 8) | 1});
  expectWords(s, cornersOf(5), {5, 10, 3, 8, 8, 7, 6, 5});
  CHECK(sizeOf<V>(s, &size) == orvStatusOk && size.width == 13 && size.height == 18);
  CHECK(release<V>(s) == orvStatusOk);
}

template <class V>
void turning() {
  const uint8_t none[4] = {}, mask[4] = {0, 1, 0, 9};
  for (const int32_t flag : {5, 0}) {
    OrvHaarClassifier* s;
    make(&s, Arrays<V>(), false);
    CHECK(tilt<V>(none, flag, s) == orvStatusOk && tilt<V>(mask, flag, s) == orvStatusOk);
    CHECK(tilt<V>(mask, flag, s) == orvStatusBadArg, "turned twice");
    expectWords(s, 32, {1});
    for (size_t i = 0; i < 4; ++i) expectWords(s, tagOf(i), {i == 0 || i == 3 ? 1 : "\0\2\0"[i] << 8});
    flag ? expectWords(s, cornersOf(1), {5, 10, 3, 8, 8, 7, 6, 5})
         : expectWords(s, cornersOf(1), {6, 8, 3, 5, 8, 6, 5, 3});
    expectWords(s, cornersOf(2), {11, 6, 7, 6, 11, 4, 7, 4});
    release<V>(s);
    make(&s, Arrays<V>(), true);
    CHECK(tilt<V>(none, flag, s) == orvStatusBadArg && tilt<V>(nullptr, flag, s) == orvStatusNullPtr);
    release<V>(s);
  }
  OrvSize size;
  CHECK(sizeOf<V>(nullptr, &size) == orvStatusNullPtr && release<V>(nullptr) == orvStatusNullPtr);
}

template <class V>
void refusals(bool tilted) {
  int place;
  OrvHaarClassifier *const here = (OrvHaarClassifier*)(void*)&place, *s;
  const auto status = [&](const Arrays<V>& a) { return make(&s, a, tilted); };
  const auto refused = [&](OrvStatus expected, auto change) {
    Arrays<V> a;
    a.rects[2].x = -1, change(a);
    s = here;
    const OrvStatus got = status(a);
    CHECK(got == expected && s == (tilted && got == orvStatusBadArg ? nullptr : here), "%d", (int)got);
    CHECK(steeredLiveAllocations() == 0);
  };
  refused(orvStatusBadArg, [](Arrays<V>&) {});
  refused(orvStatusSize, [](Arrays<V>& a) { a.counts[1] = 0; });
  refused(orvStatusSize, [](Arrays<V>& a) { a.featureCount = -1; });
  refused(orvStatusBadArg, [](Arrays<V>& a) { a.rects[2] = {5, 5, 3, 0}; });
  if (tilted) refused(orvStatusBadArg, [](Arrays<V>& a) { a.rects[2] = {5, 5, 1, 7}; });
  steerFailAllocation(1);
  refused(tilted ? orvStatusNoMem : orvStatusBadArg, [](Arrays<V>&) {});
  steerFailAllocation(1);
  refused(orvStatusNoMem, [](Arrays<V>& a) { a.rects[2].x = 1; });
  steerFailAllocation(0);
  Arrays<V> a;
  CHECK(make(nullptr, a, tilted) == orvStatusNullPtr);
  a.rects[2] = {6, 5, 1, 7};  // a tilted one just reaches column -1
  CHECK(status(a) == orvStatusOk && release<V>(s) == orvStatusOk);
  a.featureCount = 0;
  OrvSize size = {7, 7};
  CHECK(status(a) == orvStatusOk && sizeOf<V>(s, &size) == orvStatusOk && size.width == 0 && size.height == 0);
  release<V>(s);
}

}  // namespace

TEST(layout) { layout<int32_t>(), layout<float>(); }
TEST(turning) { turning<int32_t>(), turning<float>(); }
TEST(refusals) {
  for (const bool tilted : {false, true}) refusals<int32_t>(tilted), refusals<float>(tilted);
}
