// Trains a cascade.
//
//   orvcv_train CASCADE                        on faces that it draws
//   orvcv_train CASCADE OBJECTS BACKGROUNDS    on the PNG and JPEG files of two directories: in one, each picture is an
//                                              object, cut out as a square; in the other, none shows any
//   orvcv_train --scene NUMBER PICTURE         draws a scene with faces to look for instead
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <exception>
#include "demo/timing.h"
#include "drawing.h"
#include "training.h"

int main(int count, char** arguments) {
  try {
    if (count == 4 && strcmp(arguments[1], "--scene") == 0) {
      const detect::Scene scene = detect::drawScene((uint32_t)atoi(arguments[2]), {640, 480}, 6);
      demo::saveAs(scene.image, arguments[3]);
      for (const OrvRect& f : scene.faces) printf("%d %d %d %d\n", f.x, f.y, f.width, f.height);
      return 0;
    }
    if (count != 2 && count != 4) {
      fprintf(stderr, "usage: %s CASCADE [OBJECTS BACKGROUNDS] | --scene NUMBER PICTURE\n", arguments[0]);
      return 2;
    }
    const auto examples = count == 4 ? detect::picturesOf(arguments[2], arguments[3]) : detect::drawnExamples();
    detect::Effort effort;
    effort.report = [](const std::string& text) { puts(text.c_str()); };
    const double took = demo::seconds([&] { writeCascade(train(examples, effort), arguments[1]); });
    printf("%s: trained in %.1f s\n", arguments[1], took);
    return 0;
  } catch (const std::exception& e) {
    fprintf(stderr, "orvcv_train: %s\n", e.what());
    return 1;
  }
}
