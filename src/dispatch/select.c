/* Load-time selection of the variant. The linker makes ownInit the init entry of the library, so it runs before any
   public function can be called; nothing is read again later. */
#include <stddef.h>
#include <stdint.h>

/* The two entries of the core library that selection needs. */
int32_t orvGetCpuFeatures(uint64_t* features, uint32_t* registers);
uint64_t orvGetEnabledCpuFeatures(void);

enum { featureSsse3 = 0x10, featureMovbe = 0x20 };

/* Index of the table slot that every stub takes: 0 or 1. */
int32_t orvJumpIndexForMergedDLL;

/* Detects the processor, then stores 1 if both features are enabled, else 0. */
int32_t ownInit(void);
int32_t ownInit(void) {
  const uint64_t both = featureSsse3 | featureMovbe;
  orvGetCpuFeatures(NULL, NULL); /* called for its side effect: the core library detects the processor */
  orvJumpIndexForMergedDLL = (orvGetEnabledCpuFeatures() & both) == both;
  return 1;
}
