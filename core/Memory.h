#pragma once
// A stadium is loaded, saved and rebuilt as a few large arrays at a time. Keeping freed memory
// in the process for the next such array, instead of handing it back to the system and taking it
// again page by page, makes a repeated load or save cost the copy and not the page faults.
// The editor, terramason-cli and the benchmarks call this once at start.
void KeepLargeBlocksForReuse();
