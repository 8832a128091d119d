// Labelling against the plain form, in scratch memory of exactly the reported size.
#pragma once
#include "distance/step_checks.h"
#include "reference/labelling.h"

namespace test {

// Blobs, noise, a chessboard or stripes of 0 and other values.
template <class T>
struct Markers : ImageRole<T> {
  explicit Markers(bool inPlace) : ImageRole<T>(inPlace ? InOut<T>() : In<T>()) {}
  void prepare(Random& r, const Shape& shape) {
    ImageRole<T>::prepare(r, shape);
    const int mode = r.in(0, 5), gap = r.in(2, 12);
    for (int y = 0; y < shape.height; ++y)
      for (int x = 0; x < shape.width; ++x) {
        bool set = r.one(mode == 0 ? 2 : gap);
        if (mode == 1) set = (x + y) % 2 == 0;
        if (mode == 2) set = x % 2 == 0 || r.one(gap);
        if (mode == 3) set = !set;
        if (mode == 4) set = x > 0 && y > 0 && r.one(2) ? this->candidate->at(x - 1, y) != 0 : set;
        if (mode == 5) set = true;
        this->candidate->set(x, y, (T)(set ? r.one(2) ? std::numeric_limits<T>::max() : r.in(1, 127) : 0));
        if (this->writes) this->expected->set(x, y, this->candidate->at(x, y));
      }
    this->candidate->keep();
  }
};

template <class S, class D>
void plainLabels(const S* src, int32_t step, D* labels, int32_t labelStep, OrvSize size, int32_t low, int32_t high,
                 int32_t norm, int32_t* count) {
  const auto found = reference::regions(
      size, norm == 0, [&](int i) { return reference::load(src, step, i / size.width, i % size.width) != 0; },
      [](int, int) { return true; });
  *count = (int32_t)found.count.size() - 1;
  for (int i = 0; i < size.width * size.height; ++i) {
    const int n = found.number[(size_t)i], label = n == 0 ? 0 : low + (n - 1) % (high - low + 1);
    reference::store(labels, labelStep, i / size.width, i % size.width, (D)label);
  }
}

// Sweeps and walks a labelling; `images` are the roles in front of the ROI, `limit` the first label that is refused.
template <class Function, class Reference, class... Images>
void checkLabels(const char* name, Function function, Reference plain, int32_t limit, std::vector<Told> order,
                 OrvStatus (*size)(OrvSize, int32_t*), const Images&... images) {
  const auto roles = [&](auto body, std::vector<int32_t> high) {
    body(images..., Roi(), Value<int32_t>({1, 3, 5}), Value<int32_t>(high), Value<int32_t>({0, 1}), Result<int32_t>(),
         Scratch(size));
  };
  roles([&](auto... role) { sweep(name, function, plain, {}, role...); }, {5, 7, limit - 1, limit - 1});
  const int low = (int)sizeof...(images) + 1, high = low + 1, norm = low + 2;
  order = order + std::vector<Told>{badValue(low, 0), badValue(high, limit), badValue(high, 0), badValue(norm, 2),
                                    badValue(norm, -1)};
  roles([&](auto... role) { walkArguments(name, function, order, role...); }, {5});
}

}  // namespace test
