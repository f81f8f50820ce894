#include "Harrier.h"

#include "Modules/ModuleManager.h"

DEFINE_LOG_CATEGORY(LogHarrier);

/** The game's only module. It keeps no state of its own. */
class FHarrierModule : public FDefaultGameModuleImpl
{
public:
	virtual void StartupModule() override { UE_LOG(LogHarrier, Log, TEXT("Harrier has started")); }
};

IMPLEMENT_PRIMARY_GAME_MODULE(FHarrierModule, Harrier, "Harrier");
