#pragma once

#include "../../../Internal/Framework/Text/TextComposition.h"
#include "../../../Internal/Framework/Text/TextHistory.h"
#include "../../../Internal/Framework/Text/WrappedText.h"
#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Framework/Text/ITextLayoutMarshaller.h"
#include "Framework/Text/SlateTextLayout.h"
#include "Framework/Text/TextLayout.h"
#include "GenericPlatform/GenericApplication.h"
#include "Styling/SlateTypes.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWidget.h"

/**
 * Several lines of text that can be selected, copied and, unless read-only, changed.
 *
 * Each key is offered to OnKeyDownHandler first. While the text can be edited it takes Enter itself, so no parent sees
 * that key; a read-only text lets it pass. Its colour comes from the style, or from the parents' foreground.
 *
 * A marshaller makes the lines that are shown, selected and copied of a text that may be written differently, and gives
 * them runs in styles of their own. One that RequiresLiveUpdate is given the text again, as it is shown, when the user
 * has changed it; with another one the text has to be read-only.
 */
class SMultiLineEditableText : public SWidget, public ITextCompositionTarget
{
public:
	/** After the cursor has moved, for whatever reason. */
	DECLARE_DELEGATE_OneParam(FOnCursorMoved, const FTextLocation&);

	SLATE_BEGIN_ARGS(SMultiLineEditableText)
		: _TextStyle(nullptr)
		, _ModiferKeyForNewLine(EModifierKey::None)
	{
		_Clipping = EWidgetClipping::ClipToBounds;
	}
	SLATE_ATTRIBUTE(FText, Text)
	/** Shown while there is no text; never part of it. */
	SLATE_ATTRIBUTE(FText, HintText)
	/** Copied. */
	SLATE_STYLE_ARGUMENT(FTextBlockStyle, TextStyle)
	/** Wins over the style's. */
	SLATE_ATTRIBUTE(FSlateFontInfo, Font)
	SLATE_ATTRIBUTE(FMargin, Margin)
	SLATE_ATTRIBUTE(bool, IsReadOnly)
	SLATE_ATTRIBUTE(bool, AutoWrapText)
	/** A width in Slate units; 0: not there. */
	SLATE_ATTRIBUTE(float, WrapTextAt)
	/** Unless it is set, a text with a marshaller keeps long words whole, and one without breaks them. */
	SLATE_ATTRIBUTE(ETextWrappingPolicy, WrappingPolicy)
	/** 1: as high as the font asks for. */
	SLATE_ATTRIBUTE(float, LineHeightPercentage)
	SLATE_ARGUMENT(TSharedPtr<ITextLayoutMarshaller>, Marshaller)
	SLATE_ATTRIBUTE(bool, SelectAllTextWhenFocused)
	SLATE_ATTRIBUTE(bool, ClearTextSelectionOnFocusLoss)
	SLATE_ATTRIBUTE(bool, ClearKeyboardFocusOnCommit)
	SLATE_EVENT(FOnTextChanged, OnTextChanged)
	SLATE_EVENT(FOnTextCommitted, OnTextCommitted)
	SLATE_EVENT(FOnCursorMoved, OnCursorMoved)
	SLATE_EVENT(FOnKeyDown, OnKeyDownHandler)
	SLATE_EVENT(FOnKeyChar, OnKeyCharHandler)
	/** What has to be held down for Enter to begin a new line; without it Enter then commits the text. */
	SLATE_ARGUMENT(EModifierKey::Type, ModiferKeyForNewLine)
	SLATE_END_ARGS()

	SMultiLineEditableText();
	void Construct(const FArguments& InArgs);

	/** Replaces the text and puts the cursor at its end; raises OnTextChanged if the text differs. */
	void SetText(const TAttribute<FText>& InText);
	/** The getter's answer if the text is bound, otherwise the marshaller's, or what GetPlainText says. */
	FText GetText() const;
	/** What is shown, its lines joined by LINE_TERMINATOR. */
	FText GetPlainText() const;
	FText GetSelectedText() const;
	void SetHintText(const TAttribute<FText>& InHintText);
	FText GetHintText() const { return HintText.Get(FText::GetEmpty()); }
	void SetTextStyle(const FTextBlockStyle* InTextStyle);
	void SetIsReadOnly(const TAttribute<bool>& InIsReadOnly) { IsReadOnlyAttribute = InIsReadOnly; }
	virtual bool IsTextReadOnly() const { return IsReadOnlyAttribute.Get(false); }

	/** In the place of the selection. Nothing happens when read-only. */
	void InsertTextAtCursor(const FText& InText) { InsertTextAtCursor(InText.ToString()); }
	void InsertTextAtCursor(const FString& InString);
	void GoTo(const FTextLocation& NewLocation);
	void GoTo(ETextLocation NewLocation);
	FTextLocation GetCursorLocation() const { return Cursor; }
	void SelectAllText();
	void ClearSelection();
	bool AnyTextSelected() const { return !(SelectionAnchor == Cursor); }
	/** Evaluates a bound text again. */
	void Refresh();

	virtual void SetComposition(const FString& Text, int32 CursorOffset) override;
	virtual FSlateRect GetCursorRect() const override;

	virtual bool SupportsKeyboardFocus() const override { return true; }
	virtual FReply OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent) override;
	virtual void OnFocusLost(const FFocusEvent& InFocusEvent) override;
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;
	virtual FReply OnKeyChar(const FGeometry& MyGeometry, const FCharacterEvent& InCharacterEvent) override;
	virtual FReply OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseButtonDoubleClick(const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent) override;
	virtual FReply OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual TOptional<EMouseCursor::Type> GetCursor() const override { return EMouseCursor::TextEditBeam; }
	virtual void Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime) override;
	virtual FChildren* GetChildren() override { return &NoChildren; }
	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;

protected:
	virtual FVector2D ComputeDesiredSize(float LayoutScaleMultiplier) const override;
	virtual void OnArrangeChildren(
		const FGeometry& AllottedGeometry, FArrangedChildren& ArrangedChildren) const override
	{
	}
	virtual int32 OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle,
		bool bParentEnabled) const override;
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Auto; }
	virtual FText GetDefaultAccessibleText() const override { return GetHintText(); }

	/** One line that is as long as it may be: line endings become spaces, Enter commits, the text moves sideways. */
	virtual bool IsSingleLine() const { return false; }
	/** Whether a dot is shown for each letter. */
	virtual bool IsPassword() const { return false; }
	void DeleteSelectedText() { DeleteTo(Cursor); }
	friend class FSlateAccessibleMultiLineEditableText;

private:
	FReply HandleKeyDown(const FKeyEvent& InKeyEvent);
	bool HandleShortcut(const FKeyEvent& InKeyEvent);
	bool HandleMovement(const FKeyEvent& InKeyEvent);
	FReply HandleEnter();
	FReply HandleTypedCharacter(TCHAR Character);

	bool HandleClipboard(const FKey& Key);
	void UndoOrRedo(bool bUndo);
	FTextHistory::FState GetState() const { return { Lines, Cursor, SelectionAnchor }; }
	/** The lines of a text that comes from outside, as this widget can show them. */
	TArray<FString> ToLines(const FString& Text) const;
	/** The lines as they are drawn. */
	const TArray<FString>& GetShownLines() const;
	void SelectWordAt(const FTextLocation& Location);
	void SelectLineAt(const FTextLocation& Location);
	void InsertAndRemember(const FString& Text, FTextHistory::EChange Change);
	void MoveCursor(const FTextLocation& NewLocation, bool bSelect);
	void DeleteSelection();
	/** Removes the selection, or what lies between the cursor and Other if nothing is selected. */
	void DeleteTo(const FTextLocation& Other, FTextHistory::EChange Change = FTextHistory::EChange::Whole);
	FTextLocation Insert(const FTextLocation& Location, const FString& Text);
	void ReplaceAll(const FString& NewText);
	/** Makes the lines of a text. */
	void SetLines(const FString& Text);
	/** Makes the lines of a text again, under a cursor and a selection that stay as far as they can. */
	void MarshalAgain(const FString& Text);
	/** What GetText answers while no text is bound. */
	FText GetEditableText() const;
	/** Makes runs of lines that the user has changed. */
	void MarshalEdit();
	/** After the user has changed the lines. */
	void NotifyEdited();
	void NotifyTextChanged();
	void NotifyCursorMoved();
	void InvalidateLayout();
	void InvalidateText();
	bool RefreshBoundText();

	/** Before anything else happens to the text: what was composed, but not chosen, is no part of it. */
	void EndComposition() { SetComposition(FString(), 0); }
	bool IsComposing() const { return CompositionLength > 0; }
	FTextLocation GetLocationBefore(const FTextLocation& Location) const;
	FTextLocation GetLocationAfter(const FTextLocation& Location) const;
	FTextLocation GetWordStart(FTextLocation Location) const;
	FTextLocation GetWordEnd(FTextLocation Location) const;
	FTextLocation GetLocationLinesAway(int32 NumLines) const;
	FTextLocation GetEnd() const;
	FTextLocation ClampToText(const FTextLocation& Location) const;
	FTextLocation GetLocationAt(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) const;
	FString GetTextBetween(const FTextLocation& From, const FTextLocation& To) const;
	FTextLocation GetSelectionStart() const { return Cursor < SelectionAnchor ? Cursor : SelectionAnchor; }
	FTextLocation GetSelectionEnd() const { return Cursor < SelectionAnchor ? SelectionAnchor : Cursor; }
	bool IsEmpty() const { return Lines.Num() == 1 && Lines[0].IsEmpty(); }

	FSlateFontInfo GetFont() const;
	float GetWrapWidth() const;
	const FWrappedText& GetLayout() const;
	void KeepCursorInView();
	float GetLongestScrollOffset() const;
	int32 PaintText(const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle) const;
	void PaintLine(const FWrappedText::FLine& Line, const FGeometry& TextGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle) const;
	/** What marks stretches of a line, under its text or over it. */
	void PaintHighlights(const FWrappedText::FLine& Line, const FGeometry& TextGeometry, float Baseline,
		bool bUnderText, const FSlateRect& MyCullingRect, FSlateWindowElementList& OutDrawElements, int32 LayerId,
		const FWidgetStyle& InWidgetStyle) const;
	void PaintSelection(const FWrappedText::FLine& Line, const FGeometry& TextGeometry, const FSlateRect& MyCullingRect,
		FSlateWindowElementList& OutDrawElements, int32 LayerId, const FLinearColor& Tint) const;

	FNoChildren NoChildren{ this };
	TAttribute<FText> BoundText;
	TAttribute<FText> HintText;
	FTextBlockStyle TextStyle;
	TCachedAttribute<FSlateFontInfo> FontOverride{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<FMargin> Margin{ EInvalidateWidgetReason::Layout };
	TCachedAttribute<bool> AutoWrapText{ EInvalidateWidgetReason::Layout, false };
	TCachedAttribute<float> WrapTextAt{ EInvalidateWidgetReason::Layout, 0.0f };
	TCachedAttribute<ETextWrappingPolicy> WrappingPolicy{ EInvalidateWidgetReason::Layout,
		ETextWrappingPolicy::AllowPerCharacterWrapping };
	TCachedAttribute<float> LineHeightPercentage{ EInvalidateWidgetReason::Layout, 1.0f };
	TAttribute<bool> IsReadOnlyAttribute;
	TAttribute<bool> SelectAllTextWhenFocused;
	TAttribute<bool> ClearTextSelectionOnFocusLoss;
	TAttribute<bool> ClearKeyboardFocusOnCommit;
	FOnTextChanged OnTextChanged;
	FOnTextCommitted OnTextCommitted;
	FOnCursorMoved OnCursorMoved;
	FOnKeyDown OnKeyDownHandler;
	FOnKeyChar OnKeyCharHandler;
	EModifierKey::Type ModiferKeyForNewLine = EModifierKey::None;

	TArray<FString> Lines; // at least one
	TSharedPtr<ITextLayoutMarshaller> Marshaller;
	TSharedPtr<FSlateTextLayout> MarshalledLines; // the runs of Lines; null without a marshaller
	TOptional<FString> MarshalledText;            // of which they were made
	FTextLocation Cursor;
	FTextLocation NotifiedCursor;
	FTextLocation SelectionAnchor; // where the selection began; the cursor itself when nothing is selected
	FTextLocation CompositionBegin;
	int32 CompositionLength = 0;                  // 0 unless an input method is composing
	FVector2D AllottedSize = FVector2D(0.0, 0.0); // when last painted
	float ScrollOffset = 0.0f;
	float SidewaysOffset = 0.0f; // of a single line
	FTextHistory History;
	double DoubleClickTime = 0.0; // of the last one, in the application's seconds
	FTextLocation DoubleClickLocation;

	mutable FWrappedText Layout;
	mutable TArray<FString> Dots; // of a password
	mutable bool bLayoutIsStale = true;
};
