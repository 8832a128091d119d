#include "morphology.h"
#include <math.h>
#include <string.h>
#include "timing.h"

namespace demo {
namespace {

// Letters of 5 x 7 dots, a row in the low five bits of a byte, the leftmost dot highest.
struct Letter {
  char name;
  uint8_t rows[7];
};
constexpr Letter letters[] = {
    {'A', {14, 17, 17, 31, 17, 17, 17}}, {'C', {14, 17, 16, 16, 16, 17, 14}}, {'D', {30, 17, 17, 17, 17, 17, 30}},
    {'E', {31, 16, 16, 30, 16, 16, 31}}, {'F', {31, 16, 16, 30, 16, 16, 16}}, {'G', {14, 17, 16, 23, 17, 17, 15}},
    {'H', {17, 17, 17, 31, 17, 17, 17}}, {'I', {14, 4, 4, 4, 4, 4, 14}},      {'K', {17, 18, 20, 24, 20, 18, 17}},
    {'L', {16, 16, 16, 16, 16, 16, 31}}, {'M', {17, 27, 21, 21, 17, 17, 17}}, {'N', {17, 25, 21, 19, 17, 17, 17}},
    {'O', {14, 17, 17, 17, 17, 17, 14}}, {'P', {30, 17, 17, 30, 16, 16, 16}}, {'R', {30, 17, 17, 30, 20, 18, 17}},
    {'S', {15, 16, 16, 14, 1, 1, 30}},   {'T', {31, 4, 4, 4, 4, 4, 4}},       {'V', {17, 17, 17, 17, 17, 10, 4}},
    {'W', {17, 17, 17, 21, 21, 27, 17}}, {'Y', {17, 17, 10, 4, 4, 4, 4}},
};

// A number in [0, 1) for each place, without pattern.
float noise(int x, int y) {
  uint32_t h = (uint32_t)x * 2246822519u + (uint32_t)y * 3266489917u;
  h = (h ^ (h >> 15)) * 668265263u;
  return (float)((h ^ (h >> 13)) & 0xFFFF) / 65536.f;
}

void write(Bytes& page, const char* text, int left, int top, int dot) {
  for (; *text; ++text, left += 6 * dot)
    for (const Letter& letter : letters)
      for (int i = 0; letter.name == *text && i < 35 * dot * dot; ++i) {
        const int x = i % (5 * dot), y = i / (5 * dot);
        if (letter.rows[y / dot] >> (4 - x / dot) & 1)
          *page.at(left + x, top + y) = (uint8_t)(*page.at(left + x, top + y) / 4);
      }
}

// A page lit from one side, with print, two coins, and specks of light.
Bytes drawPage() {
  Bytes page(560, 400, 1);
  for (int y = 0; y < page.height; ++y)
    for (int x = 0; x < page.width; ++x) {
      float light = 235 - 0.22f * (float)x - 0.12f * (float)y + 6 * noise(x, y);
      for (const int coin : {0, 1}) {
        const float dx = (float)(x - 400 - 90 * coin), dy = (float)(y - 290 + 40 * coin), d = hypotf(dx, dy) / 52;
        if (d < 1) light = 95 + 25 * (1 - d) - (d > 0.86f ? 40.f : 0.f) - 0.3f * dx;
      }
      if (noise(x + 1000, y) > 0.9985f) light = 255;
      *page.at(x, y) = (uint8_t)light;
    }
  const char* const lines[] = {"EROSION TAKES THE LOWEST",
                               "VALUE IN REACH OF A MASK",
                               "DILATION THE HIGHEST ONE",
                               "AN OPENING IS DILATION",
                               "AFTER EROSION",
                               "CLOSING DOES IT",
                               "THE OTHER WAY"};
  for (int i = 0; i < 7; ++i) write(page, lines[i], 24, 28 + 36 * i, i < 3 ? 3 : 2);
  return page;
}

// A prepared disc with its buffer, for one image size.
struct Disc {
  std::vector<uint8_t> state, buffer;
  OrvMorphAdvState* record() { return (OrvMorphAdvState*)(void*)state.data(); }

  Disc(OrvSize roi, int size) {
    std::vector<uint8_t> mask;
    for (int y = 0; y < size; ++y)
      for (int x = 0; x < size; ++x)
        mask.push_back(hypotf((float)(2 * x - size + 1), (float)(2 * y - size + 1)) <= (float)size);
    int32_t stateBytes, bufferBytes;
    require(orviMorphAdvGetSize_8u_C1R(roi, {size, size}, &stateBytes, &bufferBytes), "orviMorphAdvGetSize_8u_C1R");
    state.resize((size_t)stateBytes), buffer.resize((size_t)bufferBytes);
    require(orviMorphAdvInit_8u_C1R(roi, mask.data(), {size, size}, record(), buffer.data()),
            "orviMorphAdvInit_8u_C1R");
  }
};

// Dark regions that the image's border can't reach are filled: erosion above the image, from a marker that is the image
// along the border and white inside.
Timed<uint8_t> filled(const Bytes& image) {
  int32_t bytes;
  require(orviMorphReconstructGetBufferSize_8u_C1(image.size(), &bytes), "orviMorphReconstructGetBufferSize_8u_C1");
  std::vector<uint8_t> buffer((size_t)bytes);
  Bytes marker;
  const double time = leastSeconds([&] {
    marker = image;
    for (int y = 1; y < image.height - 1; ++y) memset(marker.at(1, y), 255, (size_t)image.width - 2);
    require(orviMorphReconstructErode_8u_C1IR(image.pixels.data(), image.step(), marker.pixels.data(), marker.step(),
                                              image.size(), buffer.data(), 1),
            "orviMorphReconstructErode_8u_C1IR");
  });
  return {marker, time};
}

// Rings, washers and a nut, bright on dark: objects with holes, some of them cut open.
Bytes drawParts() {
  Bytes parts(560, 300, 1);
  const struct {
    float x, y, outer, inner, gap;
  } rings[] = {{90, 90, 62, 30, 0},   {230, 80, 48, 34, 0},  {250, 210, 70, 50, 9}, {90, 225, 48, 8, 0},
               {390, 90, 66, 46, 12}, {490, 110, 40, 26, 0}, {420, 225, 56, 36, 0}};
  for (int y = 0; y < parts.height; ++y)
    for (int x = 0; x < parts.width; ++x) {
      float light = 40 + 8 * noise(x, y);
      for (const auto& ring : rings) {
        const float dx = (float)x - ring.x, dy = (float)y - ring.y, d = hypotf(dx, dy);
        const bool cut = dx > 0 && fabsf(dy) < ring.gap;
        if (d < ring.outer && d > ring.inner && !cut) light = 190 - 0.5f * dy + 8 * noise(x, y);
      }
      *parts.at(x, y) = (uint8_t)light;
    }
  return parts;
}

}  // namespace

void showMorphology(Sheet& sheet) {
  const Bytes page = drawPage();
  sheet.section("Opening and closing",
                "A drawn page, lit from the left, with specks of light. Discs are the masks, sides are replicated.");
  sheet.picture(page, "page", "the page", "Print and two coins.");
  const struct {
    decltype(&orviMorphOpenBorder_8u_C1R) filter;
    const char* call;
    int size, gain;
    const char *stem, *title, *caption;
  } shown[] = {
      {orviMorphOpenBorder_8u_C1R, "orviMorphOpenBorder_8u_C1R", 5, 1, "page_open", "opening, disc 5",
       "Light that no disc fits into is gone: the specks. The print grows together."},
      {orviMorphCloseBorder_8u_C1R, "orviMorphCloseBorder_8u_C1R", 9, 1, "page_close", "closing, disc 9",
       "So is what is dark and narrow: the print. The paper with its light remains."},
      {orviMorphTophatBorder_8u_C1R, "orviMorphTophatBorder_8u_C1R", 5, 2, "page_tophat", "top-hat, disc 5",
       "What the opening took away, times 2: specks and the paper between strokes."},
      {orviMorphBlackhatBorder_8u_C1R, "orviMorphBlackhatBorder_8u_C1R", 9, 1, "page_blackhat", "black-hat, disc 9",
       "What the closing filled: the print, evenly lit, and the rims of the coins."},
      {orviMorphGradientBorder_8u_C1R, "orviMorphGradientBorder_8u_C1R", 3, 1, "page_gradient", "gradient, disc 3",
       "Dilation less erosion: the outlines."},
  };
  for (const auto& how : shown) {
    Disc disc(page.size(), how.size);
    Bytes result(page.width, page.height, 1);
    const double time = leastSeconds([&] {
      require(how.filter(page.pixels.data(), page.step(), result.pixels.data(), result.step(), page.size(),
                         orvBorderRepl, 0, disc.record(), disc.buffer.data()),
              how.call);
    });
    sheet.picture(amplified(result, how.gain), how.stem, how.title, how.caption, how.call, time);
  }

  const Bytes parts = drawParts();
  sheet.section("Reconstruction", "Holes are filled without a mask of a size: what the border can't reach is one.");
  sheet.picture(parts, "parts", "rings", "Two are cut open.");
  const auto whole = filled(parts);
  sheet.picture(whole.image, "parts_filled", "holes filled", "The cut ones stay open: their inside is outside.",
                "orviMorphReconstructErode_8u_C1IR", whole.seconds);
}

}  // namespace demo
