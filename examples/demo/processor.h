// What the library runs on.
#pragma once
#include <string>

namespace demo {

std::string processorName();

// The vectors that the library's kernels use on this processor.
std::string vectorWidth();

}  // namespace demo
