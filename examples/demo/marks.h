// Marks drawn over a colour picture; what lies beyond its sides is left out.
#pragma once
#include <array>
#include "image.h"

namespace demo {

using Colour = std::array<uint8_t, 3>;
constexpr Colour warm = {255, 190, 40}, cool = {70, 200, 255}, green = {120, 255, 90};

// A gray picture in three channels, at three fifths of its brightness, so that marks stand out.
Bytes darkened(const Bytes& gray);

void dot(Bytes& canvas, float x, float y, Colour colour);
void line(Bytes& canvas, OrvPoint32f from, OrvPoint32f to, Colour colour);
void circle(Bytes& canvas, float x, float y, float radius, Colour colour);

}  // namespace demo
