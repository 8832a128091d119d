// The layer steps against their plain forms, over whole pyramids; refusals; memory.
// One body serves both variants.
#include <math.h>
#include "framework/sweep.h"
#include "reference/pyramid_layer.h"

using namespace test;

namespace {

template <class T, class K, class State>
struct Calls {
  OrvStatus (*init)(State**, OrvSize, float, const K*, int32_t, int32_t);
  OrvStatus (*run)(const T*, int32_t, OrvSize, T*, int32_t, OrvSize, State*);
  OrvStatus (*free)(State*);
};
template <class T, class K>
struct Family {
  int channels;
  Calls<T, K, OrvPyramidDownState> down;
  Calls<T, K, OrvPyramidUpState> up;
};
#define CALLS(way, name) \
  { orviPyramidLayer##way##InitAlloc_##name, orviPyramidLayer##way##_##name, orviPyramidLayer##way##Free_##name }
#define FAMILY(channels, name) \
  { channels, CALLS(Down, name), CALLS(Up, name) }
const Family<uint8_t, int16_t> bytes[] = {FAMILY(1, 8u_C1R), FAMILY(3, 8u_C3R)};
const Family<uint16_t, int16_t> words[] = {FAMILY(1, 16u_C1R), FAMILY(3, 16u_C3R)};
const Family<float, float> floats[] = {FAMILY(1, 32f_C1R), FAMILY(3, 32f_C3R)};

// One step in every setting. `plain` makes a channel.
template <class V, class T, class State, class Run, class Plain>
void checkStep(Random& r, const Image<T>& src, OrvSize to, int channels, State* state, Run run, const Plain& plain) {
  const OrvSize from{src.elements() / channels, src.height()};
  const Context context(std::to_string(from.width) + "x" + std::to_string(from.height) + " to " +
                        std::to_string(to.width) + "x" + std::to_string(to.height));
  Image<T> dst(r, to.width, to.height, channels);
  std::vector<reference::Sheet<V>> want;
  for (int c = 0; c < channels; ++c)
    want.push_back(plain({from.width, from.height, [&](int y, int x) { return (V)src.at(x * channels + c, y); }}));
  forEachSetting((int64_t)from.width * from.height >= 32768, [&] {
    dst.restore();
    CHECK(run(src.data(), src.step(), from, dst.data(), dst.step(), to, state) == orvStatusOk);
    CHECK(src.unchanged());
    expectImage(dst, [&](int x, int y) { return (T)want[(size_t)(x % channels)](y, x / channels); });
  });
}

template <class T, class K>
std::vector<K> drawKernel(Random& r, int size) {
  std::vector<K> kernel((size_t)size, K(r.one(3) ? 0 : 1));  // a first tap of 0 is a case of its own
  const int half = size / 2;
  for (int i = 1; i <= half; ++i) kernel[(size_t)i] = (K)(r.in(1, 20) + 30 * i);
  if (r.one(4)) kernel[0] = (K)(-r.in(1, 9));
  if (size == 5 && r.one(2)) kernel = {1, 4, 6, 4, 1};
  if (r.one(8)) kernel[(size_t)half] = 0, kernel[0] = -1, kernel[1] = half > 1 ? (K)1 : kernel[1];  // a sum near 0
  for (int i = 0; i < half; ++i) kernel[(size_t)(size - 1 - i)] = kernel[(size_t)i];
  return kernel;
}

// Down through all levels, and up from each, with one state a way.
template <class T, class K>
void checkPyramid(Random& r, const Family<T, K>& call, OrvSize size, float rate, int kerSize) {
  using Plain = reference::PyramidLayerPlain<T, K>;
  using V = typename Plain::V;
  using W = typename Plain::W;
  std::vector<K> kernel = drawKernel<T, K>(r, kerSize);
  const Plain down(kernel, rate, false), up(kernel, rate, true);
  OrvStatus expected = orvStatusOk;
  if (r.one(5)) kernel.back() += 1, expected = orvStatusSymKernelWarn;  // changes nothing else
  const Context context("rate " + std::to_string(rate) + " C" + std::to_string(call.channels) + " taps " +
                        std::to_string(kerSize));
  OrvPyramidDownState* downState = nullptr;
  OrvPyramidUpState* upState = nullptr;
  steerThreads(7);
  CHECK(call.down.init(&downState, size, rate, kernel.data(), kerSize, 2) == expected);
  CHECK(call.up.init(&upState, size, rate, kernel.data(), kerSize, 2) == expected);
  for (int level = 0; level < 4; ++level) {
    Image<T> src(r, size.width, size.height, call.channels);
    src.fill(r, false);
    OrvSize below, least, most;
    orviGetPyramidDownROI(size, &below, rate);
    checkStep<V>(r, src, below, call.channels, downState, call.down.run,
                 [&](const reference::Sheet<V>& s) { return down.down(s, below, call.channels == 1); });
    orviGetPyramidUpROI(size, &least, &most, rate);
    const OrvSize above{r.in(least.width, most.width), r.in(least.height, most.height)};
    if (above.width * above.height < 20000)
      checkStep<W>(r, src, above, call.channels, upState, call.up.run,
                   [&](const reference::Sheet<W>& s) { return up.up(s, above); });
    if (below.height == size.height) break;  // the first level of a height decides for all that have it
    size = below;
  }
  CHECK(call.down.free(downState) == orvStatusOk && call.up.free(upState) == orvStatusOk);
}

template <class T, class K, class State>
void checkRefusals(const Calls<T, K, State>& call, int channels, OrvSize dstRoi) {
  const K kernel[] = {1, 2, 1};
  State* state = nullptr;
  std::vector<Told> bad = {badValue(2, 1), badValue(2, NAN), badValue(2, 10.5), badValue(4, 2), badValue(4, 1)};
  walkArguments("init", call.init, pointersThenSizes({0, 3}, 1) + bad + std::vector<Told>{badValue(5, 1)},
                Result<State*>(), Roi(), Value<float>({2}), Value<const K*>({kernel}), Value<int32_t>({3}),
                Value<int32_t>({2}));
  steerFailAllocation(1);
  CHECK(call.init(&state, {12, 8}, 2, kernel, 3, 2) == orvStatusNoMem && !state && steeredLiveAllocations() == 0);
  CHECK(call.init(&state, {12, 8}, 2, kernel, 3, 2) == orvStatusOk && call.free(nullptr) == orvStatusNullPtr);

  std::vector<Told> order = pointersThenSizes({0, 2, 4}, 1) + eachOf(Fault::smallStep, {0, 2});
  if (sizeof(T) > 1) order = order + eachOf(Fault::misalignedStep, {0, 2});
  walkArguments("layer", call.run, order, In<T>(channels), Roi(), Out<T>(channels), Value<OrvSize>({OrvSize{13, 99}}),
                Value<State*>({state}));
  Random r(seed());
  Image<T> src(r, 12, 8, channels), dst(r, dstRoi.width, dstRoi.height, channels);
  const auto run = [&](OrvSize to) {
    return call.run(src.data(), src.step(), {12, 8}, dst.data(), dst.step(), to, state);
  };
  for (const OrvSize to : {OrvSize{dstRoi.width, 3}, {1, dstRoi.height}})
    CHECK(run(to) == orvStatusSize && dst.unchanged());
  for (int kth = 1; kth <= 2; ++kth) {
    steerFailAllocation(kth);
    const bool fails = std::is_same<State, OrvPyramidUpState>::value;
    CHECK(run(dstRoi) == (fails ? orvStatusNoMem : orvStatusOk) && (!fails || dst.unchanged()));
    CHECK(steeredLiveAllocations() == 1);
  }
  steerFailAllocation(0);
  CHECK(run(dstRoi) == orvStatusOk && call.free(state) == orvStatusOk && steeredLiveAllocations() == 0);
}
template <class T, class K>
void checkFamilies(const Family<T, K> (&families)[2]) {
  Random r(seed());
  const float rates[] = {2, 2, 1.99999f, 1.99998f, 2.00002f, 1.5f, 1.0001f, 3.3f, 10, 1.25f, 2.00003f};
  for (int i = 0; i < (quick() ? 15 : 150); ++i) {
    const OrvSize size = i % 3 == 0 ? OrvSize{r.in(1, 9), r.in(1, 9)} : OrvSize{r.in(1, 70), r.in(1, 40)};
    checkPyramid(r, families[i % 2], size, rates[r.in(0, 10)], 2 * r.in(1, i % 5 == 0 ? 12 : 4) + 1);
  }
  checkPyramid(r, families[0], {331, 360}, 2, 5);
  checkPyramid(r, families[quick() ? 0 : 1], {260, 463}, 1.7f, 7);
  for (const auto& call : families) {
    checkRefusals(call.down, call.channels, {6, 4});
    checkRefusals(call.up, call.channels, {23, 15});
  }
}

}  // namespace

TEST(bytes_of_all_levels) { checkFamilies(bytes); }
TEST(words_of_all_levels) { checkFamilies(words); }
TEST(floats_of_all_levels) { checkFamilies(floats); }

// A source of another width, but a height of the table: the table decides, and the last column is repeated.
TEST(table_of_heights) {
  const int16_t kernel[] = {1, 2, 1};
  OrvPyramidDownState* state = nullptr;
  CHECK(orviPyramidLayerDownInitAlloc_8u_C1R(&state, {40, 40}, 2, kernel, 3, 2) == orvStatusOk);
  uint8_t src[10 * 40], dst[20 * 20];
  for (int i = 0; i < 400; ++i) src[i] = (uint8_t)(i % 10 * 20);
  CHECK(orviPyramidLayerDown_8u_C1R(src, 10, {10, 40}, dst, 5, {5, 20}, state) == orvStatusSize);
  CHECK(orviPyramidLayerDown_8u_C1R(src, 10, {10, 40}, dst, 20, {20, 20}, state) == orvStatusOk);
  for (int x = 5; x < 20; ++x) CHECK(dst[x] == dst[4] && dst[4] == 160);
  orviPyramidLayerDownFree_8u_C1R(state);
}
