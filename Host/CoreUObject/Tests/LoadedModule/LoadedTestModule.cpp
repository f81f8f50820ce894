#include "LoadedTestTypes.h"
#include "Modules/ModuleManager.h"
#include "UObject/Class.h"

/** Notes at start-up whether the module's own types are there already, as a plugin's module relies on. */
class FLoadedTestModule : public IModuleInterface
{
public:
	void StartupModule() override
	{
		GetMutableDefault<ULoadedTestObject>()->Self = GetMutableDefault<ULoadedTestObject>();
		bTypesWereThere =
			FindObject<UClass>(nullptr, TEXT("/Script/CoreUObjectTestModule.LoadedTestObject")) != nullptr;
	}
	bool IsGameModule() const override { return bTypesWereThere; }

private:
	bool bTypesWereThere = false;
};

IMPLEMENT_MODULE(FLoadedTestModule, CoreUObjectTestModule)
