#include "Compiler/BlueprintCompilationManager.h"
#include "Modules/ModuleManager.h"

/** The editor's own part: what makes and compiles assets. */
class FUnrealEdModule final : public IModuleInterface
{
public:
	void StartupModule() override { FBlueprintCompilationManager::Initialize(); }
	void ShutdownModule() override { FBlueprintCompilationManager::Shutdown(); }
};

IMPLEMENT_MODULE(FUnrealEdModule, UnrealEd)
