#include "Widgets/Input/SEditableTextBox.h"

#include "Framework/Text/SSingleLineText.h"
#include "Widgets/Layout/SBox.h"

void SEditableTextBox::Construct(const FArguments& InArgs)
{
	SMultiLineEditableText::FArguments TextArguments;
	TextArguments.Text(InArgs._Text)
		.HintText(InArgs._HintText)
		.Font(InArgs._Font)
		.IsReadOnly(InArgs._IsReadOnly)
		.SelectAllTextWhenFocused(InArgs._SelectAllTextWhenFocused)
		.ClearKeyboardFocusOnCommit(InArgs._ClearKeyboardFocusOnCommit)
		.OnTextChanged(InArgs._OnTextChanged)
		.OnTextCommitted(InArgs._OnTextCommitted)
		.OnKeyDownHandler(InArgs._OnKeyDownHandler);
	const TAttribute<float> MinDesiredWidth = InArgs._MinDesiredWidth;
	// clang-format off
	SBorder::Construct(SBorder::FArguments()
		.Padding(InArgs._Padding)
		[
			SNew(SBox)
			.VAlign(VAlign_Center)
			.MinDesiredWidth_Lambda([MinDesiredWidth] { return FOptionalSize(MinDesiredWidth.Get(0.0f)); })
			[
				SAssignNew(EditableText, SSingleLineText)
				.IsPassword(InArgs._IsPassword)
				.RevertTextOnEscape(InArgs._RevertTextOnEscape)
				.ToolTipText(InArgs._ToolTipText)
				.AccessibleText(InArgs._AccessibleText.IsSet() ? InArgs._AccessibleText : InArgs._HintText)
				.TextArguments(TextArguments)
			]
		]);
	// clang-format on
	// The name is that of the text inside.
	SetAccessibleBehavior(EAccessibleBehavior::NotAccessible);
}

FText SEditableTextBox::GetText() const
{
	return EditableText->GetText();
}

void SEditableTextBox::SetText(const TAttribute<FText>& InNewText)
{
	EditableText->SetText(InNewText);
}

bool SEditableTextBox::IsReadOnly() const
{
	return EditableText->IsTextReadOnly();
}

FReply SEditableTextBox::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	// On the frame: the text beside it is meant.
	return FReply::Handled().SetUserFocus(EditableText.ToSharedRef(), EFocusCause::Mouse);
}

FReply SEditableTextBox::OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent)
{
	return FReply::Handled().SetUserFocus(EditableText.ToSharedRef(), InFocusEvent.GetCause());
}

bool SEditableTextBox::HasKeyboardFocus() const
{
	return EditableText.IsValid() && EditableText->HasKeyboardFocus();
}

const FSlateBrush* SEditableTextBox::GetBrushToPaint(bool bEnabled) const
{
	if (!bEnabled || IsReadOnly())
	{
		return FAppStyle::GetBrush("TextBox.Background.ReadOnly");
	}
	if (HasKeyboardFocus())
	{
		return FAppStyle::GetBrush("TextBox.Background.Focused");
	}
	return FAppStyle::GetBrush(IsHovered() ? "TextBox.Background.Hovered" : "TextBox.Background.Normal");
}
