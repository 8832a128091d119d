/* The version of the library and the variant that serves this process. */
#ifndef ORVCV_VERSION_H
#define ORVCV_VERSION_H
#include "orvcv/types.h"
#ifdef __cplusplus
extern "C" {
#endif

typedef struct {
  int32_t major, minor, update, revision;
  char cpuTag[4];          /* "u8": general processors; "n8": low-power processors */
  const char* name;        /* name of the library and variant */
  const char* versionText; /* version and revision */
  const char* buildDate;
} OrvLibVersion;

/* The version record of the variant that was selected when the library was loaded. Never null, constant, owned by the
 * library. Cannot fail; any thread. */
const OrvLibVersion* orvcvGetLibVersion(void);

#ifdef __cplusplus
}
#endif
#endif
