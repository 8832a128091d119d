// The sizes of a sweep.
#pragma once
#include <vector>
#include "framework/harness.h"
#include "framework/random.h"

namespace test {

struct Shape {
  int width, height;
  bool threaded = false;  // large enough for a team: tried with every thread count
};

// All sizes up to 17 x 9, sizes around the vector widths, and, if given, one that is threaded. Quick runs take an
// eighth and a third of them.
inline std::vector<Shape> shapes(Shape threaded = {0, 0}) {
  std::vector<Shape> list;
  const int stride = quick() ? 8 : 1;
  for (int i = 0; i < 17 * 9; i += stride) list.push_back({i % 17 + 1, i / 17 + 1});
  for (const int middle : {32, 64, 128})
    for (int w = middle - 1; w <= middle + 1; ++w)
      for (const int h : quick() ? std::vector<int>{2} : std::vector<int>{1, 2, 5}) list.push_back({w, h});
  list.push_back({300, 3});
  if (threaded.width > 0) list.push_back({threaded.width, threaded.height, true});
  return list;
}

}  // namespace test
