// Super-resolution: values worked by hand, chosen so that another order of additions shows.
// One body serves both variants.
#include <vector>
#include "framework/guarded.h"
#include "framework/image.h"
#include "framework/settings.h"
#include "framework/walker.h"

using namespace test;

namespace {

constexpr float huge = 16777216.f;  // 2^24: one more or less is lost

struct Table {
  OrvSRHNState* state = nullptr;
  int size;
  Table(int taps, const std::vector<float>& coefficients) : size(taps) {
    const int entries = (int)coefficients.size() / (taps * taps);
    CHECK((taps == 2 ? orviSRHNInitAlloc_PSF2x2 : orviSRHNInitAlloc_PSF3x3)(&state, coefficients.data(), entries) ==
          orvStatusOk);
  }
  ~Table() { CHECK((size == 2 ? orviSRHNFree_PSF2x2 : orviSRHNFree_PSF3x3)(state) == orvStatusOk); }
};

struct Arguments {
  float* image;
  int32_t step;
  const void* values;  // or classes
  const int32_t* positions;
  const uint16_t* psfIndex;
  float* residuals;
  int32_t count;
  const float* weights;
  const OrvSRHNState* state;
};

// All six functions by the same arguments.
struct Function {
  const char* name;
  int taps;
  bool residual;
  OrvStatus (*run)(const Arguments&);
};
#define RESIDUAL(size, type, T)                                                                         \
  {                                                                                                     \
#type, size[0] - '0', true, [](const Arguments& a) {                                                  \
     return orviSRHNCalcResidual_PSF##type(a.image, a.step, (const T*)a.values, a.positions, a.psfIndex, a.residuals, \
                                           a.count, a.state);                                                      \
   } \
  }
const Function functions[] = {
    RESIDUAL("2x2", 2x2_8u32f_C1R, uint8_t),
    RESIDUAL("2x2", 2x2_16u32f_C1R, uint16_t),
    RESIDUAL("3x3", 3x3_8u32f_C1R, uint8_t),
    RESIDUAL("3x3", 3x3_16u32f_C1R, uint16_t),
    {"gradient 2x2", 2, false,
     [](const Arguments& a) {
       return orviSRHNUpdateGradient_PSF2x2_32f_C1R(a.image, a.step, a.positions, a.psfIndex, a.residuals,
                                                    (const uint8_t*)a.values, a.count, a.weights, a.state);
     }},
    {"gradient 3x3", 3, false, [](const Arguments& a) {
       return orviSRHNUpdateGradient_PSF3x3_32f_C1R(a.image, a.step, a.positions, a.psfIndex, a.residuals,
                                                    (const uint8_t*)a.values, a.count, a.weights, a.state);
     }}};

}  // namespace

TEST(residuals) {
  const Table two(2, {1, 1, 1, 1, 0, 0.5f, 2, 0.25f});
  // 2^24 + 1 + 1 - 2^24 is 0 from the left, the value comes last
  const std::vector<float> image = {huge, 1, 7, 1, -huge, 9};
  const int32_t positions[2] = {0, 1};
  const uint16_t index[2] = {0, 1}, words[2] = {300, 4};
  const uint8_t bytes[2] = {3, 4};
  float r[2];
  CHECK(orviSRHNCalcResidual_PSF2x2_8u32f_C1R(image.data(), 12, bytes, positions, index, r, 2, two.state) == 0);
  CHECK(r[0] == -3 && r[1] == 0 * 1 + 0.5f * 7 - 2 * huge + 0.25f * 9 - 4, "%.9g %.9g", r[0], r[1]);
  // bottom-up: the second row of the patch lies before the first one
  const int32_t upwards[2] = {3, 4};
  CHECK(orviSRHNCalcResidual_PSF2x2_16u32f_C1R(image.data(), -12, words, upwards, index, r, 2, two.state) == 0);
  CHECK(r[0] == (1 - huge + huge) + 1 - 300 && r[1] == 4.5f + 2 + 1.75f - 4, "%.9g %.9g", r[0], r[1]);

  const Table three(3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  std::vector<float> patch(16);
  for (int i = 0; i < 16; ++i) patch[(size_t)i] = (float)i;
  const int32_t corner = 5;  // rows 5 6 7, 9 10 11, 13 14 15
  const uint16_t first = 0;
  CHECK(orviSRHNCalcResidual_PSF3x3_8u32f_C1R(patch.data(), 16, bytes, &corner, &first, r, 1, three.state) == 0);
  CHECK(r[0] == 5 + 12 + 21 + 36 + 50 + 66 + 91 + 112 + 135 - 3);
  patch[15] = huge * 2, patch[5] = -huge * 18;  // the last product meets what the others left of the first
  CHECK(orviSRHNCalcResidual_PSF3x3_16u32f_C1R(patch.data(), 16, words, &corner, &first, r, 1, three.state) == 0);
  float want = -huge * 18;
  for (const float product : {12.f, 21.f, 36.f, 50.f, 66.f, 91.f, 112.f, huge * 18, -300.f}) want += product;
  CHECK(r[0] == want, "%.9g, not %.9g", r[0], want);
}

TEST(gradients) {
  const Table two(2, {1, 2, 3, 4}), three(3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  const float weights[3] = {0, 1, 0.5f}, residuals[3] = {1e30f, 1, -huge};
  const uint8_t classes[3] = {0, 1, 2};
  const uint16_t index[3] = {0, 0, 0};
  // the first sample has weight 0; the others overlap in one pixel
  const int32_t positions[3] = {0, 0, 4};
  std::vector<float> g(9);
  CHECK(orviSRHNUpdateGradient_PSF2x2_32f_C1R(g.data(), 12, positions, index, residuals, classes, 3, weights,
                                              two.state) == 0);
  const float half = -huge / 2, want[9] = {1, 2, 0, 3, 4 + half, 2 * half, 0, 3 * half, 4 * half};
  for (int i = 0; i < 9; ++i) CHECK(g[(size_t)i] == want[i], "%d: %.9g", i, g[(size_t)i]);
  // a step of one float backwards: taps (0, 0) and (1, 1) are one pixel, which takes them in this order
  std::vector<float> line = {0, huge, 0};
  const float one = 1;
  const int32_t middle = 1;
  const Table order(2, {1, 0, 0, -huge});
  CHECK(orviSRHNUpdateGradient_PSF2x2_32f_C1R(line.data(), -4, &middle, index, &one, classes + 1, 1, weights,
                                              order.state) == 0);
  CHECK(line[1] == 0, "%.9g", line[1]);
  std::vector<float> square(9);
  CHECK(orviSRHNUpdateGradient_PSF3x3_32f_C1R(square.data() + 6, -12, positions, index, residuals + 1, classes + 1, 1,
                                              weights, three.state) == 0);
  for (int i = 0; i < 9; ++i) CHECK(square[(size_t)i] == (float)((2 - i / 3) * 3 + i % 3 + 1));
}

TEST(statuses) {
  for (const Function& f : functions) {
    const Context context(f.name);
    const Table table(f.taps, std::vector<float>(9 * 4, 1));
    float image[16] = {}, residual = -7, weight = 0;
    const uint16_t value[1] = {0}, index = 0;
    const int32_t position = 0;
    std::vector<Check<Arguments>> checks = {
        {"image", orvStatusNullPtr, [](Arguments& a) { a.image = nullptr; }},
        {"values", orvStatusNullPtr, [](Arguments& a) { a.values = nullptr; }},
        {"positions", orvStatusNullPtr, [](Arguments& a) { a.positions = nullptr; }},
        {"psfIndex", orvStatusNullPtr, [](Arguments& a) { a.psfIndex = nullptr; }},
        {"residuals", orvStatusNullPtr, [](Arguments& a) { a.residuals = nullptr; }},
        {"state", orvStatusNullPtr, [](Arguments& a) { a.state = nullptr; }},
        {"count", orvStatusSize, [](Arguments& a) { a.count = 0; }}};
    if (!f.residual) checks.push_back({"weights", orvStatusNullPtr, [](Arguments& a) { a.weights = nullptr; }});
    if (!f.residual) std::swap(checks[6], checks[7]);
    for (const int32_t step : {0, 4, 4 * f.taps - 4, 4 * f.taps + 1, -6})
      checks.push_back({"step", orvStatusStep, [=](Arguments& a) { a.step = step; }});
    Arguments valid{image, 4 * f.taps, value, &position, &index, &residual, 1, &weight, table.state};
    walkChecks<Arguments>(
        valid, checks, [&](Arguments& a) { return f.run(a); },
        [&] { return residual == -7 && std::count(image, image + 16, 0.f) == 16; });
    CHECK(f.run(valid) == orvStatusOk);
    valid.image += 8, valid.step = -8;
    CHECK(f.run(valid) == orvStatusOk);
  }
}

TEST(states) {
  OrvSRHNState* state = nullptr;
  const float coefficients[9] = {};
  const auto init = {orviSRHNInitAlloc_PSF2x2, orviSRHNInitAlloc_PSF3x3};
  for (const auto& make : init) {
    CHECK(make(nullptr, coefficients, 0) == orvStatusNullPtr && make(&state, nullptr, 0) == orvStatusNullPtr);
    CHECK(make(&state, coefficients, 0) == orvStatusSize && make(&state, coefficients, INT32_MAX) == orvStatusNoMem);
    const int32_t live = steeredLiveAllocations();
    for (int kth = 1; kth <= 2; ++kth) {
      steerFailAllocation(kth);
      CHECK(make(&state, coefficients, 1) == orvStatusNoMem && state == nullptr);
      CHECK(steeredLiveAllocations() == live);
    }
    steerFailAllocation(0);
  }
  CHECK(orviSRHNFree_PSF2x2(nullptr) == orvStatusNullPtr && orviSRHNFree_PSF3x3(nullptr) == orvStatusNullPtr);
}
