#pragma once

#include "CoreMinimal.h"
#include "ISettingsContainer.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class FSettingsPage;
class SScrollBox;
class SVerticalBox;

/** The sections of a container at the left, the chosen one's properties at the right. */
class SSettingsEditor : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SSettingsEditor) {}
	SLATE_END_ARGS()

	virtual ~SSettingsEditor() override;
	/** @param InContainer  null while nothing is registered in it */
	void Construct(const FArguments& InArgs, const TSharedPtr<ISettingsContainer>& InContainer);

	/** Shows a section, or the category's first if there is none of that name. Without either nothing changes. */
	void Select(const FName& CategoryName, const FName& SectionName);

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

private:
	TSharedRef<SWidget> MakePageFrame();
	void OnCategoryModified(const FName& CategoryName);
	void RebuildSections();
	void ShowSection(const TSharedPtr<ISettingsSection>& Section);
	void RebuildRows();
	/** What the rows depend on beside the values in them: how many elements each array has. */
	FString GetShape() const;
	void OnSearchTextChanged(const FText& Text);
	FReply OnResetClicked();
	FText GetTitle() const;
	FText GetDescription() const;
	FText GetError() const;

	TSharedPtr<ISettingsContainer> Container;
	TSharedPtr<FSettingsPage> Page; // null without a section
	FString Filter;
	FString ShownShape;
	bool bSectionsAreStale = false;
	bool bRowsAreStale = false;
	TSharedPtr<SVerticalBox> SectionList;
	TSharedPtr<SVerticalBox> Rows;
	TSharedPtr<SScrollBox> ScrollBox;
};
