#include "Widget/SKestrelConversationList.h"

#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Text/DisplayText.h"
#include "Framework/Application/SlateApplication.h"
#include "Layout/Clipping.h"
#include "Layout/Visibility.h"
#include "Misc/DateTime.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"
#include "Styling/AppStyle.h"
#include "Styling/CoreStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "Widget/ConversationExport.h"
#include "Widget/KestrelStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Layout/SWrapBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelConversationList"

namespace ConversationList
{
constexpr float Gap = 4.0f;
constexpr float Padding = 8.0f;
constexpr float SmallFontSize = 8.0f;
/** Slate units; more rows scroll. */
constexpr float MaxRowsHeight = 280.0f;
/** Rows that are made; the others are found by searching. */
constexpr int32 MaxRows = 100;

FString DescribeTime(const FDateTime& Utc)
{
	const FTimespan ToLocal = FDateTime::Now() - FDateTime::UtcNow();
	return (Utc + ToLocal).ToString(TEXT("%Y-%m-%d %H:%M"));
}

bool IsCurrent(const FKestrelConversationInfo& Info)
{
	return Info.Id.Equals(FKestrelInterface::Get().GetTranscript().GetId());
}

FText DescribeRow(const FKestrelConversationInfo& Info)
{
	const FText Time = FText::FromString(DescribeTime(Info.LastChange));
	return IsCurrent(Info) ? FText::Format(LOCTEXT("Current", "{0}, the current one"), Time) : Time;
}

TSharedRef<SWidget> MakeSmallText(const FText& Text)
{
	return SNew(STextBlock)
		.Text(Text)
		.Font(FCoreStyle::GetDefaultFontStyle("Regular", SmallFontSize))
		.ColorAndOpacity(FKestrelInterface::MessageColor)
		.AutoWrapText(true);
}

TSharedRef<SButton> MakeButton(const FText& Label, const FText& ToolTip, const TFunction<FReply()>& OnClicked)
{
	return SNew(SButton).Text(Label).ToolTipText(ToolTip).OnClicked_Lambda(OnClicked);
}
}

void SKestrelConversationList::Construct(const FArguments& InArgs)
{
	OnOpenConversation = InArgs._OnOpenConversation;
	OnUsePrompt = InArgs._OnUsePrompt;
	OnDeleted = InArgs._OnDeleted;
	// clang-format off
	ChildSlot
	[
		SNew(SBox)
		.WidthOverride(InArgs._Width)
		[
			MakeContent()
		]
	];
	// clang-format on
	Refresh();
	// A widget that is not shown yet cannot have the focus.
	RegisterActiveTimer(
		0.0f, FWidgetActiveTimerDelegate::CreateSP(this, &SKestrelConversationList::SetFocusPostConstruct));
}

TSharedRef<SWidget> SKestrelConversationList::MakeContent()
{
	// clang-format off
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("Menu.Background"))
		.Padding(ConversationList::Padding)
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SAssignNew(SearchBox, SEditableTextBox)
				.HintText(LOCTEXT("Search", "Search conversations"))
				.OnTextChanged(this, &SKestrelConversationList::OnSearchChanged)
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.Padding(0.0f, ConversationList::Gap)
			[
				SNew(SBox)
				.MaxDesiredHeight(ConversationList::MaxRowsHeight)
				[
					SNew(SScrollBox)
					+ SScrollBox::Slot()
					[
						SAssignNew(Rows, SVerticalBox)
					]
				]
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(STextBlock)
				.Text(this, &SKestrelConversationList::GetRemark)
				.Visibility_Lambda([this]() {
					return Remark.IsEmpty() ? EVisibility::Collapsed : EVisibility::SelfHitTestInvisible;
				})
				.AutoWrapText(true)
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.Padding(0.0f, ConversationList::Gap, 0.0f, 0.0f)
			[
				SAssignNew(Footer, SBox)
			]
		];
	// clang-format on
}

EActiveTimerReturnType SKestrelConversationList::SetFocusPostConstruct(double InCurrentTime, float InDeltaTime)
{
	FSlateApplication::Get().SetKeyboardFocus(SearchBox);
	return EActiveTimerReturnType::Stop;
}

void SKestrelConversationList::Refresh()
{
	Conversations = FKestrelInterface::Get().GetTranscript().GetStore().List();
	FKestrelInterface::Get().ReportDamagedConversations();
	ShowRows();
	ShowFooter();
}

void SKestrelConversationList::RefreshAfterChange()
{
	Refresh();
	FSlateApplication::Get().SetKeyboardFocus(SearchBox);
}

void SKestrelConversationList::OnSearchChanged(const FText& Text)
{
	Wanted = Text.ToString();
	ShowRows();
}

void SKestrelConversationList::ShowRows()
{
	Rows->ClearChildren();
	int32 NumFound = 0;
	for (const FKestrelConversationInfo& Info : Conversations)
	{
		const bool bFound = Wanted.IsEmpty() || Info.Title.Contains(Wanted) || Info.Prompt.Contains(Wanted);
		NumFound += bFound ? 1 : 0;
		if (bFound && NumFound <= ConversationList::MaxRows)
		{
			Rows->AddSlot().AutoHeight()[MakeRow(Info)];
		}
	}
	FText Note;
	if (NumFound == 0)
	{
		Note = Conversations.IsEmpty() ? LOCTEXT("Empty", "No conversations are stored yet.")
									   : LOCTEXT("NothingFound", "No conversation matches.");
	}
	else if (NumFound > ConversationList::MaxRows)
	{
		Note = FText::Format(LOCTEXT("More", "{0} older conversations are not listed. Search to find them."),
			NumFound - ConversationList::MaxRows);
	}
	if (!Note.IsEmpty())
	{
		Rows->AddSlot().AutoHeight()[ConversationList::MakeSmallText(Note)];
	}
}

TSharedRef<SWidget> SKestrelConversationList::MakeRow(const FKestrelConversationInfo& Info)
{
	const TSharedRef<SBox> Place = SNew(SBox);
	// clang-format off
	const TSharedRef<SWidget> Title =
		SNew(SBox)
		.Clipping(EWidgetClipping::ClipToBounds)
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(STextBlock).Text(FText::FromString(Info.Title))
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				ConversationList::MakeSmallText(ConversationList::DescribeRow(Info))
			]
		];
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.FillWidth(1.0f)
			[
				SNew(SButton)
				.ToolTipText(FText::FromString(Info.Title))
				.AccessibleText(FText::Format(LOCTEXT("OpenNamed", "Open {0}"), FText::FromString(Info.Title)))
				.OnClicked_Lambda([this, Id = Info.Id]() {
					OnOpenConversation.ExecuteIfBound(Id);
					return FReply::Handled();
				})
				[
					Title
				]
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.Padding(ConversationList::Gap, 0.0f, 0.0f, 0.0f)
			[
				SNew(SButton)
				.Text(LOCTEXT("Actions", "\u22EF"))
				.ToolTipText(LOCTEXT("ActionsToolTip", "Rename, export, delete, or use the prompt again"))
				.AccessibleText(FText::Format(LOCTEXT("ActionsOf", "More for {0}"), FText::FromString(Info.Title)))
				.OnClicked_Lambda([this, Info, Place]() { return Unfold(Info, Place); })
			]
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, ConversationList::Gap)
		[
			Place
		];
	// clang-format on
}

FReply SKestrelConversationList::Unfold(const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place)
{
	const TSharedPtr<SBox> Before = Unfolded.Pin();
	if (Before.IsValid())
	{
		Before->SetContent(SNullWidget::NullWidget);
	}
	Unfolded.Reset();
	if (Before != Place.ToSharedPtr())
	{
		Place->SetContent(MakeActions(Info, Place));
		Unfolded = Place;
	}
	return FReply::Handled();
}

TSharedRef<SWidget> SKestrelConversationList::MakeActions(
	const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place)
{
	const TWeakPtr<SBox> WeakPlace = Place; // it holds what is made here
	const auto OnUse = [this, Prompt = Info.Prompt]() {
		OnUsePrompt.ExecuteIfBound(Prompt);
		return FReply::Handled();
	};
	const auto OnRename = [this, Info, WeakPlace]() {
		const TSharedPtr<SBox> There = WeakPlace.Pin();
		return There.IsValid() ? StartRenaming(Info, There.ToSharedRef()) : FReply::Handled();
	};
	const auto OnDelete = [this, Info, WeakPlace]() {
		const TSharedPtr<SBox> There = WeakPlace.Pin();
		return There.IsValid() ? AskToDelete(Info, There.ToSharedRef()) : FReply::Handled();
	};
	// clang-format off
	return SNew(SWrapBox)
		.UseAllottedSize(true)
		.InnerSlotPadding(FVector2D(ConversationList::Gap, ConversationList::Gap))
		+ SWrapBox::Slot()
		[
			ConversationList::MakeButton(LOCTEXT("UsePrompt", "Use prompt again"),
				LOCTEXT("UsePromptToolTip", "Put its first prompt into the prompt box"), OnUse)
		]
		+ SWrapBox::Slot()
		[
			ConversationList::MakeButton(LOCTEXT("Rename", "Rename"),
				LOCTEXT("RenameToolTip", "Give it another title"), OnRename)
		]
		+ SWrapBox::Slot()
		[
			ConversationList::MakeButton(LOCTEXT("Export", "Export as Markdown"),
				LOCTEXT("ExportToolTip", "Write it to a file in Saved/Kestrel/Exports of the project"),
				[this, Info]() { return Export(Info); })
		]
		+ SWrapBox::Slot()
		[
			ConversationList::MakeButton(LOCTEXT("Delete", "Delete"),
				LOCTEXT("DeleteToolTip", "Delete it from the disk"), OnDelete)
		];
	// clang-format on
}

FReply SKestrelConversationList::AskToDelete(const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place)
{
	return Ask(Place,
		FText::Format(
			LOCTEXT("DeleteQuestion", "Delete \u201C{0}\u201D? This cannot be undone."), FText::FromString(Info.Title)),
		LOCTEXT("DeleteYes", "Delete it"), LOCTEXT("DeleteNo", "Keep it"),
		FSimpleDelegate::CreateSP(this, &SKestrelConversationList::Delete, Info.Id),
		FSimpleDelegate::CreateSP(this, &SKestrelConversationList::ShowRows));
}

FReply SKestrelConversationList::Ask(const TSharedRef<SBox>& Place, const FText& Question, const FText& Yes,
	const FText& No, const FSimpleDelegate& OnYes, const FSimpleDelegate& OnNo)
{
	// A copy of the delegate: what is called removes the button that holds it.
	const auto Answer = [](FSimpleDelegate Then) {
		Then.ExecuteIfBound();
		return FReply::Handled();
	};
	const TSharedRef<SButton> NoButton =
		ConversationList::MakeButton(No, FText::GetEmpty(), [Answer, OnNo]() { return Answer(OnNo); });
	// clang-format off
	Place->SetContent(
		SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(STextBlock).Text(Question).AutoWrapText(true)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.Padding(0.0f, ConversationList::Gap, ConversationList::Gap, 0.0f)
			[
				NoButton
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			.Padding(0.0f, ConversationList::Gap, 0.0f, 0.0f)
			[
				ConversationList::MakeButton(Yes, FText::GetEmpty(), [Answer, OnYes]() { return Answer(OnYes); })
			]
		]);
	// clang-format on
	return FReply::Handled().SetUserFocus(NoButton, EFocusCause::SetDirectly);
}

FReply SKestrelConversationList::StartRenaming(const FKestrelConversationInfo& Info, const TSharedRef<SBox>& Place)
{
	const TSharedRef<SEditableTextBox> Box =
		SNew(SEditableTextBox)
			.Text(FText::FromString(Info.Title))
			.SelectAllTextWhenFocused(true)
			.RevertTextOnEscape(true)
			.ClearKeyboardFocusOnCommit(false) // it goes back to the search
			.AccessibleText(LOCTEXT("NewTitle", "New title"))
			.ToolTipText(LOCTEXT("NewTitleToolTip", "Press Enter to rename. Without a title it gets its own one back."))
			.OnTextCommitted_Lambda([this, Id = Info.Id](const FText& Text, ETextCommit::Type CommitType) {
				if (CommitType == ETextCommit::OnEnter)
				{
					const bool bDone = FKestrelInterface::Get().GetTranscript().Rename(Id, Text.ToString());
					Remark = bDone ? FText::GetEmpty() : LOCTEXT("NotRenamed", "It could not be renamed.");
					RefreshAfterChange();
				}
			});
	Place->SetContent(Box);
	return FReply::Handled().SetUserFocus(Box, EFocusCause::SetDirectly);
}

FReply SKestrelConversationList::Export(const FKestrelConversationInfo& Info)
{
	TArray<FKestrelTranscriptEntry> Entries;
	FString File;
	if (FKestrelInterface::Get().GetTranscript().GetStore().Read(Info.Id, Entries) == EKestrelConversationRead::Done)
	{
		const FString Folder = FPaths::GetPath(FKestrelInterface::Get().GetTranscript().GetStore().GetFolder());
		File = KestrelConversationExport::Write(Folder / TEXT("Exports"), Info, Entries);
	}
	FKestrelInterface::Get().ReportDamagedConversations();
	Remark = File.IsEmpty() ? LOCTEXT("NotExported", "It could not be exported.")
							: FText::Format(LOCTEXT("Exported", "Exported to {0}"),
								  FText::FromString(KestrelDisplayText::EscapeLine(File)));
	return FReply::Handled();
}

void SKestrelConversationList::Delete(const FString Id)
{
	FKestrelInterface::Get().GetTranscript().Delete(Id);
	Remark = FText::GetEmpty();
	OnDeleted.ExecuteIfBound();
	RefreshAfterChange();
}

void SKestrelConversationList::DeleteAll()
{
	FKestrelInterface::Get().GetTranscript().DeleteAll();
	Remark = FText::GetEmpty();
	OnDeleted.ExecuteIfBound();
	RefreshAfterChange();
}

void SKestrelConversationList::ShowFooter()
{
	Footer->SetContent(Conversations.IsEmpty() ? SNullWidget::NullWidget : MakeFooter());
}

TSharedRef<SWidget> SKestrelConversationList::MakeFooter()
{
	const auto AskToDeleteAll = [this]() {
		return Ask(Footer.ToSharedRef(),
			FText::Format(LOCTEXT("DeleteAllQuestion", "Delete all {0} conversations? This cannot be undone."),
				Conversations.Num()),
			LOCTEXT("DeleteAllYes", "Delete them all"), LOCTEXT("DeleteAllNo", "Keep them"),
			FSimpleDelegate::CreateSP(this, &SKestrelConversationList::DeleteAll),
			FSimpleDelegate::CreateSP(this, &SKestrelConversationList::ShowFooter));
	};
	// clang-format off
	return SNew(SHorizontalBox)
		+ SHorizontalBox::Slot()
		.AutoWidth()
		[
			ConversationList::MakeButton(LOCTEXT("DeleteAll", "Delete all"),
				LOCTEXT("DeleteAllToolTip", "Delete all conversations of this project from the disk"), AskToDeleteAll)
		];
	// clang-format on
}

#undef LOCTEXT_NAMESPACE
