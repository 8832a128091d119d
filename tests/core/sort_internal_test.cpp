// The ascending sort.
#include <algorithm>
#include "core/primitives.h"
#include "framework/sweep.h"

using namespace test;

namespace {

// Sorts in guarded memory at an odd address and compares with the standard sort; NaNs must follow all numbers.
void check(const char* name, const std::vector<double>& input) {
  const size_t n = input.size();
  Guarded memory(n * sizeof(double), n % 2 == 0, n % 3);
  memcpy(memory.data(), input.data(), n * sizeof(double));
  CHECK(orvsSortAscend_64f_I((double*)(void*)memory.data(), (int32_t)n) == orvStatusOk);
  CHECK(memory.intact(), "%s of %zu: written outside", name, n);
  std::vector<double> got(n), want = input;
  memcpy(got.data(), memory.data(), n * sizeof(double));
  const auto numbers = std::partition(want.begin(), want.end(), [](double v) { return v == v; });
  std::sort(want.begin(), numbers);
  for (size_t i = 0; i < n; ++i)
    if (!(got[i] == want[i] || (got[i] != got[i] && want[i] != want[i]))) {
      fail("%s of %zu: element %zu is %g, not %g", name, n, i, got[i], want[i]);
      return;
    }
}

// Numbers that make a median of three split off two elements at a time.
std::vector<double> medianKiller(size_t n) {
  std::vector<double> v(n);
  const size_t k = n / 2;
  for (size_t i = 1; i <= k; ++i) {
    v[i - 1] = (double)(i % 2 ? i : k + i - 1);
    v[k + i - 1] = (double)(2 * i);
  }
  return v;
}

}  // namespace

TEST(contents) {
  Random r(seed());
  std::vector<size_t> lengths = {1000, 4096, 30001};
  for (size_t n = 1; n < 120; ++n) lengths.push_back(n);
  for (const size_t n : lengths) {
    std::vector<double> v(n);
    fillRuns<double>(r, v.data(), (int64_t)n, true);
    check("runs with NaN", v);
    for (double& e : v) e = ldexp(r.in(-1000000000, 1000000000), r.in(-300, 300));
    check("noise", v);
    std::sort(v.begin(), v.end());
    check("sorted", v);
    std::reverse(v.begin(), v.end());
    check("reversed", v);
    for (size_t i = 0; i < n; ++i) v[i] = (double)std::min(i, n - i);
    check("pipe", v);
    for (double& e : v) e = r.in(0, 3);
    check("few values", v);
    std::fill(v.begin(), v.end(), 1.5);
    check("one value", v);
    std::fill(v.begin(), v.end(), NAN);
    check("no number", v);
    check("median killer", medianKiller(n));
  }
}

TEST(arguments) {
  double d[2] = {2, 1};
  CHECK(orvsSortAscend_64f_I(nullptr, 0) == orvStatusNullPtr);
  CHECK(orvsSortAscend_64f_I(d, 0) == orvStatusSize && d[0] == 2);
}
