#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SVerticalBox;
struct FSlateBrush;

DECLARE_DELEGATE_OneParam(FOnKestrelNameChosen, const FString& /*Name*/);

/** Some names, of which one is selected. The keyboard focus stays where it is; a click chooses. */
class SKestrelCompletionList : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelCompletionList) {}
	SLATE_EVENT(FOnKestrelNameChosen, OnChosen)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	/** A name that is still there stays selected if the user selected it; otherwise the first is. */
	void SetNames(const TArray<FString>& InNames);
	const TArray<FString>& GetNames() const { return Names; }
	/** Selects the next name, or with -1 the one before; behind the last comes the first. */
	void MoveSelection(int32 Step);
	/** Empty when there are no names. */
	FString GetSelected() const;

private:
	TSharedRef<SWidget> MakeRow(int32 Index);
	const FSlateBrush* GetRowBrush(int32 Index) const;
	FReply OnRowClicked(int32 Index);

	FOnKestrelNameChosen OnChosen;
	TSharedPtr<SVerticalBox> Rows;
	TArray<FString> Names;
	int32 SelectedIndex = 0;
};
