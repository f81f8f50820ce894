#pragma once

#include "Containers/Array.h"
#include "ISettingsSection.h"

/** A heading with sections below it, such as "Plugins". */
class ISettingsCategory
{
public:
	virtual ~ISettingsCategory() = default;

	virtual const FText& GetDescription() const = 0;
	virtual const FText& GetDisplayName() const = 0;
	virtual const FName& GetName() const = 0;
	/** Null when there is none of this name. */
	virtual TSharedPtr<ISettingsSection> GetSection(const FName& SectionName) const = 0;
	/** Empties the array and fills it with the sections in order of registration; the number is returned. */
	virtual int32 GetSections(TArray<TSharedPtr<ISettingsSection>>& OutSections) const = 0;
};

using ISettingsCategoryPtr = TSharedPtr<ISettingsCategory>;
