#include "Misc/HotReloadInterface.h"

#include "Modules/ModuleManager.h"
