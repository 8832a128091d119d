// The runner behind the benchmark lines.
#include "bench.h"
#include <benchmark/benchmark.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <algorithm>
#include <chrono>
#include "orvcore.h"

namespace bench {
namespace {

double now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

constexpr double secondsPerLine = 0.25;
constexpr int leastRuns = 20;

// Seconds of one call, from a batch.
double timeOf(const std::function<void()>& call, int batch) {
  const double start = now();
  for (int i = 0; i < batch; ++i) call();
  return (now() - start) / batch;
}

// Calls in a batch: enough that the clock's own cost vanishes.
int batchFor(const std::function<void()>& call) {
  const double once = std::min(timeOf(call, 1), timeOf(call, 1));
  return once > 50e-6 ? 1 : (int)(50e-6 / std::max(once, 10e-9)) + 1;
}

void run(benchmark::State& state, const Options& options, OrvSize roi, int threads,
         const std::function<std::function<void()>(const Frame&)>& prepare) {
  const size_t bytes = (size_t)roi.width * (size_t)roi.height * (size_t)options.bytesPerPixel;
  const std::shared_ptr<void> from = allocate(bytes), to = allocate(bytes);
  const std::function<void()> copy = [&] {
    memcpy(to.get(), from.get(), bytes);
    benchmark::ClobberMemory();
  };
  orvSetNumThreads(threads);
  const std::function<void()> call = prepare(Frame{roi});
  const int batch = batchFor(call), copyBatch = batchFor(copy);
  double least = 1e9, leastCopy = 1e9;
  for (auto _ : state) {  // once: the runs are counted here
    const double end = now() + secondsPerLine;
    for (int i = 0; i < leastRuns || now() < end; ++i) {
      least = std::min(least, timeOf(call, batch));
      leastCopy = std::min(leastCopy, timeOf(copy, copyBatch));
    }
    least /= options.images;
    state.SetIterationTime(least);
  }
  const double pixels = (double)roi.width * roi.height;
  state.counters["ns_px"] = least * 1e9 / pixels;
  state.counters["GB_s"] = (double)bytes / least * 1e-9;
  state.counters["units"] = least / leastCopy;
}

}  // namespace

std::shared_ptr<void> allocate(size_t bytes) {
  void* p = nullptr;
  if (posix_memalign(&p, 64, bytes + 64) != 0) abort();
  memset(p, 1, bytes + 64);
  return std::shared_ptr<void>(p, free);
}

float scene(int x, int y, int channel) {
  const float fx = (float)x * 0.01f, fy = (float)y * 0.013f;
  float v = 0.45f + 0.2f * sinf(fx + (float)channel) * cosf(fy * 0.7f) + 0.1f * sinf(fx * 3.1f + fy * 2.3f);
  if ((x / 97 + y / 61) % 3 == 0) v += 0.15f;
  const uint32_t hash = ((uint32_t)x * 374761393u + (uint32_t)y * 668265263u + (uint32_t)channel * 97u) * 2246822519u;
  v += ((float)(hash >> 24) - 128.f) * (1.f / 2560.f);
  return std::min(std::max(v, 0.f), 1.f);
}

Picture<uint8_t> Frame::mask() const {
  // Another part of the scene: a mask of the image's own bright places would leave it little deviation, and a mean of
  // floats then takes a second pass.
  Picture<uint8_t> p = image<uint8_t>();
  for (int y = 0; y < roi.height; ++y)
    for (int x = 0; x < roi.width; ++x)
      p.data[(size_t)y * (size_t)roi.width + (size_t)x] = scene(x + 977, y + 1531, 1) > 0.45f ? 255 : 0;
  return p;
}

std::shared_ptr<uint8_t> Frame::scratch(int32_t bytes) const {
  return std::static_pointer_cast<uint8_t>(allocate((size_t)bytes));
}

bool add(const std::string& name, Options options, std::function<std::function<void()>(const Frame&)> prepare) {
  std::vector<OrvSize> sizes = {{1, 1}, {16, 16}, {64, 64}, {320, 240}, {1920, 1080}};
  if (options.threads == threaded) sizes.push_back({7680, 4320});
  if (!options.sizes.empty()) sizes = options.sizes;
  for (const OrvSize roi : sizes)
    for (int threads = 1; threads <= (options.threads == threaded && roi.width >= 1920 ? 2 : 1); ++threads) {
      const std::string line = name + "/" + std::to_string(roi.width) + "x" + std::to_string(roi.height) +
                               "/threads:" + std::to_string(threads);
      benchmark::RegisterBenchmark(line.c_str(),
                                   [=](benchmark::State& state) { run(state, options, roi, threads, prepare); })
          ->UseManualTime()
          ->Iterations(1)
          ->Unit(benchmark::kMicrosecond);
    }
  return true;
}

}  // namespace bench

// A context line for the variant and the processor, so that a saved table says what it was measured on.
int main(int count, char** arguments) {
  benchmark::Initialize(&count, arguments);
  benchmark::AddCustomContext("library", orvcvGetLibVersion()->name);
  if (FILE* file = fopen("/proc/cpuinfo", "r")) {
    char text[256];
    while (fgets(text, sizeof text, file))
      if (!strncmp(text, "model name", 10)) {
        text[strcspn(text, "\n")] = 0;
        benchmark::AddCustomContext("processor", strchr(text, ':') + 2);
        break;
      }
    fclose(file);
  }
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
