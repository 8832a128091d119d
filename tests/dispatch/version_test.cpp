// The version record, the choice of the variant, and what loading asks of the core library.
#include <stdlib.h>
#include <string.h>
#include "framework/settings.h"

using namespace test;

TEST(versionRecord) {
  const OrvLibVersion* v = orvcvGetLibVersion();
  CHECK(v->major == 8 && v->minor == 2 && v->update == 1 && v->revision == 44077);
  CHECK(!strcmp(v->versionText, "8.2.1 (r44077)") && !strcmp(v->buildDate, "Oct  9 2014"));
  const bool n8 = !strcmp(v->cpuTag, "n8");
  CHECK(n8 || !strcmp(v->cpuTag, "u8"));
  CHECK(!strcmp(v->name, n8 ? "orvCV Tern (n8 threaded)" : "orvCV SSSE3 (u8 threaded)"));
  CHECK(v->cpuTag[2] == 0 && v->cpuTag[3] == 0);
}

#ifndef ORV_VARIANT
TEST(selectionFollowsEnabledFeatures) {
  const char* text = getenv("STEER_FEATURES");
  if (text == nullptr) return;
  const bool both = (strtoull(text, nullptr, 0) & 0x30) == 0x30;
  CHECK(!strcmp(orvcvGetLibVersion()->cpuTag, both ? "n8" : "u8"), "features %s", text);
}

// Taken while this program is being initialised: after the library was loaded, before any call of it.
static const std::string callsAtLoad = steeredCallLog();

TEST(loadingAsksForFeaturesOnly) {
  const char* expected = "orvGetCpuFeatures(null, null); orvGetEnabledCpuFeatures(); ";
  CHECK(callsAtLoad == expected, "calls: %s", callsAtLoad.c_str());
}
#endif
