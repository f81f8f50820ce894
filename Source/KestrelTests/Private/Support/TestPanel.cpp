#include "Support/TestPanel.h"

#include "Agent/Agent.h"
#include "Framework/Application/SlateApplication.h"
#include "InputCoreTypes.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "UObject/Class.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

namespace TestPanel
{
void CollectTexts(const TSharedRef<SWidget>& Widget, TArray<TSharedRef<SMultiLineEditableText>>& OutTexts)
{
	if (Widget->GetType() == FName("SMultiLineEditableText") || Widget->GetType() == FName("SKestrelStyledText"))
	{
		OutTexts.Add(StaticCastSharedRef<SMultiLineEditableText>(Widget));
		return;
	}
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num(); ++Index)
	{
		CollectTexts(Children->GetChildAt(Index), OutTexts);
	}
}

bool HasLabel(const TSharedRef<SWidget>& Widget, const TCHAR* Label)
{
	if (Widget->GetType() == FName("STextBlock"))
	{
		return StaticCastSharedRef<STextBlock>(Widget)->GetText().ToString().Equals(Label);
	}
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num(); ++Index)
	{
		if (HasLabel(Children->GetChildAt(Index), Label))
		{
			return true;
		}
	}
	return false;
}

TSharedPtr<SWidget> FindButtonIn(const TSharedRef<SWidget>& Widget, const TCHAR* Label)
{
	if (!Widget->GetVisibility().IsVisible())
	{
		return nullptr;
	}
	const FName Type = Widget->GetType();
	if (Type == FName("SButton") || Type == FName("SKestrelApproveButton") || Type == FName("SKestrelUndoButton"))
	{
		return HasLabel(Widget, Label) ? Widget.ToSharedPtr() : nullptr;
	}
	FChildren* Children = Widget->GetChildren();
	TSharedPtr<SWidget> Found;
	for (int32 Index = 0; Index < Children->Num() && !Found.IsValid(); ++Index)
	{
		Found = FindButtonIn(Children->GetChildAt(Index), Label);
	}
	return Found;
}
}

FKestrelTestPanel::FKestrelTestPanel(const FVector2D& Size, bool bFormattedAnswers)
	: Formatted(GetMutableDefault<UKestrelSettings>()->bFormattedAnswers, bFormattedAnswers)
	, Unhooked(FKestrelInterface::Get().StatusMessageDelegate)
	, UnhookedDiffs(FKestrelInterface::Get().DiffMessageDelegate)
	, Window(SNew(SWindow).ClientSize(Size)[SAssignNew(Widget, SKestrelWidget)])
{
	FSlateApplication::Get().AddWindow(Window);
	FSlateApplication::Get().Tick();
}

FKestrelTestPanel::~FKestrelTestPanel()
{
	FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
	FSlateApplication::Get().RequestDestroyWindow(Window);
	FKestrelInterface::Get().StatusMessageDelegate = Unhooked;
	FKestrelInterface::Get().DiffMessageDelegate = UnhookedDiffs;
}

void FKestrelTestPanel::Close()
{
	Window->SetContent(SNullWidget::NullWidget);
	Widget.Reset();
}

void FKestrelTestPanel::Reopen()
{
	Close();
	Window->SetContent(SAssignNew(Widget, SKestrelWidget));
	FSlateApplication::Get().Tick();
}

TArray<TSharedRef<SMultiLineEditableText>> FKestrelTestPanel::Texts(bool bReadOnly) const
{
	TArray<TSharedRef<SMultiLineEditableText>> All;
	TestPanel::CollectTexts(Widget.ToSharedRef(), All);
	return All.FilterByPredicate(
		[bReadOnly](const TSharedRef<SMultiLineEditableText>& Text) { return Text->IsTextReadOnly() == bReadOnly; });
}

TSharedRef<SMultiLineEditableText> FKestrelTestPanel::PromptBox() const
{
	return Texts(false)[0];
}

FString FKestrelTestPanel::LastBlock() const
{
	return Texts(true).Last()->GetText().ToString();
}

TArray<FString> FKestrelTestPanel::Blocks() const
{
	TArray<FString> Blocks;
	for (const TSharedRef<SMultiLineEditableText>& Text : Texts(true))
	{
		Blocks.Add(Text->GetText().ToString());
	}
	Blocks.RemoveAt(0, 1);
	return Blocks;
}

FString FKestrelTestPanel::Log() const
{
	FString Log;
	FFileHelper::LoadFileToString(Log, *FKestrelInterface::Get().GetPromptLogFilePath());
	return Log;
}

void FKestrelTestPanel::Type(const TCHAR* Text) const
{
	PromptBox()->SetText(FText::FromString(Text));
}

bool FKestrelTestPanel::Press(const FKey& Key, bool bShift, bool bRepeat) const
{
	FSlateApplication& Slate = FSlateApplication::Get();
	Slate.SetKeyboardFocus(PromptBox());
	const FModifierKeysState Modifiers(bShift, false, false, false, false, false, false, false, false);
	return Slate.ProcessKeyDownEvent(FKeyEvent(Key, Modifiers, 0, bRepeat, 0, 0));
}

TSharedPtr<SWidget> FKestrelTestPanel::FindButton(const TCHAR* Label) const
{
	return TestPanel::FindButtonIn(Window, Label);
}

bool FKestrelTestPanel::Click(const TCHAR* Label) const
{
	FSlateApplication& Slate = FSlateApplication::Get();
	// A button that has just appeared has its place from the next frame on.
	Slate.Tick();
	Slate.Tick();
	const TSharedPtr<SWidget> Button = FindButton(Label);
	if (!Button.IsValid())
	{
		return false;
	}
	ClickWidget(*Button);
	return true;
}

void FKestrelTestPanel::ClickWidget(const SWidget& Clicked) const
{
	FSlateApplication& Slate = FSlateApplication::Get();
	const FGeometry& Geometry = Clicked.GetCachedGeometry();
	const FVector2D Middle(Geometry.LocalToAbsolute(FVector2D(Geometry.GetLocalSize()) * 0.5));
	const FPointerEvent Event(0, Middle, Middle, TSet<FKey>(), EKeys::LeftMouseButton, 0.0f, FModifierKeysState());
	Slate.ProcessMouseButtonDownEvent(nullptr, Event);
	Slate.ProcessMouseButtonUpEvent(Event);
	Slate.Tick();
}
