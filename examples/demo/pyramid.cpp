#include "pyramid.h"
#include <algorithm>
#include <memory>
#include <string>
#include "frames.h"
#include "timing.h"

namespace demo {
namespace {

constexpr float rate = 1.5f;
const int16_t kernel[] = {1, 4, 6, 4, 1};

// Half the size, or twice: the dyadic steps.
Timed<uint8_t> halved(const Bytes& image) {
  Bytes half((image.width + 1) / 2, (image.height + 1) / 2, 3);
  int32_t bytes = 0;
  require(orviPyrDownGetBufSize_Gauss5x5(image.width, orvData8u, 3, &bytes), "orviPyrDownGetBufSize_Gauss5x5");
  std::vector<uint8_t> buffer((size_t)bytes);
  const double time = leastSeconds([&] {
    require(orviPyrDown_Gauss5x5_8u_C3R(image.pixels.data(), image.step(), half.pixels.data(), half.step(),
                                        image.size(), buffer.data()),
            "orviPyrDown_Gauss5x5_8u_C3R");
  });
  return {std::move(half), time};
}
Timed<uint8_t> doubled(const Bytes& image) {
  Bytes twice(2 * image.width, 2 * image.height, 3);
  int32_t bytes = 0;
  require(orviPyrUpGetBufSize_Gauss5x5(image.width, orvData8u, 3, &bytes), "orviPyrUpGetBufSize_Gauss5x5");
  std::vector<uint8_t> buffer((size_t)bytes);
  const double time = leastSeconds([&] {
    require(orviPyrUp_Gauss5x5_8u_C3R(image.pixels.data(), image.step(), twice.pixels.data(), twice.step(),
                                      image.size(), buffer.data()),
            "orviPyrUp_Gauss5x5_8u_C3R");
  });
  return {std::move(twice), time};
}

// The levels of a pyramid, all made with one state; the time is that of making them.
struct Levels {
  std::unique_ptr<OrvPyramid, OrvStatus (*)(OrvPyramid*)> record{nullptr, orviPyramidFree};
  std::vector<Bytes> images;
  double time = 0;

  Levels(const Bytes& photo, int levels) {
    OrvPyramid* made = nullptr;
    require(orviPyramidInitAlloc(&made, levels, photo.size(), rate), "orviPyramidInitAlloc");
    record.reset(made);
    OrvPyramidDownState* state = nullptr;
    require(orviPyramidLayerDownInitAlloc_8u_C3R(&state, photo.size(), rate, kernel, 5, 2),
            "orviPyramidLayerDownInitAlloc_8u_C3R");
    const std::unique_ptr<OrvPyramidDownState, OrvStatus (*)(OrvPyramidDownState*)> down(
        state, orviPyramidLayerDownFree_8u_C3R);
    images.push_back(photo);
    for (int i = 1; i <= made->level; ++i) images.emplace_back(made->roi[i].width, made->roi[i].height, 3);
    for (int i = 0; i <= made->level; ++i) {
      made->images[i] = images[(size_t)i].pixels.data();
      made->steps[i] = images[(size_t)i].step();
    }
    time = leastSeconds([&] {
      for (int i = 1; i <= made->level; ++i)
        require(orviPyramidLayerDown_8u_C3R((const uint8_t*)made->images[i - 1], made->steps[i - 1], made->roi[i - 1],
                                            (uint8_t*)made->images[i], made->steps[i], made->roi[i], state),
                "orviPyramidLayerDown_8u_C3R");
    });
  }
};

// Up through the sizes of the levels below, from one of them to the first.
Timed<uint8_t> climbed(const Levels& levels, int from) {
  OrvPyramidUpState* state = nullptr;
  require(orviPyramidLayerUpInitAlloc_8u_C3R(&state, levels.record->roi[0], rate, kernel, 5, 2),
          "orviPyramidLayerUpInitAlloc_8u_C3R");
  const std::unique_ptr<OrvPyramidUpState, OrvStatus (*)(OrvPyramidUpState*)> up(state, orviPyramidLayerUpFree_8u_C3R);
  Bytes image;
  const double time = leastSeconds([&] {
    image = levels.images[(size_t)from];
    for (int i = from; i > 0; --i) {
      const OrvSize size = levels.record->roi[i - 1];
      Bytes next(size.width, size.height, 3);
      require(orviPyramidLayerUp_8u_C3R(image.pixels.data(), image.step(), image.size(), next.pixels.data(),
                                        next.step(), size, state),
              "orviPyramidLayerUp_8u_C3R");
      image = std::move(next);
    }
  });
  return {std::move(image), time};
}

// The levels side by side, as far as they fit.
Bytes strip(const std::vector<Bytes>& levels) {
  int width = 0;
  for (const Bytes& level : levels) width += level.width;
  Bytes all(width, levels[0].height, 3);
  std::fill(all.pixels.begin(), all.pixels.end(), (uint8_t)255);
  int x = 0;
  for (const Bytes& level : levels) {
    for (int y = 0; y < level.height; ++y) std::copy_n(level.at(0, y), level.width * 3, all.at(x, y));
    x += level.width;
  }
  return all;
}

}  // namespace

void showPyramid(Sheet& sheet, const Bytes& photo) {
  const OrvSize size{std::min(photo.width, 512) & ~1, std::min(photo.height, 512) & ~1};
  const Bytes source = cropped(photo, {(photo.width - size.width) / 2, (photo.height - size.height) / 2}, size);
  sheet.section("Pyramids", "A piece of the photograph, level by level smaller, and brought up to its size again.");
  const auto half = halved(source);
  sheet.picture(half.image, "pyramid_half", "half the size", "The dyadic step down.", "orviPyrDown_Gauss5x5_8u_C3R",
                half.seconds);
  const auto twice = doubled(half.image);
  sheet.picture(twice.image, "pyramid_twice", "down and up", "The dyadic step up, from half the size.",
                "orviPyrUp_Gauss5x5_8u_C3R", twice.seconds);
  sheet.picture(amplified(difference(source, twice.image).image, 4), "pyramid_detail", "what was lost",
                "The photograph against it, times 4: the finest level of a Laplacian pyramid.");
  const Levels levels(source, 6);
  sheet.picture(strip(levels.images), "pyramid_levels", std::to_string(levels.record->level) + " levels of rate 1.5",
                "All with one state; the time is that of all.", "orviPyramidLayerDown_8u_C3R", levels.time);
  const auto top = climbed(levels, std::min(3, (int)levels.record->level));
  sheet.picture(top.image, "pyramid_up", "up from level 3", "Three steps of rate 1.5 up again.",
                "orviPyramidLayerUp_8u_C3R", top.seconds);
}

}  // namespace demo
