// The checks of steps that most functions share.
#pragma once
#include "framework/sweep.h"

namespace test {

// Short steps of all images, then misaligned ones; bytes have none.
template <class T>
std::vector<Told> stepsOf(const std::vector<int>& images) {
  return eachOf(Fault::smallStep, images) + eachOf(Fault::misalignedStep, sizeof(T) > 1 ? images : std::vector<int>());
}

}  // namespace test
