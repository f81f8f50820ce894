#pragma once

#include "CoreMinimal.h"
#include "EditorSubsystem.h"
#include "UObject/WeakObjectPtrTemplates.h"
#include "AssetEditorSubsystem.generated.h"

struct FAssetData;

enum class EAssetEditorCloseReason : uint8
{
	CloseAllEditorsForAsset,
	AssetUnloadingOrInvalid,
};

/** An editor that is open for an asset. */
class IAssetEditorInstance
{
public:
	virtual ~IAssetEditorInstance() = default;

	virtual FName GetEditorName() const = 0;
	virtual void FocusWindow(UObject* ObjectToFocusOn = nullptr) = 0;
	virtual bool CloseWindow(EAssetEditorCloseReason InCloseReason) = 0;
};

/** Which assets are open in an editor. An asset is opened once; an asset that is deleted has its editor closed. */
UCLASS()
class UNREALED_API UAssetEditorSubsystem : public UEditorSubsystem
{
	GENERATED_BODY()

public:
	void Initialize() override;
	void Deinitialize() override;

	/**
	 * Opens the editor for the asset's kind, or brings the one that is open to the front.
	 *
	 * @return false, with the reason in the log, when there is no editor for it or no such asset
	 */
	bool OpenEditorForAsset(UObject* Asset);
	/** "/Game/Folder/Asset.Asset", or without what is behind the dot. */
	bool OpenEditorForAsset(const FString& AssetPathName);
	/** Null when the asset is not open. */
	IAssetEditorInstance* FindEditorForAsset(UObject* Asset, bool bFocusIfOpen);
	/** @return how many there were */
	int32 CloseAllEditorsForAsset(UObject* Asset);
	TArray<UObject*> GetAllEditedAssets() const;

	// For editors.
	void NotifyAssetOpened(UObject* Asset, IAssetEditorInstance* AssetEditor);
	void NotifyEditorClosed(IAssetEditorInstance* AssetEditor);

private:
	struct FOpenAsset
	{
		TWeakObjectPtr<UObject> Asset;
		IAssetEditorInstance* Editor = nullptr;
	};

	void OnAssetRemoved(const FAssetData& Asset);

	TArray<FOpenAsset> OpenAssets;
	FDelegateHandle RemovedHandle;
};
