// Finds what a cascade was trained on in a picture.
//
//   orvcv_detect PICTURE CASCADE RESULT      PICTURE: PNG or JPEG; RESULT: PNG, the picture with frames around what was
//                                            found. Prints x, y, width, height of each, and how many windows agreed
#include <stdio.h>
#include <exception>
#include "detector.h"

int main(int count, char** arguments) {
  if (count != 4) {
    fprintf(stderr, "usage: %s PICTURE CASCADE RESULT\n", arguments[0]);
    return 2;
  }
  try {
    demo::Bytes picture = demo::load(arguments[1]);
    const detect::Cascade cascade = detect::readCascade(arguments[2]);
    const auto objects = detect::group(detect::findWindows(demo::toGray(picture), cascade));
    for (const detect::Found& f : objects)
      printf("%d %d %d %d  %d windows\n", f.place.x, f.place.y, f.place.width, f.place.height, f.windows);
    detect::drawFrames(picture, objects);
    demo::saveAs(picture, arguments[3]);
    return 0;
  } catch (const std::exception& e) {
    fprintf(stderr, "orvcv_detect: %s\n", e.what());
    return 1;
  }
}
