// Test images: any step, any address, guarded, with a picture of their first content to restore and compare.
#pragma once
#include <memory>
#include <vector>
#include "framework/guarded.h"
#include "framework/harness.h"
#include "framework/random.h"

namespace test {

// Readable pixels around the region, for borders in memory.
struct Margin {
  int left = 0, top = 0, right = 0, bottom = 0;
};

template <class T>
class Image {
 public:
  // A region of width x height pixels. The step is a random whole number of elements beyond a row, the place random:
  // against a protected page on either side, at aligned and odd addresses.
  Image(Random& r, int width, int height, int channels, Margin margin = {})
      : width_(width * channels), height_(height) {
    const int rowElements = width_ + (margin.left + margin.right) * channels;
    const int padding = r.one(3) ? 0 : r.in(1, 20);
    step_ = (rowElements + padding) * (int)sizeof(T);
    const int rows = height + margin.top + margin.bottom;
    const size_t bytes = (size_t)step_ * (size_t)(rows - 1) + (size_t)rowElements * sizeof(T);
    memory_ = std::make_shared<Guarded>(bytes, !r.one(4), r.one(2) ? 0 : (size_t)r.in(1, 9));
    origin_ = memory_->data() + (size_t)margin.top * (size_t)step_ + (size_t)(margin.left * channels) * sizeof(T);
    keep();
  }

  T* data() const { return (T*)(void*)origin_; }
  int32_t step() const { return step_; }
  int elements() const { return width_; }  // of a row
  int height() const { return height_; }

  T at(int x, int y) const {
    T value;
    memcpy(&value, address(x, y), sizeof(T));
    return value;
  }
  void set(int x, int y, T value) { memcpy(address(x, y), &value, sizeof(T)); }

  // Fills everything readable, margins and padding included.
  void fill(Random& r, bool wild) {
    fillRuns<T>(r, memory_->data(), (int64_t)(memory_->bytes() / sizeof(T)), wild);
    keep();
  }

  // The present content becomes the one that restore() brings back and onlyRegionChanged() compares with.
  void keep() { first_.assign(memory_->whole(), memory_->whole() + memory_->wholeBytes()); }
  void restore() { memcpy(memory_->whole(), first_.data(), first_.size()); }
  bool unchanged() const { return memcmp(memory_->whole(), first_.data(), first_.size()) == 0; }
  // Whether all bytes outside the region are as they were.
  bool onlyRegionChanged() const {
    std::vector<uint8_t> now(memory_->whole(), memory_->whole() + memory_->wholeBytes());
    for (int y = 0; y < height_; ++y) {
      const auto offset = address(0, y) - memory_->whole();
      memcpy(now.data() + offset, first_.data() + offset, (size_t)width_ * sizeof(T));
    }
    return now == first_;
  }

 private:
  uint8_t* address(int x, int y) const { return origin_ + (ptrdiff_t)y * step_ + (ptrdiff_t)x * (ptrdiff_t)sizeof(T); }

  int width_, height_;
  int32_t step_ = 0;
  uint8_t* origin_ = nullptr;
  std::shared_ptr<Guarded> memory_;
  std::vector<uint8_t> first_;
};

// Equal bits, or both NaN: the sign and payload of a NaN are not promised by float arithmetic.
template <class T>
bool same(T a, T b) {
  if constexpr (std::is_floating_point<T>::value)
    if (a != a && b != b) return true;
  return memcmp(&a, &b, sizeof(T)) == 0;
}

// Notes the first element of the region that isn't want(x, y), and any change outside the region.
template <class T, class Want>
void expectImage(const Image<T>& image, const Want& want) {
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.elements(); ++x)
      if (const T got = image.at(x, y), wanted = want(x, y); !same(got, wanted))
        return fail("element %d of row %d is %.9g, not %.9g", x, y, (double)got, (double)wanted);
  if (!image.onlyRegionChanged()) fail("written outside the region");
}

}  // namespace test
