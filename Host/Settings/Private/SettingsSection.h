#pragma once

#include "ISettingsSection.h"

class FSettingsSection final : public ISettingsSection
{
public:
	FSettingsSection(const TWeakPtr<ISettingsCategory>& InCategory, const FName& InName, const FText& InDisplayName,
		const FText& InDescription, const TWeakObjectPtr<UObject>& InSettingsObject);

	bool CanEdit() const override { return SettingsObject.IsValid(); }
	bool CanSave() const override;
	bool CanResetDefaults() const override { return CanSave() || ResetDefaultsDelegate.IsBound(); }
	TWeakPtr<ISettingsCategory> GetCategory() override { return Category; }
	const FText& GetDescription() const override { return Description; }
	const FText& GetDisplayName() const override { return DisplayName; }
	const FName& GetName() const override { return Name; }
	TWeakObjectPtr<UObject> GetSettingsObject() const override { return SettingsObject; }
	bool NotifySectionOnPropertyModified() override;
	void Select() override { SelectDelegate.ExecuteIfBound(); }
	bool ResetDefaults() override;
	bool Save() override;
	FOnModified& OnModified() override { return ModifiedDelegate; }
	FOnResetDefaults& OnResetDefaults() override { return ResetDefaultsDelegate; }
	FOnSave& OnSave() override { return SaveDelegate; }
	FSimpleDelegate& OnSelect() override { return SelectDelegate; }

private:
	const TWeakPtr<ISettingsCategory> Category;
	const FName Name;
	const FText DisplayName;
	const FText Description;
	const TWeakObjectPtr<UObject> SettingsObject;
	FOnModified ModifiedDelegate;
	FOnResetDefaults ResetDefaultsDelegate;
	FOnSave SaveDelegate;
	FSimpleDelegate SelectDelegate;
};
