#include "huge_pages.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace Tessik {

void ZqAdviseHugePages(void* data, std::size_t bytes) noexcept {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  constexpr std::uintptr_t kHugePage = std::uintptr_t{2} << 20;
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(data);
  const std::uintptr_t first = (begin + kHugePage - 1) & ~(kHugePage - 1);
  const std::uintptr_t last = (begin + bytes) & ~(kHugePage - 1);
  if (last > first) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
  (void)data;
  (void)bytes;
#endif
}

}  // namespace Tessik
