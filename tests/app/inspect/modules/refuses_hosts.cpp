#include "plugin_entry.h"

PLUGIN_ENTRY { return traverser == nullptr; }
