#pragma once

#include "CoreMinimal.h"

class FArrayProperty;
class FProperty;
class FSettingsPage;
class SWidget;
class UEnum;

/** Makes the widgets in which single values are seen and edited. They always show the value as it is now. */
class FPropertyValueWidgets
{
public:
	explicit FPropertyValueWidgets(const TSharedRef<FSettingsPage>& InPage)
		: Page(InPage)
	{
	}

	/** @param Name  what the widget is called for somebody who cannot see its row */
	TSharedRef<SWidget> MakeValue(const FProperty& Property, const FString& Path, const FText& Name) const;
	/** How many elements there are, and what can be done with all of them. */
	TSharedRef<SWidget> MakeArrayHeader(const FArrayProperty& Property, const FString& Path, int32 NumElements) const;
	TSharedRef<SWidget> MakeElement(
		const FArrayProperty& Property, const FString& ArrayPath, int32 Index, const FText& Name) const;

	/** Whether a text is nobody else's business: only its meta data say so, as in the engine. */
	static bool IsSecret(const FProperty& Property);

private:
	TSharedRef<SWidget> MakeCheckBox(const FString& Path, const FText& Name) const;
	TSharedRef<SWidget> MakeEnumBox(const UEnum& Enum, const FString& Path, const FText& Name) const;
	TSharedRef<SWidget> MakeEnumMenu(const UEnum& Enum, const FString& Path) const;
	TSharedRef<SWidget> MakeTextBox(const FProperty& Property, const FString& Path, const FText& Name) const;

	const TSharedRef<FSettingsPage> Page;
};
