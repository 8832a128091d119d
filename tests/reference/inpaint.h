// Inpainting without box, lists and kept gradients: everything is looked up in the whole image when it is needed.
#pragma once
#include <math.h>
#include <algorithm>
#include <vector>
#include "reference/pointwise.h"

namespace reference {

struct Inpaint {
  std::vector<uint8_t> image, hole;  // `channels` interleaved; 1 unknown
  std::vector<float> dist;
  int width, height, channels, method;
  float radius;

  bool in(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
  bool known(int x, int y) const { return in(x, y) && !hole[(size_t)(y * width + x)]; }
  int at(int x, int y, int c) const { return image[(size_t)((y * width + x) * channels + c)]; }
  float distance(int x, int y) const { return dist[(size_t)(y * width + x)]; }

  int gradient(int x, int y, int dx, int dy, int c) const {
    const bool before = known(x - dx, y - dy), after = known(x + dx, y + dy);
    const int back = before ? at(x, y, c) - at(x - dx, y - dy, c) : 0;
    const int ahead = after ? at(x + dx, y + dy, c) - at(x, y, c) : 0;
    if (method == 0) return before && after ? 2 * (ahead + back) : ahead + back;
    return before && after ? abs(ahead) + abs(back) : 2 * (abs(ahead) + abs(back));
  }
  int slope(int x, int y, int dx, int dy) const {
    const bool before = in(x - dx, y - dy), after = in(x + dx, y + dy);
    const float difference = distance(x + after * dx, y + after * dy) - distance(x - before * dx, y - before * dy);
    return (int)(difference * (before && after ? 2048.f : 4096.f));
  }
  uint8_t filled(int x, int y, int c) const {
    float sum = 1e-30f, acc = 0, jx = 0, jy = 0;
    const int r = (int)radius;
    for (int dy = -r; dy <= r; ++dy)
      for (int dx = -r; dx <= r; ++dx) {
        const float square = (float)(dx * dx + dy * dy), root = sqrtf(square);
        if (square == 0 || square > radius * radius || !known(x + dx, y + dy)) continue;
        const int gx = gradient(x + dx, y + dy, 1, 0, c), gy = gradient(x + dx, y + dy, 0, 1, c);
        float w;
        if (method == 0) {
          const int along = -dx * slope(x, y, 1, 0) - dy * slope(x, y, 0, 1);
          const float direction = along == 0 ? 2.5e-25f : (float)along, inverse = 1 / root;
          const float near = 0.00024414062f / (fabsf(distance(x + dx, y + dy) - distance(x, y)) + 1);
          w = fabsf(near * (inverse * inverse * inverse) * direction);
        } else {
          const float weight = 1 / ((square * square + 1) * root);
          const int dot = abs(dx * gy - dy * gx);
          w = dot == 0 ? weight * 1e-6f : weight * (float)dot * (1 / sqrtf((float)(gx * gx + gy * gy)));
        }
        sum += w;
        acc += (float)at(x + dx, y + dy, c) * w;
        jx += (float)(gx * dx) * w;
        jy += (float)(gy * dy) * w;
      }
    if (sum < 0.0001f) {
      sum = acc = jx = jy = 0;
      for (const auto& [dx, dy] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
        if (known(x + dx, y + dy)) sum += 1, acc += (float)at(x + dx, y + dy, c);
      if (sum == 0) return 0;
    }
    if (method == 1) return (uint8_t)(acc / sum + 0.5f);
    const double v = acc / sum + 0.5 + ((double)jx + jy) / (sqrt((double)jx * jx + (double)jy * jy) + 1e-20);
    return (uint8_t)std::min(std::max(v, 0.), 255.);
  }
  void run() {
    std::vector<int> order;
    for (int i = 0; i < width * height; ++i)
      if (hole[(size_t)i]) order.push_back(i);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return dist[(size_t)a] < dist[(size_t)b]; });
    for (const int i : order) {
      for (int c = 0; c < channels; ++c) image[(size_t)(i * channels + c)] = filled(i % width, i / width, c);
      hole[(size_t)i] = 0;
    }
  }
};

}  // namespace reference
