#include "Rendering/DrawElements.h"
#include "Styling/AppStyle.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace EditableTextPaint
{
// Slate units.
constexpr float CursorWidth = 1.0f;
constexpr float UnderlineHeight = 1.0f;
constexpr float HintOpacity = 0.5f;
}

int32 SMultiLineEditableText::OnPaint(const FPaintArgs& Args, const FGeometry& AllottedGeometry,
	const FSlateRect& MyCullingRect, FSlateWindowElementList& OutDrawElements, int32 LayerId,
	const FWidgetStyle& InWidgetStyle, bool bParentEnabled) const
{
	if (IsEmpty())
	{
		const FLinearColor Tint =
			InWidgetStyle.GetColorAndOpacityTint() * TextStyle.ColorAndOpacity.GetColor(InWidgetStyle);
		const FGeometry HintGeometry = AllottedGeometry.MakeChild(
			AllottedGeometry.GetLocalSize(), FSlateLayoutTransform(Margin.Get().GetTopLeft()));
		FSlateDrawElement::MakeText(OutDrawElements, LayerId + 1, HintGeometry, MyCullingRect, GetHintText().ToString(),
			GetFont(), Tint.CopyWithNewOpacity(Tint.A * EditableTextPaint::HintOpacity));
	}
	return PaintText(AllottedGeometry, MyCullingRect, OutDrawElements, LayerId, InWidgetStyle);
}

int32 SMultiLineEditableText::PaintText(const FGeometry& AllottedGeometry, const FSlateRect& MyCullingRect,
	FSlateWindowElementList& OutDrawElements, int32 LayerId, const FWidgetStyle& InWidgetStyle) const
{
	const FWrappedText& Shown = GetLayout();
	const double Top = Margin.Get().Top - ScrollOffset;
	const double ViewTop = AllottedGeometry.AbsoluteToLocal(MyCullingRect.GetTopLeft()).Y - Top;
	const double ViewEnd = ViewTop + MyCullingRect.GetSize().Y / AllottedGeometry.GetScale();
	int32 First = 0;
	int32 Count = 0;
	Shown.FindLinesBetween(ViewTop, ViewEnd, First, Count);
	for (int32 Index = First; Index < First + Count; ++Index)
	{
		const FWrappedText::FLine& Line = Shown.GetLines()[Index];
		const FGeometry TextGeometry = AllottedGeometry.MakeChild(FVector2D(Line.Width, Line.Height),
			FSlateLayoutTransform(FVector2D(Margin.Get().Left - SidewaysOffset, Top + Line.Top)));
		PaintLine(Line, TextGeometry, MyCullingRect, OutDrawElements, LayerId, InWidgetStyle);
	}
	return LayerId + 1;
}

void SMultiLineEditableText::PaintLine(const FWrappedText::FLine& Line, const FGeometry& TextGeometry,
	const FSlateRect& MyCullingRect, FSlateWindowElementList& OutDrawElements, int32 LayerId,
	const FWidgetStyle& InWidgetStyle) const
{
	const FLinearColor Tint =
		InWidgetStyle.GetColorAndOpacityTint() * TextStyle.ColorAndOpacity.GetColor(InWidgetStyle);
	const TArray<FWrappedText::FPiece> Pieces = Layout.GetPieces(Line);
	const float Baseline = Pieces[0].Top + Pieces[0].Baseline;
	PaintHighlights(Line, TextGeometry, Baseline, true, MyCullingRect, OutDrawElements, LayerId, InWidgetStyle);
	PaintSelection(Line, TextGeometry, MyCullingRect, OutDrawElements, LayerId, Tint);
	for (const FWrappedText::FPiece& Piece : Pieces)
	{
		const FGeometry PieceGeometry = TextGeometry.MakeChild(
			FVector2D(Piece.Width, Piece.Height), FSlateLayoutTransform(FVector2D(Piece.Left, Piece.Top)));
		const FLinearColor PieceTint =
			Piece.Style ? InWidgetStyle.GetColorAndOpacityTint() * Piece.Style->ColorAndOpacity.GetColor(InWidgetStyle)
						: Tint;
		FSlateDrawElement::MakeText(OutDrawElements, LayerId + 1, PieceGeometry, MyCullingRect,
			FString(Layout.GetText(Line, Piece.Begin, Piece.End)), *Piece.Font, PieceTint);
	}
	PaintHighlights(Line, TextGeometry, Baseline, false, MyCullingRect, OutDrawElements, LayerId + 1, InWidgetStyle);
}

void SMultiLineEditableText::PaintHighlights(const FWrappedText::FLine& Line, const FGeometry& TextGeometry,
	float Baseline, bool bUnderText, const FSlateRect& MyCullingRect, FSlateWindowElementList& OutDrawElements,
	int32 LayerId, const FWidgetStyle& InWidgetStyle) const
{
	if (!MarshalledLines.IsValid())
	{
		return;
	}
	for (const FTextLineHighlight& Highlight : MarshalledLines->GetLineModels()[Line.ParagraphIndex].LineHighlights)
	{
		if ((Highlight.ZOrder < 0) != bUnderText)
		{
			continue;
		}
		for (const FSlateFontMeasure::FSpan& Span :
			Layout.FindSpans(Line, Highlight.Range.BeginIndex, Highlight.Range.EndIndex))
		{
			const FGeometry Stretch =
				TextGeometry.MakeChild(FVector2D(Span.Right - Span.Left, TextGeometry.GetLocalSize().Y),
					FSlateLayoutTransform(FVector2D(Span.Left, 0.0)));
			Highlight.Highlighter->Paint(Stretch, Baseline, MyCullingRect, OutDrawElements, LayerId, InWidgetStyle);
		}
	}
}

void SMultiLineEditableText::PaintSelection(const FWrappedText::FLine& Line, const FGeometry& TextGeometry,
	const FSlateRect& MyCullingRect, FSlateWindowElementList& OutDrawElements, int32 LayerId,
	const FLinearColor& Tint) const
{
	const FTextLocation LineBegin(Line.ParagraphIndex, Line.Begin);
	const FTextLocation LineEnd(Line.ParagraphIndex, Line.End());
	const auto PaintSpan = [&](float Left, float Right, const FLinearColor& Color, float FromTop = 0.0f) {
		const FGeometry Span = TextGeometry.MakeChild(
			FVector2D(Right - Left, Line.Height - FromTop), FSlateLayoutTransform(FVector2D(Left, FromTop)));
		FSlateDrawElement::MakeBox(
			OutDrawElements, LayerId, Span, MyCullingRect, FAppStyle::GetBrush("WhiteBrush"), Color);
	};
	const FTextLocation From = GetSelectionStart() < LineBegin ? LineBegin : GetSelectionStart();
	const FTextLocation To = LineEnd < GetSelectionEnd() ? LineEnd : GetSelectionEnd();
	if (From < To)
	{
		for (const FSlateFontMeasure::FSpan& Span : Layout.FindSpans(Line, From.GetOffset(), To.GetOffset()))
		{
			PaintSpan(Span.Left, Span.Right, TextStyle.SelectedBackgroundColor.GetSpecifiedColor());
		}
	}
	const int32 ComposedFrom = FMath::Max(CompositionBegin.GetOffset(), Line.Begin);
	const int32 ComposedTo = FMath::Min(CompositionBegin.GetOffset() + CompositionLength, Line.End());
	if (CompositionBegin.GetLineIndex() == Line.ParagraphIndex && ComposedFrom < ComposedTo)
	{
		for (const FSlateFontMeasure::FSpan& Span : Layout.FindSpans(Line, ComposedFrom, ComposedTo))
		{
			PaintSpan(Span.Left, Span.Right, Tint, Line.Height - EditableTextPaint::UnderlineHeight);
		}
	}
	const bool bHoldsCursor =
		Cursor.GetLineIndex() == Line.ParagraphIndex && !(Cursor < LineBegin) && !(LineEnd < Cursor);
	if (bHoldsCursor && HasKeyboardFocus() && !IsTextReadOnly())
	{
		const float X = Layout.GetCursorX(Line, Cursor.GetOffset());
		PaintSpan(X, X + EditableTextPaint::CursorWidth, Tint);
	}
}
