#include "core/ui/Resources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE declares a function and must stand outside any namespace.
static void RegisterTerramasonResources() { Q_INIT_RESOURCE(terramason); }

void LoadResources() {
    static const bool loaded = (RegisterTerramasonResources(), true);
    (void)loaded;
}
