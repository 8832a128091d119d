// Means and standard deviations.
#include "statistics_cases.h"

using namespace test;

namespace {

// The six members of an element type: means, then standard deviations too.
template <class T>
struct Members {
  const char* type;
  OrvStatus (*mean)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, double*);
  OrvStatus (*meanOfChannel)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, double*);
  OrvStatus (*stdDev)(const T*, int32_t, OrvSize, double*, double*);
  OrvStatus (*stdDevOfChannel)(const T*, int32_t, OrvSize, int32_t, double*, double*);
  OrvStatus (*maskedStdDev)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, double*, double*);
  OrvStatus (*maskedStdDevOfChannel)(const T*, int32_t, const uint8_t*, int32_t, OrvSize, int32_t, double*, double*);
};
#define MEMBERS(tag)                                                                                                \
  {                                                                                                                 \
#tag, orviMean_##tag##_C1MR, orviMean_##tag##_C3CMR, orviMean_StdDev_##tag##_C1R, orviMean_StdDev_##tag##_C3CR, \
        orviMean_StdDev_##tag##_C1MR, orviMean_StdDev_##tag##_C3CMR                                                 \
  }
const Members<uint8_t> of8u = MEMBERS(8u);
const Members<int8_t> of8s = MEMBERS(8s);
const Members<uint16_t> of16u = MEMBERS(16u);
const Members<float> of32f = MEMBERS(32f);

// Sweeps one member, whatever follows its source, and walks its checks.
template <class T, class Function, class... Role>
void check(const char* name, Function f, int channels, Shape threaded, const std::vector<Told>& order, Role... roles) {
  const auto plain = reference::member<T>(channels, [](const auto& p, auto*... out) { meanStdDev(p, out...); });
  sweep(name, f, plain, threaded, In<T>(channels), roles...);
  walkArguments(name, f, order, In<T>(channels), roles...);
}

template <class T>
void checkAll(const Members<T>& m, Shape threaded, double tolerance) {
  const Context context(m.type);
  const Result<double> mean(1, tolerance), sd = mean;
  check<T>("orviMean C1MR", m.mean, 1, threaded, orderOfChecks<T>(1, true, 3), Mask(), Roi(), mean);
  check<T>("orviMean C3CMR", m.meanOfChannel, 3, threaded, orderOfChecks<T>(1, true, 4, 3), Mask(), Roi(), Coi(), mean);
  check<T>("StdDev C1R", m.stdDev, 1, threaded, orderOfChecks<T>(1, false, 0), Roi(), mean, sd);
  check<T>("StdDev C3CR", m.stdDevOfChannel, 3, threaded, orderOfChecks<T>(1, false, 0, 2), Roi(), Coi(), mean, sd);
  check<T>("StdDev C1MR", m.maskedStdDev, 1, threaded, orderOfChecks<T>(1, true, 0), Mask(), Roi(), mean, sd);
  check<T>("StdDev C3CMR", m.maskedStdDevOfChannel, 3, threaded, orderOfChecks<T>(1, true, 0, 3), Mask(), Roi(), Coi(),
           mean, sd);
}

// A large image of one extreme value: sums beyond 32 bits (8u, 8s) and squares near 2^58 (16u) are exact.
template <class T>
void extremes(const Members<T>& m, T value) {
  const OrvSize roi{8192, quick() || reference::isFloat<T> ? 600 : 4200};
  const std::vector<T> image((size_t)roi.width * (size_t)roi.height, value);
  const std::vector<uint8_t> mask(image.size(), 255);
  const int32_t step = roi.width * (int32_t)sizeof(T);
  forEachSetting(true, [&] {
    double mean[2] = {}, stdDev[2] = {1, 1};
    m.stdDev(image.data(), step, roi, &mean[0], &stdDev[0]);
    m.maskedStdDev(image.data(), step, mask.data(), roi.width, roi, &mean[1], &stdDev[1]);
    for (const int i : {0, 1})
      CHECK(mean[i] == value && stdDev[i] == 0, "%s %d: %.17g, %.17g", m.type, i, mean[i], stdDev[i]);
  });
}

}  // namespace

TEST(integers_are_exact) {
  checkAll(of8u, threadedShape(), 0);
  checkAll(of8s, threadedShape(), 0);
  checkAll(of16u, threadedShape(), 0);
}

// On one thread the order of the sums is fixed; bands of a team differ in the last bits.
TEST(floats) {
  checkAll(of32f, {0, 0}, 0);
  if (!quick()) checkAll(of32f, threadedShape(), 1e-9);
}

TEST(extreme_images) {
  extremes<uint8_t>(of8u, 255);
  extremes<int8_t>(of8s, -128);
  extremes<uint16_t>(of16u, 65535);
  extremes<float>(of32f, 1000);
}

// A spread that the one-pass formula would lose: the second pass finds it, under a mask too.
TEST(second_pass) {
  const OrvSize roi{37, 11};
  std::vector<float> image;
  std::vector<uint8_t> mask;
  for (int i = 0; i < roi.width * roi.height; ++i) {
    const bool counts = i % 2 && i < 400;  // elsewhere anything, an infinity too
    mask.push_back(counts);
    image.push_back(!counts ? (i == 14 ? INFINITY : -5.f) : i % 4 == 1 ? 99999.75f : 100000.25f);
  }
  forEachSetting(false, [&] {
    double mean, stdDev;
    orviMean_StdDev_32f_C1MR(image.data(), roi.width * 4, mask.data(), roi.width, roi, &mean, &stdDev);
    CHECK(mean == 100000 && stdDev == 0.25, "%.17g %.17g", mean, stdDev);
  });
}

TEST(results_may_be_left_out) {
  const uint8_t image[] = {1, 3};
  double mean = -1, stdDev = -1;
  CHECK(orviMean_StdDev_8u_C1R(image, 2, {2, 1}, &mean, nullptr) == orvStatusOk && mean == 2);
  CHECK(orviMean_StdDev_8u_C1R(image, 2, {2, 1}, nullptr, &stdDev) == orvStatusOk && stdDev == 1);
  CHECK(orviMean_StdDev_8u_C1R(image, 2, {2, 1}, nullptr, nullptr) == orvStatusOk);
}

// Above 32 threads the slots are allocated; without memory for them the calling thread does the work.
TEST(many_threads) {
  const OrvSize roi{2300, 2300};
  const std::vector<uint8_t> image((size_t)roi.width * (size_t)roi.height, 7);
  steerThreads(40);
  for (const int failing : {0, 1}) {
    steerFailAllocation(failing);
    double mean = 0, stdDev = 1;
    CHECK(orviMean_StdDev_8u_C1R(image.data(), roi.width, roi, &mean, &stdDev) == orvStatusOk);
    CHECK(mean == 7 && stdDev == 0, "%g %g", mean, stdDev);
    CHECK(steeredAllocations() == 1 && steeredLiveAllocations() == 0);
  }
  steerFailAllocation(0);
  steerThreads(1);
}
