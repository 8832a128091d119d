// The version record of this variant.
#include "core/variant.h"

#if ORV_IS_N8
static const OrvLibVersion version = {
    8, 2, 1, 44077, "n8", "orvCV Tern (n8 threaded)", "8.2.1 (r44077)", "Oct  9 2014"};
#else
static const OrvLibVersion version = {
    8, 2, 1, 44077, "u8", "orvCV SSSE3 (u8 threaded)", "8.2.1 (r44077)", "Oct  9 2014"};
#endif

const OrvLibVersion* orvcvGetLibVersion(void) { return &version; }
