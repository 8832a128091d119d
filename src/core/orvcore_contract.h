/* All that the vision library asks of the core library, and nothing more: it runs with any library that keeps this.
   (Load-time selection uses two more entries, declared in dispatch/select.c.) */
#pragma once
#include <stdint.h>
#ifdef __cplusplus
extern "C" {
#endif
int32_t ownGetNumThreads(void);             /* library-wide thread count, at least 1 */
int32_t orvGetNumCoresOnDie(void);          /* processor cores, at least 1 */
int32_t orvGetMaxCacheSizeB(int32_t* size); /* largest cache in bytes; the status is 0 on success */
void* orvMalloc(int32_t bytes);             /* memory or null; users align what they get themselves */
void orvFree(void* memory);                 /* releases what orvMalloc gave */
#ifdef __cplusplus
}
#endif
