#pragma once

#include "ISettingsCategory.h"

/** All categories of one window: "Project" is Project Settings, "Editor" Editor Preferences. */
class ISettingsContainer
{
public:
	virtual ~ISettingsContainer() = default;

	/** Empties the array and fills it with the categories that have sections; the number is returned. */
	virtual int32 GetCategories(TArray<TSharedPtr<ISettingsCategory>>& OutCategories) const = 0;
	/** Null when there is none of this name. */
	virtual TSharedPtr<ISettingsCategory> GetCategory(const FName& CategoryName) const = 0;
	virtual const FName& GetName() const = 0;

	/** A section of the category was added, replaced or removed. */
	DECLARE_MULTICAST_DELEGATE_OneParam(FOnCategoryModified, const FName& /*CategoryName*/);
	virtual FOnCategoryModified& OnCategoryModified() = 0;
};

using ISettingsContainerPtr = TSharedPtr<ISettingsContainer>;
