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

static bool IsLowSurrogate(TCHAR Character)
{
	return Character >= 0xDC00 && Character <= 0xDFFF;
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
		DeleteTo(InKeyEvent.IsControlDown() ? GetWordEnd(Cursor) : GetLocationAfter(Cursor));
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
	if (FSlateApplication::Get().GetModifierKeys().AreModifersDown(ModiferKeyForNewLine))
	{
		InsertTextAtCursor(FString(TEXT("\n")));
		return FReply::Handled();
	}
	OnTextCommitted.ExecuteIfBound(GetPlainText(), ETextCommit::OnEnter);
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
	if (Key == EKeys::C || (Key == EKeys::X && !IsTextReadOnly()))
	{
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
	const float LineHeight = GetLayout().GetLineHeight();
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
		DeleteTo(GetLocationBefore(Cursor));
		return FReply::Handled();
	}
	// Enter comes as a key press too, and has been dealt with there.
	if (Character >= EditableTextKeys::FirstPrintable && Character != EditableTextKeys::DeleteCharacter)
	{
		InsertTextAtCursor(FString::Chr(Character));
	}
	return FReply::Handled();
}

void SMultiLineEditableText::MoveCursor(const FTextLocation& NewLocation, bool bSelect)
{
	Cursor = NewLocation;
	if (!bSelect)
	{
		SelectionAnchor = Cursor;
	}
	KeepCursorInView();
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
	if (Offset > 0 && EditableTextKeys::IsLowSurrogate(Lines[LineIndex][Offset]))
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
	if (Offset < Line.Len() && EditableTextKeys::IsLowSurrogate(Line[Offset]))
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
	const float X = GetCursorX(ShownLines[Current], Cursor.GetOffset());
	const FStringView Text = FStringView(Lines[Target.ParagraphIndex]).Mid(Target.Begin, Target.Length);
	const TSharedRef<FSlateFontMeasure> Measure = FSlateApplication::Get().GetRenderer()->GetFontMeasureService();
	return FTextLocation(Target.ParagraphIndex, Target.Begin + Measure->FindCharacterIndexAtOffset(Text, GetFont(), X));
}

FTextLocation SMultiLineEditableText::GetLocationAt(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) const
{
	const FVector2D Position = FVector2D(MyGeometry.AbsoluteToLocal(MouseEvent.GetScreenSpacePosition())) -
							   Margin.Get().GetTopLeft() + FVector2D(0.0, ScrollOffset);
	const TArray<FWrappedText::FLine>& ShownLines = GetLayout().GetLines();
	const int32 LineIndex = static_cast<int32>(
		FMath::Clamp(Position.Y / GetLayout().GetLineHeight(), 0.0, static_cast<double>(ShownLines.Num() - 1)));
	const FWrappedText::FLine& Line = ShownLines[LineIndex];
	const FStringView Text = FStringView(Lines[Line.ParagraphIndex]).Mid(Line.Begin, Line.Length);
	const TSharedRef<FSlateFontMeasure> Measure = FSlateApplication::Get().GetRenderer()->GetFontMeasureService();
	return FTextLocation(Line.ParagraphIndex,
		Line.Begin + Measure->FindCharacterIndexAtOffset(Text, GetFont(), static_cast<float>(Position.X)));
}

FReply SMultiLineEditableText::OnMouseButtonDown(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	if (MouseEvent.GetEffectingButton() != EKeys::LeftMouseButton)
	{
		return FReply::Unhandled();
	}
	MoveCursor(GetLocationAt(MyGeometry, MouseEvent), MouseEvent.IsShiftDown());
	return FReply::Handled().CaptureMouse(AsShared()).SetUserFocus(AsShared(), EFocusCause::Mouse);
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
	return FReply::Handled();
}

void SMultiLineEditableText::OnFocusLost(const FFocusEvent& InFocusEvent)
{
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
	OnTextCommitted.ExecuteIfBound(GetPlainText(), Reason);
}
