#include "AssetRegistry/AssetRegistryModule.h"

#include "AssetRegistry.h"
#include "Templates/UniquePtr.h"

/** The registry lives as long as the module. */
class FHostAssetRegistryModule final : public FAssetRegistryModule
{
public:
	void StartupModule() override { Registry = MakeUnique<FAssetRegistry>(); }
	void ShutdownModule() override { Registry.Reset(); }
	IAssetRegistry& Get() const override { return *Registry; }

private:
	TUniquePtr<FAssetRegistry> Registry;
};

IMPLEMENT_MODULE(FHostAssetRegistryModule, AssetRegistry)

IAssetRegistry* IAssetRegistry::Get()
{
	const FAssetRegistryModule* Module = FModuleManager::GetModulePtr<FAssetRegistryModule>("AssetRegistry");
	return Module ? &Module->Get() : nullptr;
}
