#pragma once

#include "Agent/Chat/ConversationStore.h"
#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Types/SlateEnums.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SCompoundWidget.h"

class SBox;
class SEditableTextBox;
class SVerticalBox;

/** With the id of a conversation, or a prompt. */
DECLARE_DELEGATE_OneParam(FOnKestrelTextChosen, const FString& /*Chosen*/);

/**
 * The project's conversations, the newest first, to be searched, opened, renamed, exported and deleted. What deletes
 * something asks first, in its own place.
 */
class KESTREL_API SKestrelConversationList : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SKestrelConversationList)
		: _Width(300.0f)
	{
	}
	/** In Slate units. */
	SLATE_ARGUMENT(float, Width)
	/** With the id of the conversation to show. */
	SLATE_EVENT(FOnKestrelTextChosen, OnOpenConversation)
	/** With the prompt to use again. */
	SLATE_EVENT(FOnKestrelTextChosen, OnUsePrompt)
	/** Something was deleted. */
	SLATE_EVENT(FSimpleDelegate, OnDeleted)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

private:
	TSharedRef<SWidget> MakeContent();
	/** Looks again at what is there, and shows it. */
	void Refresh();
	EActiveTimerReturnType SetFocusPostConstruct(double InCurrentTime, float InDeltaTime);
	/** After something was changed: its row is gone, and with it what had the focus. */
	void RefreshAfterChange();
	void ShowRows();
	TSharedRef<SWidget> MakeRow(const FKestrelConversationInfo& Info);
	/** What can be done with a conversation, below its row. */
	TSharedRef<SWidget> MakeActions(const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place);
	TSharedRef<SWidget> MakeFooter();
	/** Puts a question and its two answers there; "no" has the focus. */
	FReply Ask(const TSharedRef<SBox>& Place, const FText& Question, const FText& Yes, const FText& No,
		const FSimpleDelegate& OnYes, const FSimpleDelegate& OnNo);
	FReply Unfold(const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place);
	FReply StartRenaming(const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place);
	FReply AskToDelete(const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place);
	FReply Export(const FKestrelConversationInfo& Info);
	void Delete(const FString Id);
	void DeleteAll();
	void ShowFooter();
	void OnSearchChanged(const FText& Text);
	FText GetRemark() const { return Remark; }

	FOnKestrelTextChosen OnOpenConversation;
	FOnKestrelTextChosen OnUsePrompt;
	FSimpleDelegate OnDeleted;
	TArray<FKestrelConversationInfo> Conversations;
	FString Wanted;          // what was typed into the search box
	FText Remark;            // what came of the last action
	TWeakPtr<SBox> Unfolded; // the place of the actions that are shown
	TSharedPtr<SEditableTextBox> SearchBox;
	TSharedPtr<SVerticalBox> Rows;
	TSharedPtr<SBox> Footer;
};
