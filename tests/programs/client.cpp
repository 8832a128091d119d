// A C++ program that keeps a background image and finds what moved before it, on one and on several threads.
#include <cstdio>
#include <vector>
#include "orvcore.h"
#include "orvcv.h"

namespace {

const OrvSize size{640, 480};
constexpr size_t pixels = 640 * 480;

uint8_t backgroundAt(size_t i) { return static_cast<uint8_t>(i * 7 % 251); }

// The background after 4 equal frames, then the difference of a frame in which pixel `moved` changed.
std::vector<uint8_t> differences(size_t moved) {
  std::vector<uint8_t> frame(pixels), background(pixels), difference(pixels);
  for (size_t i = 0; i < pixels; ++i) frame[i] = backgroundAt(i);
  std::vector<float> sum(pixels);
  for (int i = 0; i < 4; ++i)
    if (orviAdd_8u32f_C1IR(frame.data(), size.width, sum.data(), size.width * 4, size) != orvStatusOk) return {};
  for (size_t i = 0; i < pixels; ++i) background[i] = static_cast<uint8_t>(sum[i] / 4);
  frame[moved] = static_cast<uint8_t>(frame[moved] ^ 0x80);
  if (orviAbsDiff_8u_C1R(frame.data(), size.width, background.data(), size.width, difference.data(), size.width,
                         size) != orvStatusOk)
    return {};
  return difference;
}

}  // namespace

int main() {
  for (const int threads : {1, 3}) {
    orvSetNumThreads(threads);
    const size_t moved = pixels - 77;
    const std::vector<uint8_t> difference = differences(moved);
    bool right = difference.size() == pixels;
    for (size_t i = 0; right && i < pixels; ++i) right = difference[i] == (i == moved ? 128 : 0);
    if (!right) {
      std::printf("client.cpp: wrong on %d threads\n", threads);
      return 1;
    }
  }
  std::printf("C++ client: right\n");
}
