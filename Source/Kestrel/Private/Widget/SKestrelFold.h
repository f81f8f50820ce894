#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

/** Makes what is folded, when somebody wants to see it. */
DECLARE_DELEGATE_RetVal(TSharedRef<SWidget>, FOnMakeFolded);

/** Stands for lines that few want to see: a button with their number, and the lines in its place once it is pressed. */
class SKestrelFold : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelFold)
		: _NumLines(0)
		, _NumChanges(0)
	{
	}
	SLATE_ARGUMENT(int32, NumLines)
	/** Of the lines, those that have changed. */
	SLATE_ARGUMENT(int32, NumChanges)
	SLATE_EVENT(FOnMakeFolded, OnMakeFolded)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	FReply OnClicked();

	FOnMakeFolded OnMakeFolded;
};
