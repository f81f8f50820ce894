#include "Features/IModularFeatures.h"
#include "LockingProvider.h"
#include "Modules/ModuleInterface.h"
#include "Modules/ModuleManager.h"

/** Offers the provider; nobody uses it before it is asked for by name. */
class FLockingSourceControlModule final : public IModuleInterface
{
public:
	void StartupModule() override { IModularFeatures::Get().RegisterModularFeature("SourceControl", &Provider); }
	void ShutdownModule() override { IModularFeatures::Get().UnregisterModularFeature("SourceControl", &Provider); }

private:
	FLockingProvider Provider;
};

IMPLEMENT_MODULE(FLockingSourceControlModule, LockingSourceControl)
