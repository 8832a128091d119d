// Flood fills of the forms that each variant has a body of.
#include "segment/flood_cases.h"

using namespace test;

TEST(forms) { FLOOD(4Con_32s_C1), FLOOD(8Con_32s_C1), FLOOD(Grad4Con_8u_C1); }
