#pragma once
// The pictures built into the program (splash, icon). They live in a static library, whose
// resource table the linker would drop unless something names it; every window that shows a
// picture calls this first.
void LoadResources();
