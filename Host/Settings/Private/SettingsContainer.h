#pragma once

#include "ISettingsContainer.h"
#include "SettingsCategory.h"

class FSettingsContainer final : public ISettingsContainer
{
public:
	explicit FSettingsContainer(const FName& InName)
		: Name(InName)
	{
	}

	TSharedRef<ISettingsSection> AddSection(const FName& CategoryName, const FName& SectionName,
		const FText& DisplayName, const FText& Description, const TWeakObjectPtr<UObject>& SettingsObject);
	void RemoveSection(const FName& CategoryName, const FName& SectionName);

	int32 GetCategories(TArray<TSharedPtr<ISettingsCategory>>& OutCategories) const override;
	TSharedPtr<ISettingsCategory> GetCategory(const FName& CategoryName) const override;
	const FName& GetName() const override { return Name; }
	FOnCategoryModified& OnCategoryModified() override { return CategoryModified; }

private:
	FSettingsCategory& FindOrAddCategory(const FName& CategoryName);

	const FName Name;
	TMap<FName, TSharedPtr<FSettingsCategory>> Categories;
	FOnCategoryModified CategoryModified;
};
