#include "processor.h"
#include <fstream>
#include "orvcore.h"

namespace demo {

std::string processorName() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);)
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  return "unknown";
}

// The library asks the same of the processor once, while it is loaded.
std::string vectorWidth() {
  const uint64_t avx2 = orvCpuSse41 | orvCpuSse42 | orvCpuAes | orvCpuPclmul | orvCpuBmi1 | orvCpuBmi2 | orvCpuAvx |
                        orvCpuF16c | orvCpuFma | orvCpuAvx2;
  const uint64_t avx512 = avx2 | orvCpuAvx512f | orvCpuAvx512dq | orvCpuAvx512bw | orvCpuAvx512vl;
  uint64_t features = 0;
  orvGetCpuFeatures(&features, nullptr);
  if ((features & avx512) == avx512) return "64 bytes (AVX-512)";
  if ((features & avx2) == avx2) return "32 bytes (AVX2)";
  return "16 bytes (SSSE3)";
}

}  // namespace demo
