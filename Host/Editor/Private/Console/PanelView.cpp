#include "Console/PanelView.h"

#include "Framework/Application/SlateApplication.h"
#include "HAL/HostClock.h"
#include "InputCoreTypes.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/Docking/SDockTab.h"

FString LettersOf(const FString& Label)
{
	FString Letters;
	for (const TCHAR C : Label)
	{
		if (FChar::IsAlnum(C))
		{
			Letters.AppendChar(FChar::ToLower(C));
		}
	}
	return Letters;
}

FPanelView::FPanelView(const SDockTab& Tab)
{
	Collect(FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Tab.GetContent()));
}

void FPanelView::Collect(const TSharedRef<IAccessibleWidget>& Widget)
{
	if (Widget->GetWidgetType() == EAccessibleWidgetType::Button)
	{
		Buttons.Add(LettersOf(Widget->GetWidgetName()), Widget);
		return;
	}
	if (Widget->GetWidgetType() == EAccessibleWidgetType::TextEdit)
	{
		const bool bReadOnly = !Widget->AsProperty() || Widget->AsProperty()->IsReadOnly();
		bReadOnly ? void(Texts.Add(Widget)) : void(PromptBox = Widget);
		return;
	}
	// Asked for once: counting looks at all of them.
	const int32 NumChildren = Widget->GetNumberOfChildren();
	for (int32 Index = 0; Index < NumChildren; ++Index)
	{
		Collect(Widget->GetChildAt(Index).ToSharedRef());
	}
}

bool FPanelView::IsEnabled(const TCHAR* Button) const
{
	const FWidget Widget = Buttons.FindRef(Button);
	return Widget && Widget->IsEnabled();
}

bool FPanelView::Press(const TCHAR* Button) const
{
	if (!IsEnabled(Button))
	{
		return false;
	}
	Buttons.FindChecked(Button)->AsActivatable()->Activate();
	return true;
}

void FPanelView::Send(const FString& Prompt) const
{
	PromptBox->AsProperty()->SetValue(Prompt);
	PromptBox->SetFocus();
	FSlateApplication& Slate = FSlateApplication::Get();
	const FKeyEvent Enter(EKeys::Enter, FModifierKeysState(), 0, false, u'\r', 0);
	Slate.ProcessKeyDownEvent(Enter);
	Slate.ProcessKeyCharEvent(FCharacterEvent(u'\r', FModifierKeysState(), 0, false));
	Slate.ProcessKeyUpEvent(Enter);
}

bool FPanelView::IsWorking() const
{
	return IsPanelWorking() || FHostClock::Get().IsHeld();
}
