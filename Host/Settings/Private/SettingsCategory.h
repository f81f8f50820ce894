#pragma once

#include "ISettingsCategory.h"

class FSettingsCategory final : public ISettingsCategory, public TSharedFromThis<FSettingsCategory>
{
public:
	explicit FSettingsCategory(const FName& InName);

	/** Puts a section in the place of one of the same name, or at the end. */
	TSharedRef<ISettingsSection> AddSection(const FName& SectionName, const FText& InDisplayName,
		const FText& InDescription, const TWeakObjectPtr<UObject>& SettingsObject);
	/** The section that was removed; null when there was none of this name. */
	TSharedPtr<ISettingsSection> RemoveSection(const FName& SectionName);
	void Describe(const FText& InDisplayName, const FText& InDescription);

	const FText& GetDescription() const override { return Description; }
	const FText& GetDisplayName() const override { return DisplayName; }
	const FName& GetName() const override { return Name; }
	TSharedPtr<ISettingsSection> GetSection(const FName& SectionName) const override;
	int32 GetSections(TArray<TSharedPtr<ISettingsSection>>& OutSections) const override;

private:
	int32 FindSection(const FName& SectionName) const;

	const FName Name;
	FText DisplayName;
	FText Description;
	TArray<TSharedPtr<ISettingsSection>> Sections;
};
