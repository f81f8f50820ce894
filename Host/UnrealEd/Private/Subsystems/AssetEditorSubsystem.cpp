#include "Subsystems/AssetEditorSubsystem.h"

#include "AssetDefinitionRegistry.h"
#include "AssetRegistry/AssetRegistryModule.h"

DEFINE_LOG_CATEGORY_STATIC(LogAssetEditorSubsystem, Log, All);

void UAssetEditorSubsystem::Initialize()
{
	RemovedHandle =
		FAssetRegistryModule::GetRegistry().OnAssetRemoved().AddUObject(this, &UAssetEditorSubsystem::OnAssetRemoved);
}

void UAssetEditorSubsystem::Deinitialize()
{
	if (IAssetRegistry* const Registry = IAssetRegistry::Get())
	{
		Registry->OnAssetRemoved().Remove(RemovedHandle);
	}
}

bool UAssetEditorSubsystem::OpenEditorForAsset(UObject* Asset)
{
	if (!Asset)
	{
		UE_LOG(LogAssetEditorSubsystem, Warning, TEXT("There is no asset to open"));
		return false;
	}
	if (FindEditorForAsset(Asset, true))
	{
		return true;
	}
	const UAssetDefinition* const Definition =
		UAssetDefinitionRegistry::Get()->GetAssetDefinitionForClass(Asset->GetClass());
	FAssetOpenArgs Args;
	Args.Assets.Add(FAssetData(Asset));
	const bool bOpened = Definition && Definition->OpenAssets(Args) == EAssetCommandResult::Handled;
	UE_CLOG(!bOpened, LogAssetEditorSubsystem, Warning, TEXT("There is no editor for %s, an asset of the class %s"),
		*Asset->GetPathName(), *Asset->GetClass()->GetName());
	return bOpened;
}

bool UAssetEditorSubsystem::OpenEditorForAsset(const FString& AssetPathName)
{
	UObject* const Asset = StaticLoadObject(UObject::StaticClass(), nullptr, *AssetPathName);
	UE_CLOG(!Asset, LogAssetEditorSubsystem, Warning, TEXT("%s cannot be loaded"), *AssetPathName);
	return Asset && OpenEditorForAsset(Asset);
}

IAssetEditorInstance* UAssetEditorSubsystem::FindEditorForAsset(UObject* Asset, bool bFocusIfOpen)
{
	const FOpenAsset* const Found =
		OpenAssets.FindByPredicate([Asset](const FOpenAsset& Each) { return Each.Asset == Asset; });
	if (Found && bFocusIfOpen)
	{
		Found->Editor->FocusWindow(Asset);
	}
	return Found ? Found->Editor : nullptr;
}

int32 UAssetEditorSubsystem::CloseAllEditorsForAsset(UObject* Asset)
{
	IAssetEditorInstance* const Editor = FindEditorForAsset(Asset, false);
	return Editor && Editor->CloseWindow(EAssetEditorCloseReason::CloseAllEditorsForAsset) ? 1 : 0;
}

TArray<UObject*> UAssetEditorSubsystem::GetAllEditedAssets() const
{
	TArray<UObject*> Assets;
	for (const FOpenAsset& Each : OpenAssets)
	{
		if (UObject* const Asset = Each.Asset.Get())
		{
			Assets.Add(Asset);
		}
	}
	return Assets;
}

void UAssetEditorSubsystem::NotifyAssetOpened(UObject* Asset, IAssetEditorInstance* AssetEditor)
{
	OpenAssets.Add({ Asset, AssetEditor });
}

void UAssetEditorSubsystem::NotifyEditorClosed(IAssetEditorInstance* AssetEditor)
{
	OpenAssets.RemoveAll([AssetEditor](const FOpenAsset& Each) { return Each.Editor == AssetEditor; });
}

void UAssetEditorSubsystem::OnAssetRemoved(const FAssetData& Asset)
{
	const FString Path = Asset.GetObjectPathString();
	const TArray<FOpenAsset> Before = OpenAssets;
	for (const FOpenAsset& Each : Before)
	{
		const UObject* const Object = Each.Asset.Get();
		if (!Object || Object->GetPathName() == Path)
		{
			Each.Editor->CloseWindow(EAssetEditorCloseReason::AssetUnloadingOrInvalid);
		}
	}
}
