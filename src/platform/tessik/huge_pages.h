// Asks the kernel to back a large buffer with huge pages. Private to the
// library.
#pragma once

#include <cstddef>

namespace Tessik {

// Table loaders fill vectors of tens of megabytes once, front to back. With
// 4 KiB pages every 4 KiB of first touch is a page fault, which on virtual
// machines cost as much as parsing the numbers that fill the page. Huge
// pages cut the faults 512-fold where the kernel offers them on request
// (transparent huge pages in "madvise" mode). Only whole huge pages inside
// the buffer are advised; small buffers and other systems are left alone,
// and a refusal changes nothing but speed.
void ZqAdviseHugePages(void* data, std::size_t bytes) noexcept;

}  // namespace Tessik
