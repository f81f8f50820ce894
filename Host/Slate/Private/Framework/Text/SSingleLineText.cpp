#include "Framework/Text/SSingleLineText.h"

void SSingleLineText::Construct(const FArguments& InArgs)
{
	IsPasswordAttribute = InArgs._IsPassword;
	RevertTextOnEscape = InArgs._RevertTextOnEscape;
	SMultiLineEditableText::Construct(InArgs._TextArguments);
}

FReply SSingleLineText::OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent)
{
	TextBefore = GetPlainText();
	return SMultiLineEditableText::OnFocusReceived(MyGeometry, InFocusEvent);
}

FReply SSingleLineText::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const bool bReverts = InKeyEvent.GetKey() == EKeys::Escape && RevertTextOnEscape.Get(false) && !IsTextReadOnly() &&
						  !GetPlainText().ToString().Equals(TextBefore.ToString());
	if (!bReverts)
	{
		return SMultiLineEditableText::OnKeyDown(MyGeometry, InKeyEvent);
	}
	SelectAllText();
	TextBefore.IsEmpty() ? DeleteSelectedText() : InsertTextAtCursor(TextBefore);
	return FReply::Handled();
}
