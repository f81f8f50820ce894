#pragma once

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Layout/SBorder.h"

class SSingleLineText;

/** A line of text in a frame, to be typed over. Enter or leaving it commits the text. */
class SEditableTextBox : public SBorder
{
public:
	SLATE_BEGIN_ARGS(SEditableTextBox)
		: _MinDesiredWidth(0.0f)
		, _Padding(FMargin(6.0f, 3.0f))
	{
	}
	SLATE_ATTRIBUTE(FText, Text)
	SLATE_ATTRIBUTE(FText, HintText)
	SLATE_ATTRIBUTE(FSlateFontInfo, Font)
	SLATE_ATTRIBUTE(bool, IsReadOnly)
	/** Shows a dot for each letter, and lets nobody copy the text. */
	SLATE_ATTRIBUTE(bool, IsPassword)
	SLATE_ATTRIBUTE(bool, SelectAllTextWhenFocused)
	/** Escape puts the text back that was there when the box got the focus. */
	SLATE_ATTRIBUTE(bool, RevertTextOnEscape)
	SLATE_ATTRIBUTE(bool, ClearKeyboardFocusOnCommit)
	SLATE_ATTRIBUTE(float, MinDesiredWidth)
	SLATE_ATTRIBUTE(FMargin, Padding)
	SLATE_EVENT(FOnTextChanged, OnTextChanged)
	SLATE_EVENT(FOnTextCommitted, OnTextCommitted)
	SLATE_EVENT(FOnKeyDown, OnKeyDownHandler)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	FText GetText() const;
	void SetText(const TAttribute<FText>& InNewText);
	bool IsReadOnly() const;

	/** Given the keyboard focus, the box hands it on to its text. */
	virtual bool SupportsKeyboardFocus() const override { return true; }
	virtual FReply OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent) override;
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual bool HasKeyboardFocus() const override;

protected:
	virtual const FSlateBrush* GetBrushToPaint(bool bEnabled) const override;

private:
	TSharedPtr<SSingleLineText> EditableText;
};
