#include "Widgets/Accessibility/SlateAccessibleWidgets.h"

#include "Framework/Application/SlateApplication.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SCheckBox.h"
#include "Widgets/Input/SComboButton.h"
#include "Widgets/Text/SMultiLineEditableText.h"

void FSlateAccessibleButton::Activate()
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	if (!Pinned.IsValid() || !IsEnabled() || IsHidden())
	{
		return;
	}
	const TSharedRef<SButton> Button = StaticCastSharedRef<SButton>(Pinned.ToSharedRef());
	if (Button->SupportsKeyboardFocus())
	{
		FSlateApplication::Get().SetKeyboardFocus(Button, EFocusCause::Mouse);
	}
	FSlateApplication::Get().ProcessExternalReply(Button, Button->ExecuteOnClick());
}

void FSlateAccessibleCheckBox::Activate()
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	if (Pinned.IsValid() && IsEnabled() && !IsHidden())
	{
		StaticCastSharedPtr<SCheckBox>(Pinned)->ToggleCheckedState();
	}
}

FString FSlateAccessibleCheckBox::GetValue() const
{
	const TSharedPtr<SCheckBox> CheckBox = StaticCastSharedPtr<SCheckBox>(Widget.Pin());
	if (!CheckBox.IsValid() || CheckBox->GetCheckedState() == ECheckBoxState::Undetermined)
	{
		return FString();
	}
	return CheckBox->IsChecked() ? TEXT("true") : TEXT("false");
}

void FSlateAccessibleComboButton::Activate()
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	if (Pinned.IsValid() && IsEnabled() && !IsHidden())
	{
		StaticCastSharedPtr<SComboButton>(Pinned)->OnButtonClicked();
	}
}

FString FSlateAccessibleComboButton::GetText() const
{
	const TSharedPtr<SComboButton> Button = StaticCastSharedPtr<SComboButton>(Widget.Pin());
	return Button.IsValid() ? Button->ShownContent->GetAccessibleSummary().ToString() : FString();
}

FString FSlateAccessibleMultiLineEditableText::GetText() const
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	if (!Pinned.IsValid())
	{
		return FString();
	}
	const SMultiLineEditableText& Text = *StaticCastSharedPtr<SMultiLineEditableText>(Pinned);
	return FString::Join(Text.GetShownLines(), LINE_TERMINATOR);
}

bool FSlateAccessibleMultiLineEditableText::IsReadOnly() const
{
	const TSharedPtr<SWidget> Pinned = Widget.Pin();
	return !Pinned.IsValid() || StaticCastSharedPtr<SMultiLineEditableText>(Pinned)->IsTextReadOnly();
}

void FSlateAccessibleMultiLineEditableText::SetValue(const FString& Value)
{
	const TSharedPtr<SMultiLineEditableText> Text = StaticCastSharedPtr<SMultiLineEditableText>(Widget.Pin());
	if (IsReadOnly() || !IsEnabled() || !FSlateApplication::Get().SetKeyboardFocus(Text))
	{
		return;
	}
	Text->SelectAllText();
	FSlateApplication& Application = FSlateApplication::Get();
	Application.ProcessKeyCharEvent(FCharacterEvent(TEXT('\b'), FModifierKeysState(), 0, false));
	// Pasted, not typed: Enter would send a prompt, Tab would leave it, and a long text would take a key press a
	// letter.
	Text->InsertTextAtCursor(Value);
}
