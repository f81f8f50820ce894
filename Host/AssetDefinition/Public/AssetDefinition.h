#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"
#include "Templates/Casts.h"
#include "UObject/Object.h"
#include "UObject/SoftObjectPtr.h"
#include "AssetDefinition.generated.h"

/** Whether somebody has done what was asked for. */
enum class EAssetCommandResult : uint8
{
	Handled,
	Unhandled,
};

struct FAssetArgs
{
	TArray<FAssetData> Assets;

	/** Those of the type; what cannot be loaded is left out. */
	template <typename ExpectedObjectType>
	TArray<ExpectedObjectType*> LoadObjects() const
	{
		TArray<ExpectedObjectType*> Objects;
		for (const FAssetData& Asset : Assets)
		{
			if (ExpectedObjectType* const Object = Cast<ExpectedObjectType>(Asset.GetAsset()))
			{
				Objects.Add(Object);
			}
		}
		return Objects;
	}
};

struct FAssetOpenArgs : public FAssetArgs
{
};

/** What the editor knows of a kind of assets: its name, its colour, what opens it. The default object serves. */
UCLASS(Abstract)
class ASSETDEFINITION_API UAssetDefinition : public UObject
{
	GENERATED_BODY()

public:
	virtual FLinearColor GetAssetColor() const;
	/** The class whose assets it is about, with those of its children that have no definition of their own. */
	virtual TSoftClassPtr<UObject> GetAssetClass() const;
	/** Opens an editor for the assets. Unhandled: there is none for their kind. */
	virtual EAssetCommandResult OpenAssets(const FAssetOpenArgs& OpenArgs) const;
};
