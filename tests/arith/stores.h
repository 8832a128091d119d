// The two ways to store results, which must make no difference: through the cache, or past it.
#pragma once
#include "framework/settings.h"

namespace test {

// Calls body() once for each; leaves an ordinary cache.
template <class Body>
void forBothStores(const Body& body) {
  steerCache(1);  // every image is larger
  {
    const Context context("stores that bypass the cache");
    body();
  }
  steerCache(INT32_MAX);
  body();
  steerCache(32 << 20);
}

}  // namespace test
