#pragma once

#include "CoreMinimal.h"
#include "ISettingsSection.h"

class FProperty;

/** The object that a page edits. Every edit goes through here, so every edit is notified and saved. */
class FSettingsPage : public TSharedFromThis<FSettingsPage>
{
public:
	explicit FSettingsPage(const TSharedRef<ISettingsSection>& InSection)
		: Section(InSection)
	{
	}

	const TSharedRef<ISettingsSection>& GetSection() const { return Section; }
	/** Null once the object is gone. */
	UObject* GetObject() const { return Section->GetSettingsObject().Get(); }

	/** The value at a path as text; empty when the object is gone. See FHostPropertyEdit for paths. */
	FString GetValue(const FString& Path) const;
	/** Nothing happens when it is the value already. */
	void SetValue(const FString& Path, const FString& Text);
	void AddElement(const FString& Path);
	void InsertElement(const FString& Path, int32 Index);
	void RemoveElement(const FString& Path, int32 Index);
	void ClearElements(const FString& Path);
	void ResetDefaults();

	/** Why the last edit was not made; empty if it was. */
	const FString& GetError() const { return Error; }

private:
	/** Notes what an edit has answered, and saves what it has changed. */
	void Finish(const FString& EditError);

	const TSharedRef<ISettingsSection> Section;
	FString Error;
};
