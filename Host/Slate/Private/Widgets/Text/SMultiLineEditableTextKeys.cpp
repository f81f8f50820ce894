#include "Fonts/FontMeasure.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformApplicationMisc.h"
#include "Rendering/SlateRenderer.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace EditableTextKeys
{
constexpr TCHAR Backspace = 8;
constexpr TCHAR FirstPrintable = 32;
constexpr TCHAR DeleteCharacter = 127;
// Slate units for a notch of the mouse wheel.
constexpr float WheelStep = 32.0f;

// Between the second press and the third.
constexpr double TripleClickSeconds = 0.5;

enum class ECharacter : uint8
{
	Word,
	Space,
	Sign,
};

static TSharedRef<FSlateFontMeasure> Measure()
{
	return FSlateApplication::Get().GetRenderer()->GetFontMeasureService();
}
}

FReply SMultiLineEditableText::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	if (OnKeyDownHandler.IsBound())
	{
		const FReply Reply = OnKeyDownHandler.Execute(MyGeometry, InKeyEvent);
		if (Reply.IsEventHandled())
		{
			return Reply;
		}
	}
	const FReply Reply = HandleKeyDown(InKeyEvent);
	return Reply.IsEventHandled() ? Reply : SWidget::OnKeyDown(MyGeometry, InKeyEvent);
}

FReply SMultiLineEditableText::HandleKeyDown(const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	if (Key == EKeys::Enter)
	{
		return IsTextReadOnly() ? FReply::Unhandled() : HandleEnter();
	}
	if (Key == EKeys::Escape && AnyTextSelected())
	{
		ClearSelection();
		return FReply::Handled();
	}
	if (Key == EKeys::Delete && !IsTextReadOnly())
	{
		InKeyEvent.IsControlDown() ? DeleteTo(GetWordEnd(Cursor))
								   : DeleteTo(GetLocationAfter(Cursor), FTextHistory::EChange::Letter);
		return FReply::Handled();
	}
	if (Key == EKeys::BackSpace && InKeyEvent.IsControlDown() && !IsTextReadOnly())
	{
		DeleteTo(GetWordStart(Cursor));
		return FReply::Handled();
	}
	return HandleMovement(InKeyEvent) || HandleShortcut(InKeyEvent) ? FReply::Handled() : FReply::Unhandled();
}

FReply SMultiLineEditableText::HandleEnter()
{
	// What is held down now decides, not what the event says.
	if (!IsSingleLine() && FSlateApplication::Get().GetModifierKeys().AreModifersDown(ModiferKeyForNewLine))
	{
		InsertTextAtCursor(FString(TEXT("\n")));
		return FReply::Handled();
	}
	OnTextCommitted.ExecuteIfBound(GetEditableText(), ETextCommit::OnEnter);
	return ClearKeyboardFocusOnCommit.Get(true) ? FReply::Handled().ClearUserFocus(EFocusCause::Cleared)
												: FReply::Handled();
}

bool SMultiLineEditableText::HandleShortcut(const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	if (!InKeyEvent.IsControlDown() || InKeyEvent.IsAltDown())
	{
		return false;
	}
	if (Key == EKeys::A)
	{
		SelectAllText();
		return true;
	}
	if (!IsTextReadOnly() && (Key == EKeys::Z || Key == EKeys::Y))
	{
		UndoOrRedo(Key == EKeys::Z && !InKeyEvent.IsShiftDown());
		return true;
	}
	return HandleClipboard(Key);
}

void SMultiLineEditableText::UndoOrRedo(bool bUndo)
{
	EndComposition();
	FTextHistory::FState State = GetState();
	if (!(bUndo ? History.Undo(State) : History.Redo(State)))
	{
		return;
	}
	Lines = State.Lines;
	Cursor = State.Cursor;
	SelectionAnchor = State.SelectionAnchor;
	NotifyEdited();
}

bool SMultiLineEditableText::HandleClipboard(const FKey& Key)
{
	if (Key == EKeys::C || (Key == EKeys::X && !IsTextReadOnly()))
	{
		// What is hidden on the screen is not to be had through the clipboard.
		if (IsPassword())
		{
			return true;
		}
		if (AnyTextSelected())
		{
			FPlatformApplicationMisc::ClipboardCopy(*GetSelectedText().ToString());
		}
		if (Key == EKeys::X)
		{
			DeleteTo(Cursor);
		}
		return true;
	}
	if (Key == EKeys::V && !IsTextReadOnly())
	{
		FString Pasted;
		FPlatformApplicationMisc::ClipboardPaste(Pasted);
		InsertTextAtCursor(Pasted);
		return true;
	}
	return false;
}

bool SMultiLineEditableText::HandleMovement(const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	const bool bSelect = InKeyEvent.IsShiftDown();
	const bool bControl = InKeyEvent.IsControlDown();
	const FTextLocation LineBegin(Cursor.GetLineIndex(), 0);
	const FTextLocation LineEnd(Cursor.GetLineIndex(), Lines[Cursor.GetLineIndex()].Len());
	const FWrappedText& Shown = GetLayout();
	const float LineHeight = Shown.GetLines()[Shown.FindLine(Cursor.GetLineIndex(), Cursor.GetOffset())].Height;
	const int32 LinesInView = LineHeight > 0.0f ? FMath::Max(static_cast<int32>(AllottedSize.Y / LineHeight), 1) : 1;
	const struct
	{
		FKey Key;
		FTextLocation Target;
	} Movements[] = {
		{ EKeys::Left, bControl ? GetWordStart(Cursor) : GetLocationBefore(Cursor) },
		{ EKeys::Right, bControl ? GetWordEnd(Cursor) : GetLocationAfter(Cursor) },
		{ EKeys::Up, GetLocationLinesAway(-1) },
		{ EKeys::Down, GetLocationLinesAway(1) },
		{ EKeys::PageUp, GetLocationLinesAway(-LinesInView) },
		{ EKeys::PageDown, GetLocationLinesAway(LinesInView) },
		{ EKeys::Home, bControl ? FTextLocation(0, 0) : LineBegin },
		{ EKeys::End, bControl ? GetEnd() : LineEnd },
	};
	const bool bAmongLines = Key == EKeys::Up || Key == EKeys::Down || Key == EKeys::PageUp || Key == EKeys::PageDown;
	if (IsSingleLine() && bAmongLines)
	{
		return false;
	}
	for (const auto& Movement : Movements)
	{
		if (Movement.Key == Key)
		{
			MoveCursor(Movement.Target, bSelect);
			return true;
		}
	}
	return false;
}

FReply SMultiLineEditableText::OnKeyChar(const FGeometry& MyGeometry, const FCharacterEvent& InCharacterEvent)
{
	if (OnKeyCharHandler.IsBound())
	{
		const FReply Reply = OnKeyCharHandler.Execute(MyGeometry, InCharacterEvent);
		if (Reply.IsEventHandled())
		{
			return Reply;
		}
	}
	return IsTextReadOnly() ? FReply::Unhandled() : HandleTypedCharacter(InCharacterEvent.GetCharacter());
}

FReply SMultiLineEditableText::HandleTypedCharacter(TCHAR Character)
{
	if (Character == EditableTextKeys::Backspace)
	{
		DeleteTo(GetLocationBefore(Cursor), FTextHistory::EChange::Letter);
		return FReply::Handled();
	}
	// Enter comes as a key press too, and has been dealt with there.
	if (Character >= EditableTextKeys::FirstPrintable && Character != EditableTextKeys::DeleteCharacter)
	{
		InsertAndRemember(FString::Chr(Character),
			FChar::IsWhitespace(Character) ? FTextHistory::EChange::Whole : FTextHistory::EChange::Letter);
	}
	return FReply::Handled();
}

void SMultiLineEditableText::MoveCursor(const FTextLocation& NewLocation, bool bSelect)
{
	EndComposition();
	Cursor = ClampToText(NewLocation);
	if (!bSelect)
	{
		SelectionAnchor = Cursor;
	}
	KeepCursorInView();
	NotifyCursorMoved();
}

FTextLocation SMultiLineEditableText::GetEnd() const
{
	return FTextLocation(Lines.Num() - 1, Lines.Last().Len());
}

FTextLocation SMultiLineEditableText::ClampToText(const FTextLocation& Location) const
{
	const int32 LineIndex = FMath::Clamp(Location.GetLineIndex(), 0, Lines.Num() - 1);
	return FTextLocation(LineIndex, FMath::Clamp(Location.GetOffset(), 0, Lines[LineIndex].Len()));
}

FTextLocation SMultiLineEditableText::GetLocationBefore(const FTextLocation& Location) const
{
	const int32 LineIndex = Location.GetLineIndex();
	if (Location.GetOffset() == 0)
	{
		return LineIndex > 0 ? FTextLocation(LineIndex - 1, Lines[LineIndex - 1].Len()) : Location;
	}
	int32 Offset = Location.GetOffset() - 1;
	while (!EditableTextKeys::Measure()->IsCaretStop(Lines[LineIndex], Offset))
	{
		--Offset;
	}
	return FTextLocation(LineIndex, Offset);
}

FTextLocation SMultiLineEditableText::GetLocationAfter(const FTextLocation& Location) const
{
	const int32 LineIndex = Location.GetLineIndex();
	const FString& Line = Lines[LineIndex];
	if (Location.GetOffset() == Line.Len())
	{
		return LineIndex + 1 < Lines.Num() ? FTextLocation(LineIndex + 1, 0) : Location;
	}
	int32 Offset = Location.GetOffset() + 1;
	while (!EditableTextKeys::Measure()->IsCaretStop(Line, Offset))
	{
		++Offset;
	}
	return FTextLocation(LineIndex, Offset);
}

FTextLocation SMultiLineEditableText::GetWordStart(FTextLocation Location) const
{
	if (Location.GetOffset() == 0)
	{
		return GetLocationBefore(Location);
	}
	const FString& Line = Lines[Location.GetLineIndex()];
	int32 Offset = Location.GetOffset();
	while (Offset > 0 && FChar::IsWhitespace(Line[Offset - 1]))
	{
		--Offset;
	}
	while (Offset > 0 && !FChar::IsWhitespace(Line[Offset - 1]))
	{
		--Offset;
	}
	return FTextLocation(Location.GetLineIndex(), Offset);
}

FTextLocation SMultiLineEditableText::GetWordEnd(FTextLocation Location) const
{
	const FString& Line = Lines[Location.GetLineIndex()];
	if (Location.GetOffset() == Line.Len())
	{
		return GetLocationAfter(Location);
	}
	int32 Offset = Location.GetOffset();
	while (Offset < Line.Len() && !FChar::IsWhitespace(Line[Offset]))
	{
		++Offset;
	}
	while (Offset < Line.Len() && FChar::IsWhitespace(Line[Offset]))
	{
		++Offset;
	}
	return FTextLocation(Location.GetLineIndex(), Offset);
}

FTextLocation SMultiLineEditableText::GetLocationLinesAway(int32 NumLines) const
{
	const TArray<FWrappedText::FLine>& ShownLines = GetLayout().GetLines();
	const int32 Current = GetLayout().FindLine(Cursor.GetLineIndex(), Cursor.GetOffset());
	const int32 Wanted = Current + NumLines;
	if (Wanted < 0)
	{
		return FTextLocation(0, 0);
	}
	if (Wanted >= ShownLines.Num())
	{
		return GetEnd();
	}
	const FWrappedText::FLine& Target = ShownLines[Wanted];
	const float X = GetLayout().GetCursorX(ShownLines[Current], Cursor.GetOffset());
	return FTextLocation(Target.ParagraphIndex, GetLayout().FindOffset(Target, X));
}

FTextLocation SMultiLineEditableText::GetLocationAt(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) const
{
	const FVector2D Position = FVector2D(MyGeometry.AbsoluteToLocal(MouseEvent.GetScreenSpacePosition())) -
							   Margin.Get().GetTopLeft() + FVector2D(SidewaysOffset, ScrollOffset);
	const FWrappedText& Shown = GetLayout();
	const FWrappedText::FLine& Line = Shown.GetLines()[Shown.FindLineAt(Position.Y)];
	return FTextLocation(Line.ParagraphIndex, Shown.FindOffset(Line, static_cast<float>(Position.X)));
}

FReply SMultiLineEditableText::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (MouseEvent.GetEffectingButton() != EKeys::LeftMouseButton)
	{
		return FReply::Unhandled();
	}
	const FTextLocation Location = GetLocationAt(MyGeometry, MouseEvent);
	const double SinceDoubleClick = FSlateApplication::Get().GetCurrentTime() - DoubleClickTime;
	if (DoubleClickTime > 0.0 && SinceDoubleClick < EditableTextKeys::TripleClickSeconds &&
		Location.GetLineIndex() == DoubleClickLocation.GetLineIndex())
	{
		SelectLineAt(Location);
		return FReply::Handled();
	}
	MoveCursor(Location, MouseEvent.IsShiftDown());
	return FReply::Handled().CaptureMouse(AsShared()).SetUserFocus(AsShared(), EFocusCause::Mouse);
}

FReply SMultiLineEditableText::OnMouseButtonDoubleClick(
	const FGeometry& InMyGeometry, const FPointerEvent& InMouseEvent)
{
	if (InMouseEvent.GetEffectingButton() != EKeys::LeftMouseButton)
	{
		return FReply::Unhandled();
	}
	DoubleClickTime = FSlateApplication::Get().GetCurrentTime();
	DoubleClickLocation = GetLocationAt(InMyGeometry, InMouseEvent);
	SelectWordAt(DoubleClickLocation);
	return FReply::Handled().SetUserFocus(AsShared(), EFocusCause::Mouse);
}

void SMultiLineEditableText::SelectWordAt(const FTextLocation& Location)
{
	const FString& Line = Lines[Location.GetLineIndex()];
	// All of a password is one word: where the others end is nobody's business.
	const auto KindAt = [&Line, this](int32 Offset) {
		const TCHAR Character = Line[Offset];
		return IsPassword() || FChar::IsAlnum(Character) || Character == TEXT('_') ? EditableTextKeys::ECharacter::Word
			   : FChar::IsWhitespace(Character)                                    ? EditableTextKeys::ECharacter::Space
																				   : EditableTextKeys::ECharacter::Sign;
	};
	if (Line.IsEmpty())
	{
		return MoveCursor(Location, false);
	}
	int32 Begin = FMath::Min(Location.GetOffset(), Line.Len() - 1);
	int32 End = Begin + 1;
	const EditableTextKeys::ECharacter Kind = KindAt(Begin);
	while (Begin > 0 && KindAt(Begin - 1) == Kind)
	{
		--Begin;
	}
	while (End < Line.Len() && KindAt(End) == Kind)
	{
		++End;
	}
	MoveCursor(FTextLocation(Location.GetLineIndex(), Begin), false);
	MoveCursor(FTextLocation(Location.GetLineIndex(), End), true);
}

void SMultiLineEditableText::SelectLineAt(const FTextLocation& Location)
{
	const int32 LineIndex = Location.GetLineIndex();
	MoveCursor(FTextLocation(LineIndex, 0), false);
	MoveCursor(FTextLocation(LineIndex, Lines[LineIndex].Len()), true);
}

FReply SMultiLineEditableText::OnMouseMove(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (!HasMouseCapture())
	{
		return FReply::Unhandled();
	}
	MoveCursor(GetLocationAt(MyGeometry, MouseEvent), true);
	return FReply::Handled();
}

FReply SMultiLineEditableText::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	return HasMouseCapture() ? FReply::Handled().ReleaseMouseCapture() : FReply::Unhandled();
}

FReply SMultiLineEditableText::OnMouseWheel(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const float Before = ScrollOffset;
	ScrollOffset = FMath::Clamp(
		ScrollOffset - MouseEvent.GetWheelDelta() * EditableTextKeys::WheelStep, 0.0f, GetLongestScrollOffset());
	return FMath::IsNearlyEqual(Before, ScrollOffset) ? FReply::Unhandled() : FReply::Handled();
}

FReply SMultiLineEditableText::OnFocusReceived(const FGeometry& MyGeometry, const FFocusEvent& InFocusEvent)
{
	if (SelectAllTextWhenFocused.Get(false))
	{
		SelectAllText();
	}
	FSlateApplication::Get().SetTextCompositionTarget(AsShared(), *this);
	return FReply::Handled();
}

void SMultiLineEditableText::OnFocusLost(const FFocusEvent& InFocusEvent)
{
	EndComposition();
	if (ClearTextSelectionOnFocusLoss.Get(true))
	{
		ClearSelection();
	}
	if (IsTextReadOnly())
	{
		return;
	}
	const ETextCommit::Type Reason =
		InFocusEvent.GetCause() == EFocusCause::Cleared ? ETextCommit::OnCleared : ETextCommit::OnUserMovedFocus;
	OnTextCommitted.ExecuteIfBound(GetEditableText(), Reason);
}
