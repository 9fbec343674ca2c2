#include "core/Memory.h"

#include <malloc.h>

void KeepLargeBlocksForReuse() {
    // Blocks up to 512 MB come from the heap rather than from their own mapping, and the heap's
    // free top is not trimmed, so the next stadium reuses the pages of the last one.
    mallopt(M_MMAP_THRESHOLD, 512 * 1024 * 1024);
    mallopt(M_TRIM_THRESHOLD, -1);
}
