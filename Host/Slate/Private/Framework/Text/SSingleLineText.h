#pragma once

#include "CoreMinimal.h"
#include "Widgets/Text/SMultiLineEditableText.h"

/** The text in an SEditableTextBox: one line, which Enter commits; it moves sideways to keep the cursor in view. */
class SSingleLineText : public SMultiLineEditableText
{
public:
	SLATE_BEGIN_ARGS(SSingleLineText) { _Clipping = EWidgetClipping::ClipToBounds; }
	SLATE_ARGUMENT(SMultiLineEditableText::FArguments, TextArguments)
	SLATE_ATTRIBUTE(bool, IsPassword)
	SLATE_ATTRIBUTE(bool, RevertTextOnEscape)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	virtual FReply OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent) override;
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;

protected:
	virtual bool IsSingleLine() const override { return true; }
	virtual bool IsPassword() const override { return IsPasswordAttribute.Get(false); }

private:
	TAttribute<bool> IsPasswordAttribute;
	TAttribute<bool> RevertTextOnEscape;
	FText TextBefore; // when the focus came
};
