#include "AssetToolsModule.h"

#include "AssetTools.h"
#include "UObject/Package.h"
#include "UObject/StrongObjectPtr.h"

/** The tools live as long as the module. */
class FHostAssetToolsModule final : public FAssetToolsModule
{
public:
	void StartupModule() override { Tools = TStrongObjectPtr<UAssetToolsImpl>(NewObject<UAssetToolsImpl>()); }
	void ShutdownModule() override { Tools.Reset(); }
	IAssetTools& Get() const override { return *Tools.Get(); }

private:
	TStrongObjectPtr<UAssetToolsImpl> Tools;
};

IMPLEMENT_MODULE(FHostAssetToolsModule, AssetTools)
