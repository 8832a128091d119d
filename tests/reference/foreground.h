// Foreground models of one pixel, in full: every Gaussian and list entry at each step, in use or not.
#pragma once
#include <math.h>
#include <stdint.h>
#include <algorithm>
#include <array>
#include <vector>

namespace reference {

using Values = std::array<uint8_t, 6>;

// Channels that there aren't are 0, with no variance.
struct CountedMixture {
  struct Mode {
    int hits = 0;
    double weight = 0;
    std::array<double, 3> variance{}, mean{};
    double spread() const { return variance[0] + variance[1] + variance[2]; }
    double key() const { return hits > 0 ? weight / sqrt(spread()) : 0; }
  };
  std::vector<Mode> modes{5};
  int channels;

  CountedMixture(const uint8_t* x, int count) : channels(count) {
    for (Mode& m : modes) std::fill_n(m.variance.begin(), channels, 12.5);
    modes[0].hits = 1, modes[0].weight = 1;
    std::copy_n(x, channels, modes[0].mean.begin());
  }
  // Whether x is foreground in the frame of that number.
  bool advance(int frame, const uint8_t* x) {
    const bool steady = frame == 200;
    int match[5] = {}, matched = -1, hits = 0;
    for (int k = 0; k < 5; ++k) {
      double square = 0;
      for (int c = 0; c < channels; ++c) square += (modes[k].mean[c] - x[c]) * (modes[k].mean[c] - x[c]);
      if (matched < 0 && modes[k].spread() * 6.25 > square) match[matched = k] = 1;
      hits += modes[k].hits;
    }
    for (int k = 0; k < 5; ++k) {
      Mode& m = modes[k];
      m.weight += (match[k] - m.weight) * (steady ? 1.0 / 200 : 1.0 / (hits + 1));
      if (match[k] && !steady) ++m.hits;
      const double rate = steady ? 1 / (200 * m.weight) : 1.0 / m.hits;
      for (int c = 0; c < channels && match[k]; ++c) {
        const double e = x[c] - m.mean[c];
        m.mean[c] += e * rate, m.variance[c] += rate * (e * e - m.variance[c]);
      }
    }
    if (matched < 0) {
      hits += 1 - modes[4].hits;
      modes[4].hits = 1;
      for (int c = 0; c < channels; ++c) modes[4].variance[c] = 900, modes[4].mean[c] = x[c];
      for (int k = 0; k < 5; ++k)
        modes[k].weight = steady && k < 4 ? modes[k].weight * (1 - 1.0 / 200) : (double)modes[k].hits / hits;
    }
    std::stable_sort(modes.begin(), modes.end(), [](const Mode& a, const Mode& b) { return a.key() > b.key(); });
    double sum = 0;
    for (int k = 0; k < 5 && !(sum > 0.7); sum += modes[k++].weight)
      if (match[k]) return false;
    return true;
  }
};

// What a pixel of the histogram model has shown: its values, or its changes.
struct SeenValues {
  struct Entry {
    float weight = 0, back = 0;
    Values value{};
  };
  std::vector<Entry> list;
  int used, limit;
  float prior = 0;
  bool ready = false;

  explicit SeenValues(bool changes) : list(changes ? 40 : 25), used(changes ? 25 : 15), limit(changes ? 8 : 4) {}
  bool near(const Entry& e, const Values& value, int bytes) const {
    return std::equal(value.begin(), value.begin() + bytes, e.value.begin(),
                      [&](int a, int b) { return abs(a - b) <= limit; });
  }
  bool isForeground(const Values& value) const {
    float all = 0, back = 0;
    for (int k = 0; k < used && list[k].weight > 0.005f; ++k)
      if (near(list[k], value, 3)) all += list[k].weight, back += list[k].back;
    return 2 * back * prior <= all;
  }
  // Whether foreground became background.
  bool learn(const Values& value, int bytes, bool background) {
    const float rate = ready ? 0.005f : 0.1f;
    prior = prior * (1 - rate) + (background ? rate : 0);
    for (Entry& e : list) {
      if (e.weight == 0) break;
      e.weight *= 1 - rate, e.back *= 1 - rate;
      if (!near(e, value, bytes)) break;
    }
    list.pop_back();
    list.insert(std::find_if(list.begin(), list.end(), [&](const Entry& e) { return !(e.weight > rate); }),
                Entry{rate, rate, value});
    float all = 0, back = 0;
    for (int k = 0; k < used; ++k) all += list[k].weight, back += list[k].back;
    ready |= all > 0.9f;
    if (!(all - back * prior > 0.9f)) return false;
    for (int k = 0; k < used; ++k)
      if (list[k].weight != 0) list[k].back = (list[k].weight - list[k].back * prior) / (1 - prior);
    return true;
  }
};

}  // namespace reference
