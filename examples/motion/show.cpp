#include "show.h"
#include <math.h>
#include <stdlib.h>
#include <algorithm>
#include "demo/marks.h"
#include "models.h"
#include "tracker.h"

namespace motion {

using demo::Bytes;
using demo::Colour;

namespace {

constexpr int warmUp = 40;  // frames before scores are counted: the models learn the scene first

std::string number(double value, int digits = 0) {
  char text[32];
  snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

// Where the point of the scene at `p` in one view is in another.
OrvPoint32f moved(OrvPoint32f p, const View& from, const View& to, OrvSize size) {
  const float u = from.x + from.scale * (p.x - (float)size.width / 2);
  const float v = from.y + from.scale * (p.y - (float)size.height / 2);
  return {(u - to.x) / to.scale + (float)size.width / 2, (v - to.y) / to.scale + (float)size.height / 2};
}

// A frame with the points that are followed into it, and their ways since `trail` frames.
Bytes drawTracks(const Bytes& frame, const std::vector<Track>& tracks, int number, int trail) {
  Bytes canvas = demo::darkened(demo::toGray(frame));
  for (const Track& t : tracks) {
    const int index = number - t.first;
    if (index < 0 || index >= (int)t.places.size()) continue;
    for (int i = std::max(index - trail, 0); i < index; ++i)
      demo::line(canvas, t.places[(size_t)i], t.places[(size_t)i + 1], demo::green);
    demo::circle(canvas, t.places[(size_t)index].x, t.places[(size_t)index].y, 2, demo::warm);
  }
  return canvas;
}

// How far steps, and whole ways, end from where the camera's motion leads them.
void showErrors(demo::Sheet& sheet, const Sequence& s, const std::vector<Track>& tracks) {
  std::vector<double> steps, ways;
  for (const Track& t : tracks) {
    const auto view = [&](size_t i) { return s.views[(size_t)t.first + i]; };
    const auto off = [&](size_t from, size_t to) {
      const OrvPoint32f want = moved(t.places[from], view(from), view(to), s.size()), got = t.places[to];
      return hypot(want.x - got.x, want.y - got.y);
    };
    for (size_t i = 0; i + 1 < t.places.size(); ++i) steps.push_back(off(i, i + 1));
    if (t.places.size() > 20) ways.push_back(off(0, t.places.size() - 1));
  }
  const auto row = [](const char* name, std::vector<double> errors) {
    std::sort(errors.begin(), errors.end());
    const auto at = [&](double part) {
      return errors.empty() ? std::string("-") : number(errors[(size_t)(part * (double)(errors.size() - 1))], 3);
    };
    const auto half = std::upper_bound(errors.begin(), errors.end(), 0.5) - errors.begin();
    return std::vector<std::string>{name, number((double)errors.size()), at(0.5), at(0.95),
                                    number(100. * Score::share(half, (int64_t)errors.size()), 2)};
  };
  sheet.table({"off the true motion", "count", "median, pixels", "95 %, pixels", "% within half"},
              {row("steps", steps), row("ways of 20 and more", ways)});
}

// Hits white, false alarms red, misses blue; without a truth the mask as it is.
Bytes compared(const Bytes& mask, const Bytes* truth) {
  Bytes picture(mask.width, mask.height, 3);
  constexpr Colour hit{255, 255, 255}, alarm{230, 60, 50}, miss{70, 120, 255}, nothing{0, 0, 0}, shadow{90, 90, 90};
  for (size_t i = 0; i < mask.pixels.size(); ++i) {
    const bool said = mask.pixels[i] == 255, is = truth == nullptr ? said : truth->pixels[i] != 0;
    const Colour colour = said ? is ? hit : alarm : is ? miss : mask.pixels[i] != 0 ? shadow : nothing;
    std::copy(colour.begin(), colour.end(), &picture.pixels[3 * i]);
  }
  return picture;
}

// How many gray levels off the scene a background is, in the mean.
double meanError(const Bytes& a, const Bytes& b) {
  int64_t sum = 0;
  for (size_t i = 0; i < a.pixels.size(); ++i) sum += abs(a.pixels[i] - b.pixels[i]);
  return (double)sum / (double)a.pixels.size();
}

}  // namespace

void showTracking(demo::Sheet& sheet, const Sequence& s) {
  Tracker tracker(150);
  for (const Bytes& frame : s.frames) tracker.see(frame);
  const auto& tracks = tracker.tracks();
  const auto count = (int)s.frames.size();
  sheet.section("Corners through the sequence",
                "Corners are maxima of the smaller eigenvalue. Optical flow follows them from frame to frame through "
                "Gaussian pyramids; a point is given up where the flow loses it, its surroundings change or it leaves "
                "the picture, and new corners are found when a quarter is gone. Trails of 25 frames." +
                    std::string(s.views.empty() ? "" : " The camera pans over the picture and comes closer."));
  const double perStep = tracker.seconds() / std::max(tracker.steps(), 1);
  for (const int i : {0, count / 3, 2 * count / 3, count - 1})
    sheet.picture(drawTracks(s.frames[(size_t)i], tracks, i, 25), "track" + number(i), "frame " + number(i),
                  i == 0 ? "The first corners."
                         : "Orange: points in this frame. Flow took " + number(1e6 * perStep, 1) +
                               " microseconds a point and frame.",
                  i == 0 ? "orviMinEigenVal_8u32f_C1R" : "orviOpticalFlowPyrLK_8u_C1R");
  if (!s.views.empty()) showErrors(sheet, s, tracks);
}

void showForeground(demo::Sheet& sheet, const Sequence& s) {
  const auto models = makeModels();
  const auto count = (int)s.frames.size();
  const bool known = !s.truth.empty();
  const int moments[] = {2 * count / 5, 7 * count / 10, count - 1};
  sheet.section("Foreground by three models",
                known ? "A still camera with noise; the light swells and fades by six percent, and things pass, with "
                        "shadows. White: found. Red: taken for foreground, wrongly. Blue: missed. Gray: called shadow."
                      : "White: foreground. Gray: called shadow. The models expect a camera that stands still.");
  std::vector<std::vector<std::string>> rows;
  std::vector<Bytes> backgrounds;
  for (const int i : moments) {
    sheet.picture(s.frames[(size_t)i], "frame" + number(i), "frame " + number(i), "What the models are given.");
    if (known)
      sheet.picture(compared(s.truth[(size_t)i], nullptr), "truth" + number(i), "truth",
                    "What moves in it; shadows don't count.");
  }
  for (const auto& model : models) {
    Score asTold, score;
    Bytes mask(s.size().width, s.size().height, 1), background(s.size().width, s.size().height, 3);
    for (int i = 0; i < count; ++i) {
      model->see(s.frames[(size_t)i], mask, background);
      const Bytes clean = cleaned(mask);
      const Bytes* const truth = known ? &s.truth[(size_t)i] : nullptr;
      if (known && i >= warmUp) asTold.add(mask, *truth), score.add(clean, *truth);
      if (std::find(std::begin(moments), std::end(moments), i) == std::end(moments)) continue;
      sheet.picture(compared(mask, truth), model->stem + number(i), model->name + ", frame " + number(i),
                    "As the model tells it.", model->call);
    }
    backgrounds.push_back(background);
    const double perPixel = 1e9 * model->seconds / ((double)count * (double)mask.pixels.size());
    std::vector<std::string> row = {model->name, number(perPixel, 1)};
    if (known)
      row.insert(row.end(), {number(score.precision(), 3), number(score.recall(), 3), number(score.overlap(), 3),
                             number(asTold.overlap(), 3), number(meanError(background, s.scene), 2)});
    rows.push_back(row);
  }
  std::vector<std::string> head = {"model", "ns a pixel"};
  if (known) head.insert(head.end(), {"precision", "recall", "overlap", "overlap, as told", "background off by"});
  sheet.table(head, rows);
  sheet.section("Backgrounds", "What the models take for the scene in the end.");
  if (known) sheet.picture(s.scene, "scene", "the scene", "As it is without noise, in the light of the last frame.");
  for (size_t i = 0; i < models.size(); ++i)
    sheet.picture(backgrounds[i], "background_" + models[i]->stem, models[i]->name,
                  known ? "Off by " + rows[i].back() + " levels in the mean." : "After the last frame.");
}

}  // namespace motion
