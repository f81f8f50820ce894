#pragma once

#include "CoreMinimal.h"
#include "Layout/Geometry.h"
#include "Layout/Margin.h"
#include "Misc/Attribute.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SCompoundWidget.h"

class SBorder;
class SMultiLineEditableText;
class SKestrelPart;

/** The user has scrolled. */
DECLARE_DELEGATE_OneParam(FOnKestrelScrolled, bool /*bAwayFromEnd*/);

/**
 * The conversation as a scrolling list of blocks. The view follows the end as blocks are added, unless the user has
 * scrolled away or is reading a block.
 */
class SKestrelConversationView : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelConversationView) {}
	/** Whether the user has scrolled away from the end. It outlives the view, so somebody else keeps it. */
	SLATE_ATTRIBUTE(bool, IsUserScrolling)
	SLATE_EVENT(FOnKestrelScrolled, OnScrolled)
	/** The end is in view again, or will be. */
	SLATE_EVENT(FSimpleDelegate, OnEndReached)
	SLATE_END_ARGS()

	/** One message on the screen. */
	struct FBlock
	{
		TSharedPtr<SMultiLineEditableText> Text;
		TSharedPtr<SBorder> Border;
	};

	void Construct(const FArguments& InArgs);
	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;

	/**
	 * A message at the end of the conversation: the service's answers as formatted text if the settings want that,
	 * other messages and answers for somebody who listens as a block of plain text.
	 */
	FBlock AddMessage(const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize);
	/** Whether answers are formatted: the settings want it, and nobody listens. */
	static bool IsFormatted();
	/** With a screen reader, or in a terminal, a message is read in one piece. */
	static bool IsReadOut();
	/** A block at the end of the conversation. Its text can be selected and copied. */
	FBlock AddText(const FString& Text, const FLinearColor& Color, const FName& FontStyle, float FontSize);
	/** A block with a content of its own. */
	void AddBlock(const TSharedRef<SBorder>& Border);
	/** The same for something that is no message. */
	void AddWidget(const TSharedRef<SWidget>& Widget);
	/** With the provisional one. */
	void ClearBlocks();
	/** Shows something behind the last block, wherever that is; null takes it away. */
	void SetProvisional(const TSharedPtr<SWidget>& Widget);

	/** Each frame: a wrapped text knows its height a frame late and can leave the view short of the end. */
	void KeepEndInView();
	void TurnPage(bool bDown);
	/** Parts of the last block that GoToChange brings into view, from top to bottom. */
	void AddChanges(const TArray<TSharedRef<SWidget>>& NewChanges);
	/**
	 * Scrolls to the change after the one that was gone to last, or before it; the last one is the first to be gone to.
	 *
	 * @return false when there is none
	 */
	bool GoToChange(bool bNext);
	/**
	 * Scrolls to the user's turn after the one that has the focus, or before it; without one, to the last.
	 *
	 * @return the text of the turn; null behind the last one, and when there is none
	 */
	TSharedPtr<SWidget> GoToTurn(bool bNext);
	/** From now on the view follows the end: whoever sends something wants to see what comes of it. */
	void FollowEnd();

private:
	void AddAnswer(const FString& Source);
	void Append(const TSharedRef<SWidget>& Widget);
	SScrollBox::FSlot* AddSlot(const TSharedRef<SWidget>& Widget);
	/** Around each block; it keeps lines short in a wide panel. */
	FMargin MakeBlockMargin() const;
	void OnPartShown(const TSharedRef<SKestrelPart>& Part);
	void KeepPlaceWhilePartsSettle();
	bool FollowsEnd() const;
	void OnUserScrolled(float ScrollOffset);

	/** A part that begins above the view and changes its height. */
	struct FSettlingPart
	{
		TWeakPtr<SWidget> Part;
		float Height; // at the last frame
		int32 FramesLeft;
	};

	TSharedPtr<SScrollBox> ScrollBox;
	TArray<SScrollBox::FSlot*> Slots; // but for that of Provisional
	SScrollBox::FSlot* ProvisionalSlot = nullptr;
	float SideMargin = 0.0f; // of all of them, in Slate units
	TArray<FSettlingPart> SettlingParts;
	TSharedPtr<SWidget> Provisional; // the last slot of the box; null: none
	TAttribute<bool> IsUserScrolling;
	FOnKestrelScrolled OnScrolled;
	FSimpleDelegate OnEndReached;
	TArray<TWeakPtr<SWidget>> Changes;
	int32 CurrentChange = INDEX_NONE;
	TArray<TWeakPtr<SWidget>> Turns;   // texts of the user
	bool bFollowsWhileReading = false; // the user went to the end, with the focus still in a block
};
