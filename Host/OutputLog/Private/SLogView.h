#pragma once

#include "CoreMinimal.h"
#include "OutputLogHistory.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SLeafWidget.h"

/** The view has moved: by how much of the whole, and how much of it is in view, from 0 to 1. */
DECLARE_DELEGATE_TwoParams(FOnViewMoved, float, float);

/**
 * The lines of the log in a column, of which those in view are drawn: ten thousand cost as much as forty.
 *
 * It follows the end until the user scrolls away from it, and again once the user has scrolled back. Lines can be
 * selected, with the mouse or Ctrl+A, and copied.
 */
class SLogView : public SLeafWidget
{
public:
	SLATE_BEGIN_ARGS(SLogView) { _Clipping = EWidgetClipping::ClipToBounds; }
	SLATE_EVENT(FOnViewMoved, OnViewMoved)
	SLATE_EVENT(FOnViewMoved, OnViewMovedSideways)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs, const TSharedRef<const FOutputLogHistory>& InHistory);

	/** Shows only lines that have all words of the text in them, in any letter case. */
	void SetFilter(const FString& InFilter);
	/** Shows or hides what is no warning and no error, the warnings, or the errors; by the level that each begins at.
	 */
	void SetLevelShown(ELogVerbosity::Type Level, bool bIsShown);
	bool IsLevelShown(ELogVerbosity::Type Level) const { return !HiddenLevels.Contains(Level); }
	void SetCategoryShown(FName Category, bool bIsShown);
	bool IsCategoryShown(FName Category) const { return !HiddenCategories.Contains(Category); }
	/** Leaves out what there is so far. */
	void Clear();
	void ScrollTo(float OffsetFraction);
	void ScrollSidewaysTo(float OffsetFraction);
	int32 GetNumLines() const { return Shown.Num(); }
	const FString& GetLineText(int32 Index) const { return History->GetLine(Shown[Index]).Text; }
	bool IsFollowing() const { return bFollowsEnd; }

	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	virtual bool SupportsKeyboardFocus() const override { return true; }
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override { return FVector2D(0.0, 0.0); }
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Auto; }
	virtual FText GetDefaultAccessibleText() const override { return INVTEXT("Log"); }

private:
	friend class FAccessibleLogView;
	/** Takes up the lines that have come since the last time, and lets go of those that are no longer kept. */
	void Update();
	bool Matches(const FOutputLogLine& Line) const;
	/** After another choice of lines. */
	void ShowAnew();
	double GetLongestSidewaysOffset() const;
	void ScrollBy(double Distance);
	double GetLongestOffset() const;
	int32 GetIndexAt(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) const;
	void CopySelection() const;
	FString JoinLines(int32 First, int32 Last) const;

	TSharedPtr<const FOutputLogHistory> History;
	FOnViewMoved OnViewMoved;
	FOnViewMoved OnViewMovedSideways;
	TArray<FString> FilterWords;
	TSet<int32> HiddenLevels; // of ELogVerbosity
	TSet<FName> HiddenCategories;
	int32 LongestLine = 0; // in characters, of those that are or were shown
	TArray<int64> Shown;   // numbers of lines
	int64 NextNumber = 0;  // the first line that has not been looked at
	int64 ClearedUpTo = 0;
	bool bFollowsEnd = true;
	double Offset = 0.0; // Slate units
	double SidewaysOffset = 0.0;
	double ViewHeight = 0.0; // when last painted
	double ViewWidth = 0.0;
	float LineHeight = 1.0f;
	float CharacterWidth = 1.0f;
	int64 SelectionAnchor = INDEX_NONE; // numbers of lines
	int64 SelectionEnd = INDEX_NONE;
};
