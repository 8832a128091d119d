// Row and column pipelines, piped through a ring of rows, and on their own.
#include "bench.h"
#include <algorithm>

namespace {

// Taps like a binomial's: small, positive, symmetric.
template <class T>
std::vector<T> someTaps(int size, float centre) {
  std::vector<T> taps((size_t)size);
  for (int i = 0; i < size; ++i) taps[(size_t)i] = (T)(centre / (float)(1 + abs(i - size / 2)));
  return taps;
}

// The rows between the stages: `band` rows are filtered at a time, the last size - 1 of the band before are kept.
template <class T>
struct Ring {
  static constexpr int band = 16;
  std::shared_ptr<uint8_t> memory;
  std::vector<T*> rows;
  int size;

  Ring(const bench::Frame& f, int kernelSize) : size(kernelSize) {
    const int step = (f.roi.width * (int)sizeof(T) + 63) / 64 * 64, count = band + size - 1;
    memory = f.scratch(step * count + 64);
    for (int y = 0; y < count; ++y) rows.push_back((T*)(void*)(memory.get() + (ptrdiff_t)y * step));
  }

  // rowStage(first, count, rows) and columnStage(first, count, rows) over the image; the top row repeats above it.
  template <class Row, class Column>
  void pipe(int height, const Row& rowStage, const Column& columnStage) {
    const int half = size / 2;
    int done = std::min(band + half, height);  // source rows filtered so far
    rowStage(0, done, rows.data() + half);
    std::vector<T*> window(rows);
    for (int i = 0; i < half; ++i) window[(size_t)i] = rows[(size_t)half];
    for (int y = 0; y < height; y += band) {
      const int count = std::min(band, height - y);
      if (y > 0) {
        std::rotate(rows.begin(), rows.begin() + band, rows.end());
        const int next = std::min(band, height - done);
        if (next > 0) rowStage(done, next, rows.data() + size - 1);
        done += next;
        window = rows;
        for (int i = size - 1 + next; i < band + size - 1; ++i) window[(size_t)i] = window[(size_t)(size - 2 + next)];
      }
      columnStage(y, count, window.data());
    }
  }
};

template <class T>
T* rowAt(const bench::Picture<T>& image, int y) {
  return (T*)(void*)((uint8_t*)image.data + (ptrdiff_t)y * image.step);
}

template <class Function>
std::shared_ptr<uint8_t> scratchFor(const bench::Frame& f, Function size, int kernelSize) {
  int32_t bytes = 0;
  size(f.roi, kernelSize, &bytes);
  return f.scratch(bytes);
}

template <int Size>
std::function<void()> bytes(const bench::Frame& f) {
  auto src = f.image<uint8_t>();
  auto dst = f.image<int16_t>();
  auto ring = std::make_shared<Ring<int16_t>>(f, Size);
  auto rowScratch = scratchFor(f, orviFilterRowBorderPipelineGetBufferSize_8u16s_C1R, Size);
  auto columnScratch = scratchFor(f, orviFilterColumnPipelineGetBufferSize_16s_C1R, Size);
  const auto taps = someTaps<int16_t>(Size, 20.f);
  return [=] {
    ring->pipe(
        f.roi.height,
        [&](int y, int count, int16_t** rows) {
          orviFilterRowBorderPipeline_8u16s_C1R(rowAt(src, y), src.step, rows, {f.roi.width, count}, taps.data(), Size,
                                                Size / 2, orvBorderRepl, 0, 1, rowScratch.get());
        },
        [&](int y, int count, int16_t** rows) {
          orviFilterColumnPipeline_16s_C1R(rows, rowAt(dst, y), dst.step, {f.roi.width, count}, taps.data(), Size, 64,
                                           columnScratch.get());
        });
  };
}

template <int Size>
std::function<void()> floats(const bench::Frame& f) {
  auto src = f.image<float>(), dst = f.image<float>();
  auto ring = std::make_shared<Ring<float>>(f, Size);
  auto rowScratch = scratchFor(f, orviFilterRowBorderPipelineGetBufferSize_32f_C1R, Size);
  auto columnScratch = scratchFor(f, orviFilterColumnPipelineGetBufferSize_32f_C1R, Size);
  const auto taps = someTaps<float>(Size, 0.3f);
  return [=] {
    ring->pipe(
        f.roi.height,
        [&](int y, int count, float** rows) {
          orviFilterRowBorderPipeline_32f_C1R(rowAt(src, y), src.step, rows, {f.roi.width, count}, taps.data(), Size,
                                              Size / 2, orvBorderRepl, 0, rowScratch.get());
        },
        [&](int y, int count, float** rows) {
          orviFilterColumnPipeline_32f_C1R(rows, rowAt(dst, y), dst.step, {f.roi.width, count}, taps.data(), Size,
                                           columnScratch.get());
        });
  };
}

// A stage alone, whole image at once: rows of an image in, rows of an image out. The rows keep their image alive.
template <class T>
std::shared_ptr<std::vector<T*>> rowsOf(const bench::Picture<T>& image, int count, int height) {
  std::shared_ptr<std::vector<T*>> rows(new std::vector<T*>(), [image](std::vector<T*>* list) { delete list; });
  for (int y = 0; y < count; ++y) rows->push_back(rowAt(image, std::min(y, height - 1)));
  return rows;
}

const bool lines[] = {
    bench::add("row and column 8u16s, 16s, 7 taps", {1, bench::single}, bytes<7>),
    bench::add("row and column 8u16s, 16s, 3 taps", {1, bench::single}, bytes<3>),
    bench::add("row and column 32f, 7 taps", {4, bench::single}, floats<7>),
    bench::add("row and column 32f, 5 taps", {4, bench::single}, floats<5>),
    bench::add("orviFilterRowBorderPipeline_8u16s_C3R, 5 taps", {3, bench::threaded},
               [](const bench::Frame& f) {
                 auto src = f.image<uint8_t>(3);
                 auto dst = f.image<int16_t>(3);
                 auto rows = rowsOf(dst, f.roi.height, f.roi.height);
                 auto scratch = scratchFor(f, orviFilterRowBorderPipelineGetBufferSize_8u16s_C3R, 5);
                 const auto taps = someTaps<int16_t>(5, 20.f);
                 return [=] {
                   const uint8_t black[3] = {};
                   orviFilterRowBorderPipeline_8u16s_C3R(src.data, src.step, rows->data(), f.roi, taps.data(), 5, 2,
                                                         orvBorderRepl, black, 16, scratch.get());
                 };
               }),
    bench::add("orviFilterColumnPipeline_16s8u_C1R, 5 taps", {2, bench::threaded},
               [](const bench::Frame& f) {
                 auto src = f.image<int16_t>();
                 auto dst = f.image<uint8_t>();
                 auto rows = rowsOf(src, f.roi.height + 4, f.roi.height);
                 auto scratch = scratchFor(f, orviFilterColumnPipelineGetBufferSize_16s8u_C1R, 5);
                 const auto taps = someTaps<int16_t>(5, 20.f);
                 return [=] {
                   orviFilterColumnPipeline_16s8u_C1R(rows->data(), dst.data, dst.step, f.roi, taps.data(), 5, 100,
                                                      scratch.get());
                 };
               }),
    bench::add("orviFilterColumnPipeline_16u_C1R, 5 taps", {2, bench::single},
               [](const bench::Frame& f) {
                 auto src = f.image<uint16_t>(), dst = f.image<uint16_t>();
                 auto rows = rowsOf(src, f.roi.height + 4, f.roi.height);
                 auto scratch = scratchFor(f, orviFilterColumnPipelineGetBufferSize_16u_C1R, 5);
                 const auto taps = someTaps<uint16_t>(5, 12000.f);
                 return [=] {
                   orviFilterColumnPipeline_16u_C1R(rows->data(), dst.data, dst.step, f.roi, taps.data(), 5, 32768,
                                                    scratch.get());
                 };
               }),
};

}  // namespace
