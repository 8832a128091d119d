/* stand-in, replaced below */
#include <stdint.h>
#include <stdlib.h>
#define API __attribute__((visibility("default")))
API int32_t orvGetCpuFeatures(uint64_t* f, uint32_t* r) { (void)f; (void)r; return 0; }
API uint64_t orvGetEnabledCpuFeatures(void) { return 0x30; }
API int32_t ownGetNumThreads(void) { return 2; }
API int32_t orvGetNumCoresOnDie(void) { return 2; }
API int32_t orvGetMaxCacheSizeB(int32_t* size) { *size = 32 << 20; return 0; }
API void* orvMalloc(int32_t bytes) { return malloc((size_t)bytes); }
API void orvFree(void* p) { free(p); }
