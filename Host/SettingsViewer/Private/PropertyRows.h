#pragma once

#include "CoreMinimal.h"

class FArrayProperty;
class FProperty;
class FSettingsPage;
class FStructProperty;
class SVerticalBox;
class SWidget;
class UStruct;

/** A heading of a page: the properties of one category, and the categories inside it. */
struct FCategoryNode
{
	FString Name;
	TArray<FProperty*> Properties;
	TArray<TUniquePtr<FCategoryNode>> Children;

	/** Makes it if need be. */
	FCategoryNode& FindOrAdd(const FString& ChildName);
};

/** Puts the properties of an object as rows under their headings. */
class FPropertyRows
{
public:
	/** @param Filter  only properties that have it in their name, category or tool tip; empty: all */
	FPropertyRows(const TSharedRef<FSettingsPage>& InPage, const FString& InFilter);

	/** Appends all rows. @return how many properties are shown */
	int32 AddTo(SVerticalBox& Box) const;

	/** The categories in the order in which the properties name them first: "A|B" is B inside A. */
	static TUniquePtr<FCategoryNode> CollectCategories(const UStruct& Struct, const FString& Filter);

private:
	int32 AddCategory(SVerticalBox& Box, const FCategoryNode& Node, int32 Depth) const;
	void AddProperty(SVerticalBox& Box, FProperty& Property, const FString& Path, int32 Depth) const;
	void AddMembers(SVerticalBox& Box, const FStructProperty& Property, const FString& Path, int32 Depth) const;
	void AddArray(SVerticalBox& Box, const FArrayProperty& Property, const FString& Path, int32 Depth) const;
	void AddRow(SVerticalBox& Box, const FText& Name, const FText& ToolTip, const TSharedRef<SWidget>& Value,
		int32 Depth) const;

	const TSharedRef<FSettingsPage> Page;
	const FString Filter;
};
