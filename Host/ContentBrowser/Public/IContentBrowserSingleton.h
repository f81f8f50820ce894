#pragma once

#include "AssetRegistry/AssetData.h"
#include "CoreMinimal.h"

/** What others ask of the content browsers. */
class IContentBrowserSingleton
{
public:
	virtual ~IContentBrowserSingleton() = default;

	/** Of the browser that was opened last; nothing without one. */
	virtual void GetSelectedAssets(TArray<FAssetData>& SelectedAssets) = 0;
};
