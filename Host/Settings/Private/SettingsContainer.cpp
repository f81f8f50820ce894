#include "SettingsContainer.h"

FSettingsCategory& FSettingsContainer::FindOrAddCategory(const FName& CategoryName)
{
	TSharedPtr<FSettingsCategory>& Category = Categories.FindOrAdd(CategoryName);
	if (!Category)
	{
		Category = MakeShared<FSettingsCategory>(CategoryName);
	}
	return *Category;
}

TSharedRef<ISettingsSection> FSettingsContainer::AddSection(const FName& CategoryName, const FName& SectionName,
	const FText& DisplayName, const FText& Description, const TWeakObjectPtr<UObject>& SettingsObject)
{
	const TSharedRef<ISettingsSection> Section =
		FindOrAddCategory(CategoryName).AddSection(SectionName, DisplayName, Description, SettingsObject);
	CategoryModified.Broadcast(CategoryName);
	return Section;
}

void FSettingsContainer::RemoveSection(const FName& CategoryName, const FName& SectionName)
{
	const TSharedPtr<FSettingsCategory> Category = Categories.FindRef(CategoryName);
	const TSharedPtr<ISettingsSection> Removed = Category ? Category->RemoveSection(SectionName) : nullptr;
	if (Removed)
	{
		CategoryModified.Broadcast(CategoryName);
	}
}

int32 FSettingsContainer::GetCategories(TArray<TSharedPtr<ISettingsCategory>>& OutCategories) const
{
	OutCategories.Empty();
	for (const auto& Pair : Categories)
	{
		TArray<TSharedPtr<ISettingsSection>> Sections;
		if (Pair.Value->GetSections(Sections) > 0)
		{
			OutCategories.Add(Pair.Value);
		}
	}
	return OutCategories.Num();
}

TSharedPtr<ISettingsCategory> FSettingsContainer::GetCategory(const FName& CategoryName) const
{
	return Categories.FindRef(CategoryName);
}
