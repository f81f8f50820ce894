#include "Widget/SKestrelConversationView.h"

#include "Agent/Chat/KestrelInterface.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Text/TextLayout.h"
#include "KestrelSettings.h"
#include "Layout/Geometry.h"
#include "Layout/Margin.h"
#include "Misc/Attribute.h"
#include "Misc/Optional.h"
#include "Styling/CoreStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateTypes.h"
#include "UObject/Class.h"
#include "Widget/Answer/SKestrelAnswer.h"
#include "Widget/HiddenTexts.h"
#include "Widget/KestrelStyle.h"
#include "Widget/SKestrelPart.h"
#include "Widget/TextSize.h"
#include "Widgets/Accessibility/SlateAccessibleMessageHandler.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#define LOCTEXT_NAMESPACE "SKestrelWidget"

namespace KestrelConversationView
{
constexpr float BlockPadding = 8.0f;
// In wider panels lines would be too long to be read with ease.
constexpr float MaxBlockWidth = 900.0f;
// Slate units. Layout rounds, so "at the end" is never an exact comparison.
constexpr float EndTolerance = 2.0f;
// Of the view's height: the last lines that were read are still seen on the next page.
constexpr float PageFraction = 0.9f;
// A text that was painted for the first time knows its wrapped height in the next frame, the text in a part that was
// made then one later.
constexpr int32 FramesToSettle = 4;

/** Who speaks is told by the style of the text; what was given up, by its words. */
FName GetBlockBrush(const FString& Text, const FName& FontStyle)
{
	if (Text.StartsWith(TEXT(" [ Cancelled ]"), ESearchCase::CaseSensitive))
	{
		return "Kestrel.Block.Cancelled";
	}
	if (FontStyle == FKestrelInterface::ItalicFontName)
	{
		return "Kestrel.Block.Status";
	}
	return Text.StartsWith(TEXT(" [ User"), ESearchCase::CaseSensitive) ? FName("Kestrel.Block.User")
																		: FName("Kestrel.Block.Assistant");
}

/** What the service wrote in a message, without the plugin's heading; not set if it is somebody else's message. */
TOptional<FString> FindAnswer(const FString& Message)
{
	const FString Heading = TEXT(" [ Kestrel ] \n\n");
	if (!Message.StartsWith(Heading, ESearchCase::CaseSensitive))
	{
		return {};
	}
	return Message.Mid(Heading.Len());
}

}

void SKestrelConversationView::Construct(const FArguments& InArgs)
{
	IsUserScrolling = InArgs._IsUserScrolling;
	OnScrolled = InArgs._OnScrolled;
	OnEndReached = InArgs._OnEndReached;
	// clang-format off
	ChildSlot
	[
		SAssignNew(ScrollBox, SScrollBox)
		.OnUserScrolled(this, &SKestrelConversationView::OnUserScrolled)
	];
	// clang-format on
}

bool SKestrelConversationView::IsReadOut()
{
#if WITH_ACCESSIBILITY
	return FSlateApplication::Get().GetAccessibleMessageHandler()->IsActive();
#else
	return false;
#endif
}

bool SKestrelConversationView::IsFormatted()
{
	return GetDefault<UKestrelSettings>()->bFormattedAnswers && !IsReadOut();
}

SKestrelConversationView::FBlock SKestrelConversationView::AddMessage(
	const FString& Message, const FLinearColor& Color, const FName& FontStyle, float FontSize)
{
	const TOptional<FString> Answer = KestrelConversationView::FindAnswer(Message);
	if (!Answer.IsSet() || !IsFormatted())
	{
		return AddText(KestrelHiddenTexts::Remove(Message), Color, FontStyle, FontSize);
	}
	AddAnswer(Answer.GetValue());
	return {};
}

void SKestrelConversationView::AddAnswer(const FString& Source)
{
	// clang-format off
	Append(
		SNew(SBorder)
		.BorderImage(FKestrelStyle::Get().GetBrush("Kestrel.Block.Answer"))
		.Padding(KestrelConversationView::BlockPadding)
		[
			SNew(SKestrelAnswer)
			.Source(Source)
			.OnPartShown(this, &SKestrelConversationView::OnPartShown)
		]);
	// clang-format on
}

SKestrelConversationView::FBlock SKestrelConversationView::AddText(
	const FString& Text, const FLinearColor& Color, const FName& FontStyle, float FontSize)
{
	FBlock Block;
	FTextBlockStyle TextStyle = FCoreStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText");
	TextStyle.SetFont(FCoreStyle::GetDefaultFontStyle(FontStyle, KestrelTextSize::Scale(FontSize)));
	TextStyle.SetColorAndOpacity(Color);
	// clang-format off
	SAssignNew(Block.Border, SBorder)
	.BorderImage(FKestrelStyle::Get().GetBrush(KestrelConversationView::GetBlockBrush(Text, FontStyle)))
	.Padding(KestrelConversationView::BlockPadding)
	[
		SAssignNew(Block.Text, SMultiLineEditableText)
		.Text(FText::FromString(Text))
		.TextStyle(&TextStyle)
		.IsReadOnly(true)
		.AutoWrapText(true)
		.WrappingPolicy(ETextWrappingPolicy::AllowPerCharacterWrapping)
		.AccessibleText(LOCTEXT("Message", "Message"))
	];
	// clang-format on
	AddBlock(Block.Border.ToSharedRef());
	if (KestrelConversationView::GetBlockBrush(Text, FontStyle) == FName("Kestrel.Block.User"))
	{
		Turns.Add(Block.Text);
	}
	return Block;
}

void SKestrelConversationView::AddBlock(const TSharedRef<SBorder>& Border)
{
	AddWidget(Border);
}

void SKestrelConversationView::AddWidget(const TSharedRef<SWidget>& Widget)
{
	// clang-format off
	Append(
		SNew(SKestrelPart)
		.OnShown(this, &SKestrelConversationView::OnPartShown)
		[
			Widget
		]);
	// clang-format on
}

void SKestrelConversationView::Append(const TSharedRef<SWidget>& Widget)
{
	const TSharedPtr<SWidget> Last = Provisional;
	SetProvisional(nullptr);
	Slots.Add(AddSlot(Widget));
	SetProvisional(Last);
}

SScrollBox::FSlot* SKestrelConversationView::AddSlot(const TSharedRef<SWidget>& Widget)
{
	SScrollBox::FSlot* Slot = nullptr;
	// clang-format off
	ScrollBox->AddSlot()
	.Expose(Slot)
	.Padding(MakeBlockMargin())
	[
		Widget
	];
	// clang-format on
	if (FollowsEnd())
	{
		ScrollBox->ScrollToEnd();
	}
	return Slot;
}

void SKestrelConversationView::SetProvisional(const TSharedPtr<SWidget>& Widget)
{
	if (Provisional.IsValid())
	{
		ScrollBox->RemoveSlot(Provisional.ToSharedRef());
	}
	Provisional = Widget;
	ProvisionalSlot = Provisional.IsValid() ? AddSlot(Provisional.ToSharedRef()) : nullptr;
}

FMargin SKestrelConversationView::MakeBlockMargin() const
{
	return FMargin(SideMargin, 0.0f, SideMargin, KestrelConversationView::BlockPadding);
}

void SKestrelConversationView::Tick(
	const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	SCompoundWidget::Tick(AllottedGeometry, InCurrentTime, InDeltaTime);
	KeepPlaceWhilePartsSettle();
	const float Width = static_cast<float>(FVector2D(AllottedGeometry.GetLocalSize()).X);
	const float NewMargin = FMath::Max(0.0f, (Width - KestrelConversationView::MaxBlockWidth) / 2.0f);
	if (NewMargin == SideMargin)
	{
		return;
	}
	SideMargin = NewMargin;
	for (SScrollBox::FSlot* const Slot : Slots)
	{
		Slot->SetPadding(MakeBlockMargin());
	}
	if (ProvisionalSlot)
	{
		ProvisionalSlot->SetPadding(MakeBlockMargin());
	}
}

void SKestrelConversationView::OnPartShown(const TSharedRef<SKestrelPart>& Part)
{
	const double Top = FVector2D(GetCachedGeometry().GetAbsolutePosition()).Y;
	if (FVector2D(Part->GetCachedGeometry().GetAbsolutePosition()).Y >= Top)
	{
		return;
	}
	const float Height = static_cast<float>(FVector2D(Part->GetDesiredSize()).Y);
	SettlingParts.Add({ Part, Height, KestrelConversationView::FramesToSettle });
}

void SKestrelConversationView::KeepPlaceWhilePartsSettle()
{
	float Growth = 0.0f;
	for (FSettlingPart& Settling : SettlingParts)
	{
		const TSharedPtr<SWidget> Part = Settling.Part.Pin();
		const float Height = Part.IsValid() ? static_cast<float>(FVector2D(Part->GetDesiredSize()).Y) : Settling.Height;
		Growth += Height - Settling.Height;
		Settling.Height = Height;
		--Settling.FramesLeft;
	}
	SettlingParts.RemoveAll([](const FSettlingPart& Settling) { return Settling.FramesLeft == 0; });
	if (Growth != 0.0f && !FollowsEnd())
	{
		ScrollBox->SetScrollOffset(ScrollBox->GetScrollOffset() + Growth);
	}
}

void SKestrelConversationView::ClearBlocks()
{
	ScrollBox->ClearChildren();
	Slots.Empty();
	ProvisionalSlot = nullptr;
	SettlingParts.Empty();
	Provisional.Reset();
	Turns.Empty();
	Changes.Empty();
	CurrentChange = INDEX_NONE;
}

void SKestrelConversationView::KeepEndInView()
{
	const float FromEnd = ScrollBox->GetScrollOffsetOfEnd() - ScrollBox->GetScrollOffset();
	if (!ScrollBox->HasFocusedDescendants())
	{
		bFollowsWhileReading = false;
	}
	if (FromEnd <= KestrelConversationView::EndTolerance)
	{
		OnEndReached.ExecuteIfBound();
	}
	else if (FollowsEnd())
	{
		ScrollBox->ScrollToEnd();
	}
}

bool SKestrelConversationView::FollowsEnd() const
{
	// With the focus in a block, it is being read or copied.
	return !IsUserScrolling.Get() && (bFollowsWhileReading || !ScrollBox->HasFocusedDescendants());
}

void SKestrelConversationView::OnUserScrolled(float ScrollOffset)
{
	const bool bAway = ScrollBox->GetScrollOffsetOfEnd() - ScrollOffset > KestrelConversationView::EndTolerance;
	bFollowsWhileReading = !bAway;
	OnScrolled.ExecuteIfBound(bAway);
}

void SKestrelConversationView::TurnPage(bool bDown)
{
	const float ViewHeight = static_cast<float>(FVector2D(ScrollBox->GetCachedGeometry().GetLocalSize()).Y);
	const float Page = ViewHeight * KestrelConversationView::PageFraction;
	const float Offset =
		FMath::Clamp(ScrollBox->GetScrollOffset() + (bDown ? Page : -Page), 0.0f, ScrollBox->GetScrollOffsetOfEnd());
	ScrollBox->SetScrollOffset(Offset);
	OnUserScrolled(Offset);
}

void SKestrelConversationView::AddChanges(const TArray<TSharedRef<SWidget>>& NewChanges)
{
	for (const TSharedRef<SWidget>& Change : NewChanges)
	{
		Changes.Add(Change);
	}
	CurrentChange = INDEX_NONE;
}

bool SKestrelConversationView::GoToChange(bool bNext)
{
	Changes.RemoveAll([](const TWeakPtr<SWidget>& Change) { return !Change.IsValid(); });
	if (Changes.IsEmpty())
	{
		return false;
	}
	const bool bFirstTime = CurrentChange == INDEX_NONE;
	CurrentChange =
		bFirstTime ? Changes.Num() - 1 : FMath::Clamp(CurrentChange + (bNext ? 1 : -1), 0, Changes.Num() - 1);
	ScrollBox->ScrollDescendantIntoView(Changes[CurrentChange].Pin(), false, EDescendantScrollDestination::Center);
	bFollowsWhileReading = false;
	OnScrolled.ExecuteIfBound(true);
	return true;
}

TSharedPtr<SWidget> SKestrelConversationView::GoToTurn(bool bNext)
{
	Turns.RemoveAll([](const TWeakPtr<SWidget>& Turn) { return !Turn.IsValid(); });
	const int32 Focused =
		Turns.IndexOfByPredicate([](const TWeakPtr<SWidget>& Turn) { return Turn.Pin()->HasKeyboardFocus(); });
	const int32 Wanted =
		Focused == INDEX_NONE ? (bNext ? Turns.Num() : Turns.Num() - 1) : FMath::Max(Focused + (bNext ? 1 : -1), 0);
	if (!Turns.IsValidIndex(Wanted))
	{
		FollowEnd();
		return nullptr;
	}
	const TSharedPtr<SWidget> Turn = Turns[Wanted].Pin();
	ScrollBox->ScrollDescendantIntoView(Turn, false, EDescendantScrollDestination::TopOrLeft);
	bFollowsWhileReading = false;
	OnScrolled.ExecuteIfBound(true);
	return Turn;
}

void SKestrelConversationView::FollowEnd()
{
	bFollowsWhileReading = true;
	OnEndReached.ExecuteIfBound();
	ScrollBox->ScrollToEnd();
}

#undef LOCTEXT_NAMESPACE
