#include "detector.h"
#include <math.h>
#include <algorithm>

namespace detect {
namespace {

using demo::require;

// Sums and squares of a gray image.
struct Tables {
  demo::Image<int32_t> sums;
  demo::Image<double> squares;

  explicit Tables(const demo::Bytes& gray)
      : sums(gray.width + 1, gray.height + 1, 1), squares(gray.width + 1, gray.height + 1, 1) {
    require(orviSqrIntegral_8u32s64f_C1R(gray.pixels.data(), gray.step(), sums.pixels.data(), sums.step(),
                                         squares.pixels.data(), squares.step(), gray.size(), 0, 0),
            "orviSqrIntegral_8u32s64f_C1R");
  }
};

// Appends the windows of one size that pass. Larger windows are looked at every few pixels only: neighbours are alike.
void findAtScale(const Tables& tables, const Cascade& cascade, float scale, float flat, std::vector<OrvRect>& hits) {
  const OrvRect window = scaled({0, 0, cascade.window.width, cascade.window.height}, scale);
  const OrvSize places{tables.sums.width - window.width, tables.sums.height - window.height};
  demo::Floats norm(places.width, places.height, 1);
  require(orviRectStdDev_32s32f_C1R(tables.sums.pixels.data(), tables.sums.step(), tables.squares.pixels.data(),
                                    tables.squares.step(), norm.pixels.data(), norm.step(), places, window),
          "orviRectStdDev_32s32f_C1R");
  demo::Bytes mask(places.width, places.height, 1);
  const int stride = std::max(1, (int)lrintf(scale * 0.75f));
  for (int y = 0; y < places.height; y += stride)
    for (int x = 0; x < places.width; x += stride) *mask.at(x, y) = *norm.at(x, y) > flat;

  int32_t left = 1;
  for (size_t i = 0; i < cascade.stages.size() && left > 0; ++i) {
    const Classifier classifier = makeClassifier(cascade.stages[i], cascade.window, scale);
    require(orviApplyHaarClassifier_32s32f_C1R(tables.sums.pixels.data(), tables.sums.step(), norm.pixels.data(),
                                               norm.step(), mask.pixels.data(), mask.step(), places, &left,
                                               cascade.stages[i].threshold, classifier.get()),
            "orviApplyHaarClassifier_32s32f_C1R");
  }
  for (int y = 0; y < places.height && left > 0; y += stride)
    for (int x = 0; x < places.width; x += stride)
      if (*mask.at(x, y) != 0) hits.push_back({x, y, window.width, window.height});
}

}  // namespace

std::vector<OrvRect> findWindows(const demo::Bytes& gray, const Cascade& cascade, const Search& search) {
  std::vector<OrvRect> hits;
  if (gray.width < 1 || gray.height < 1) return hits;
  const Tables tables(gray);
  for (float scale = search.smallest;; scale *= search.factor) {
    const OrvRect window = scaled({0, 0, cascade.window.width, cascade.window.height}, scale);
    if (window.width > gray.width || window.height > gray.height) return hits;
    findAtScale(tables, cascade, scale, search.flat, hits);
  }
}

float overlap(const OrvRect& a, const OrvRect& b) {
  const float width = (float)(std::min(a.x + a.width, b.x + b.width) - std::max(a.x, b.x));
  const float height = (float)(std::min(a.y + a.height, b.y + b.height) - std::max(a.y, b.y));
  if (width <= 0 || height <= 0) return 0;
  const float both = width * height;
  return both / ((float)(a.width * a.height) + (float)(b.width * b.height) - both);
}

std::vector<Found> group(const std::vector<OrvRect>& windows, int least) {
  struct Sum {
    int64_t x = 0, y = 0, width = 0, height = 0;
    int count = 0;
    OrvRect mean() const {
      const auto part = [this](int64_t sum) { return (int)((sum + count / 2) / count); };
      return {part(x), part(y), part(width), part(height)};
    }
  };
  // Each window joins the first group whose mean it overlaps.
  std::vector<Sum> sums;
  for (const OrvRect& w : windows) {
    auto found = std::find_if(sums.begin(), sums.end(), [&](const Sum& s) { return overlap(s.mean(), w) > 0.4f; });
    if (found == sums.end()) found = sums.insert(sums.end(), Sum());
    found->x += w.x, found->y += w.y, found->width += w.width, found->height += w.height;
    ++found->count;
  }
  // Of groups about the same place the one with the most windows stays.
  std::sort(sums.begin(), sums.end(), [](const Sum& a, const Sum& b) { return a.count > b.count; });
  std::vector<Found> objects;
  for (const Sum& s : sums) {
    const OrvRect place = s.mean();
    const int x = place.x + place.width / 2, y = place.y + place.height / 2;
    const auto holds = [&](const Found& f) {
      const OrvRect& r = f.place;
      const bool middle = x >= r.x && x < r.x + r.width && y >= r.y && y < r.y + r.height;
      return middle || overlap(r, place) > 0.15f;
    };
    if (s.count >= least && std::none_of(objects.begin(), objects.end(), holds)) objects.push_back({place, s.count});
  }
  return objects;
}

void drawFrames(demo::Bytes& colour, const std::vector<Found>& objects) {
  const uint8_t line[3] = {40, 255, 60}, rim[3] = {0, 40, 0};
  const auto dot = [&](int x, int y, const uint8_t* value) {
    if (x >= 0 && y >= 0 && x < colour.width && y < colour.height) std::copy_n(value, 3, colour.at(x, y));
  };
  for (const Found& f : objects)
    for (int i = 0; i < 4; ++i) {
      const uint8_t* value = i == 0 || i == 3 ? rim : line;
      const int left = f.place.x - i, top = f.place.y - i;
      const int right = f.place.x + f.place.width - 1 + i, bottom = f.place.y + f.place.height - 1 + i;
      for (int x = left; x <= right; ++x) dot(x, top, value), dot(x, bottom, value);
      for (int y = top; y <= bottom; ++y) dot(left, y, value), dot(right, y, value);
    }
}

}  // namespace detect
