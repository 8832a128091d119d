// Super-resolution: residuals and gradients against their definition; statuses and states.
// One body serves both variants.
#include <vector>
#include "framework/sweep.h"

using namespace test;

namespace {

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

// All six functions by the same arguments. `bytes` of a value; gradients have classes of a byte.
struct Function {
  const char* name;
  int taps;
  bool residual;
  int bytes;
  OrvStatus (*run)(float* image, int32_t step, const void* values, const int32_t* positions, const uint16_t* psfIndex,
                   float* residuals, int32_t count, const float* weights, const OrvSRHNState*);
};
template <class T, auto f>
OrvStatus residual(float* image, int32_t step, const void* values, const int32_t* positions, const uint16_t* psfIndex,
                   float* residuals, int32_t count, const float*, const OrvSRHNState* state) {
  return f(image, step, (const T*)values, positions, psfIndex, residuals, count, state);
}
template <auto f>
OrvStatus gradient(float* image, int32_t step, const void* classes, const int32_t* positions, const uint16_t* psfIndex,
                   float* residuals, int32_t count, const float* weights, const OrvSRHNState* state) {
  return f(image, step, positions, psfIndex, residuals, (const uint8_t*)classes, count, weights, state);
}
const Function functions[] = {
    {"residual 2x2 8u", 2, true, 1, residual<uint8_t, orviSRHNCalcResidual_PSF2x2_8u32f_C1R>},
    {"residual 2x2 16u", 2, true, 2, residual<uint16_t, orviSRHNCalcResidual_PSF2x2_16u32f_C1R>},
    {"residual 3x3 8u", 3, true, 1, residual<uint8_t, orviSRHNCalcResidual_PSF3x3_8u32f_C1R>},
    {"residual 3x3 16u", 3, true, 2, residual<uint16_t, orviSRHNCalcResidual_PSF3x3_16u32f_C1R>},
    {"gradient 2x2", 2, false, 1, gradient<orviSRHNUpdateGradient_PSF2x2_32f_C1R>},
    {"gradient 3x3", 3, false, 1, gradient<orviSRHNUpdateGradient_PSF3x3_32f_C1R>}};

}  // namespace

// Samples that overlap, in images of either direction; numbers so different that another order of operations shows.
// A step of one float back makes taps fall on one pixel.
TEST(samples) {
  constexpr int n = 300, entries = 5;
  for (const Function& f : functions)
    for (const int stride : {12, f.taps, -12, -1}) {
      const Context context(std::string(f.name) + " stride " + std::to_string(stride));
      Random r(seed());
      const auto floats = [&](size_t count) {
        std::vector<float> list(count);
        for (float& v : list) v = randomElement<float>(r, false);
        return list;
      };
      std::vector<float> image = floats(144), residuals = floats(n), coefficients = floats(entries * 9);
      const std::vector<float> weights = floats(7);
      coefficients.resize((size_t)(entries * f.taps * f.taps));
      const Table table(f.taps, coefficients);
      std::vector<int32_t> positions(n);
      std::vector<uint16_t> psfIndex(n), values(n);
      for (size_t i = 0; i < n; ++i) {
        positions[i] = stride * r.in(0, 12 - f.taps) + r.in(0, 12 - f.taps),
        psfIndex[i] = (uint16_t)r.in(0, entries - 1);
        const int value = f.residual ? (int)r.next() : r.in(0, 6);
        if (f.bytes == 1) ((uint8_t*)values.data())[i] = (uint8_t)value;
        else values[i] = (uint16_t)value;
      }
      const size_t first = stride > 0 ? 0 : 132;
      std::vector<float> wantImage = image, wantResiduals = residuals;
      for (size_t i = 0; i < n; ++i) {
        const float* const c = &coefficients[(size_t)(psfIndex[i] * f.taps * f.taps)];
        const float value = f.bytes == 1 ? ((uint8_t*)values.data())[i] : values[i];
        const float w = f.residual ? 0 : weights[(size_t)value] * residuals[i];
        float sum = 0;
        for (int k = 0; k < f.taps * f.taps; ++k) {
          float& pixel = wantImage[(size_t)((int)first + positions[i] + k / f.taps * stride + k % f.taps)];
          sum += pixel * c[k];
          if (!f.residual) pixel += c[k] * w;
        }
        if (f.residual) wantResiduals[i] = sum - value;
      }
      CHECK(f.run(&image[first], 4 * stride, values.data(), positions.data(), psfIndex.data(), residuals.data(), n,
                  weights.data(), table.state) == orvStatusOk);
      CHECK(image == wantImage && residuals == wantResiduals);
    }
}

TEST(statuses) {
  for (const Function& f : functions) {
    const Table table(f.taps, std::vector<float>(9 * 4, 1));
    const uint16_t value = 0, index = 0;
    const int32_t position = 0;
    const float weight = 0;
    std::vector<Told> order = eachOf(Fault::null, {0, 1, 2, 3, 4, 7});
    if (!f.residual) order.push_back({Fault::null, 6});
    order.push_back(badValue(5, 0, orvStatusSize));
    for (const int32_t step : {0, 4, 4 * f.taps - 4, 4 * f.taps + 1, -6})
      order.push_back(badValue(0, step, orvStatusStep));
    walkArguments(f.name, f.run, order, Out<float>(), Value<const void*>({&value}), Value<const int32_t*>({&position}),
                  Value<const uint16_t*>({&index}), Result<float>(), Value<int32_t>({1}),
                  Value<const float*>({&weight}), Value<const OrvSRHNState*>({table.state}));
  }
}

TEST(states) {
  OrvSRHNState* state = nullptr;
  const float coefficients[9] = {};
  for (const auto& make : {orviSRHNInitAlloc_PSF2x2, orviSRHNInitAlloc_PSF3x3}) {
    CHECK(make(nullptr, coefficients, 0) == orvStatusNullPtr && make(&state, nullptr, 0) == orvStatusNullPtr);
    CHECK(make(&state, coefficients, 0) == orvStatusSize && make(&state, coefficients, INT32_MAX) == orvStatusNoMem);
    const int32_t live = steeredLiveAllocations();
    for (const int kth : {1, 2}) {
      steerFailAllocation(kth);
      CHECK(make(&state, coefficients, 1) == orvStatusNoMem && !state && steeredLiveAllocations() == live);
    }
    steerFailAllocation(0);
  }
  CHECK(orviSRHNFree_PSF2x2(nullptr) == orvStatusNullPtr && orviSRHNFree_PSF3x3(nullptr) == orvStatusNullPtr);
}
