#include "Widgets/Text/SMultiLineEditableText.h"

#include "Application/SlateApplicationBase.h"
#include "Fonts/FontMeasure.h"
#include "Framework/Text/PlainTextLayoutMarshaller.h"
#include "Rendering/SlateRenderer.h"
#include "Styling/AppStyle.h"
#include "Widgets/Accessibility/SlateAccessibleWidgets.h"

namespace EditableText
{
// Slate units.
constexpr float CursorWidth = 1.0f;
// Layout rounds: a text that has all the height it asked for must not keep the wheel from its parents.
constexpr double RoundingError = 0.5;

static TSharedRef<FSlateFontMeasure> Measure()
{
	return FSlateApplicationBase::Get().GetRenderer()->GetFontMeasureService();
}
}

SMultiLineEditableText::SMultiLineEditableText()
{
	Lines.Add(FString());
}

void SMultiLineEditableText::Construct(const FArguments& InArgs)
{
	Marshaller = InArgs._Marshaller;
	if (Marshaller.IsValid())
	{
		MarshalledLines = FSlateTextLayout::Create(this, FTextBlockStyle());
		WrappingPolicy.Assign(this, ETextWrappingPolicy::DefaultWrapping);
	}
	SetTextStyle(InArgs._TextStyle != nullptr ? InArgs._TextStyle
											  : &FAppStyle::Get().GetWidgetStyle<FTextBlockStyle>("NormalText"));
	FontOverride.Assign(this, InArgs._Font);
	Margin.Assign(this, InArgs._Margin);
	AutoWrapText.Assign(this, InArgs._AutoWrapText);
	WrapTextAt.Assign(this, InArgs._WrapTextAt);
	WrappingPolicy.Assign(this, InArgs._WrappingPolicy);
	LineHeightPercentage.Assign(this, InArgs._LineHeightPercentage);
	HintText = InArgs._HintText;
	IsReadOnlyAttribute = InArgs._IsReadOnly;
	SelectAllTextWhenFocused = InArgs._SelectAllTextWhenFocused;
	ClearTextSelectionOnFocusLoss = InArgs._ClearTextSelectionOnFocusLoss;
	ClearKeyboardFocusOnCommit = InArgs._ClearKeyboardFocusOnCommit;
	OnKeyDownHandler = InArgs._OnKeyDownHandler;
	OnKeyCharHandler = InArgs._OnKeyCharHandler;
	ModiferKeyForNewLine = InArgs._ModiferKeyForNewLine;
	// The first text is no change.
	SetText(InArgs._Text);
	OnTextChanged = InArgs._OnTextChanged;
	OnTextCommitted = InArgs._OnTextCommitted;
	OnCursorMoved = InArgs._OnCursorMoved;
}

void SMultiLineEditableText::SetText(const TAttribute<FText>& InText)
{
	BoundText = InText;
	RefreshBoundText();
}

bool SMultiLineEditableText::RefreshBoundText()
{
	const FString NewText = BoundText.Get(FText::GetEmpty()).ToString();
	const bool bIsSame = Marshaller.IsValid()
							 ? MarshalledText.IsSet() && MarshalledText->Equals(NewText)
							 : FString::Join(ToLines(NewText), LINE_TERMINATOR).Equals(GetPlainText().ToString());
	if (bIsSame)
	{
		return false;
	}
	ReplaceAll(NewText);
	return true;
}

void SMultiLineEditableText::ReplaceAll(const FString& NewText)
{
	CompositionLength = 0;
	SetLines(NewText);
	Cursor = GetEnd();
	SelectionAnchor = Cursor;
	// The states before belong to another text.
	History.Clear();
	NotifyTextChanged();
}

void SMultiLineEditableText::SetLines(const FString& Text)
{
	// The runs of the layout are going to be others.
	bLayoutIsStale = true;
	if (!Marshaller.IsValid())
	{
		Lines = ToLines(Text);
		return;
	}
	MarshalledText = Text;
	MarshalledLines->ClearLines();
	Marshaller->SetText(Text, *MarshalledLines);
	Marshaller->ClearDirty();
	if (MarshalledLines->GetLineModels().Num() == 0)
	{
		FPlainTextLayoutMarshaller::Create()->SetText(FString(), *MarshalledLines);
	}
	Lines.Reset();
	for (const FTextLayout::FLineModel& Model : MarshalledLines->GetLineModels())
	{
		checkf(Model.Runs.Last().GetTextRange().EndIndex == Model.Text->Len(),
			TEXT("A line was changed after it had been added."));
		Lines.Add(*Model.Text);
	}
}

void SMultiLineEditableText::MarshalAgain(const FString& Text)
{
	SetLines(Text);
	Cursor = ClampToText(Cursor);
	SelectionAnchor = ClampToText(SelectionAnchor);
	CompositionBegin = ClampToText(CompositionBegin);
	const int32 LineLength = Lines[CompositionBegin.GetLineIndex()].Len();
	CompositionLength = FMath::Min(CompositionLength, LineLength - CompositionBegin.GetOffset());
}

TArray<FString> SMultiLineEditableText::ToLines(const FString& Text) const
{
	TArray<FString> Split = FWrappedText::SplitIntoParagraphs(Text);
	return IsSingleLine() && Split.Num() > 1 ? TArray<FString>{ FString::Join(Split, TEXT(" ")) } : Split;
}

const TArray<FString>& SMultiLineEditableText::GetShownLines() const
{
	if (!IsPassword())
	{
		return Lines;
	}
	constexpr TCHAR Dot = 0x2022;
	Dots.SetNum(Lines.Num());
	for (int32 Index = 0; Index < Lines.Num(); ++Index)
	{
		if (Dots[Index].Len() != Lines[Index].Len())
		{
			Dots[Index] = FString::ChrN(Lines[Index].Len(), Dot);
		}
	}
	return Dots;
}

void SMultiLineEditableText::MarshalEdit()
{
	if (Marshaller.IsValid())
	{
		checkf(Marshaller->RequiresLiveUpdate(),
			TEXT("A text was changed whose marshaller does not ask for it: its runs are of the text before."));
		MarshalAgain(GetPlainText().ToString());
	}
}

void SMultiLineEditableText::NotifyEdited()
{
	MarshalEdit();
	NotifyTextChanged();
}

void SMultiLineEditableText::NotifyTextChanged()
{
	InvalidateText();
	OnTextChanged.ExecuteIfBound(GetEditableText());
	NotifyCursorMoved();
}

void SMultiLineEditableText::NotifyCursorMoved()
{
	if (!(NotifiedCursor == Cursor))
	{
		NotifiedCursor = Cursor;
		OnCursorMoved.ExecuteIfBound(Cursor);
	}
}

void SMultiLineEditableText::InvalidateLayout()
{
	bLayoutIsStale = true;
	Invalidate(EInvalidateWidgetReason::Layout);
}

void SMultiLineEditableText::InvalidateText()
{
	InvalidateLayout();
	KeepCursorInView();
}

FText SMultiLineEditableText::GetText() const
{
	return BoundText.IsBound() ? BoundText.Get() : GetEditableText();
}

FText SMultiLineEditableText::GetEditableText() const
{
	if (!Marshaller.IsValid())
	{
		return GetPlainText();
	}
	FString Text;
	Marshaller->GetText(Text, *MarshalledLines);
	return FText::FromString(Text);
}

FText SMultiLineEditableText::GetPlainText() const
{
	return FText::FromString(FString::Join(Lines, LINE_TERMINATOR));
}

FText SMultiLineEditableText::GetSelectedText() const
{
	return FText::FromString(GetTextBetween(GetSelectionStart(), GetSelectionEnd()));
}

FString SMultiLineEditableText::GetTextBetween(const FTextLocation& From, const FTextLocation& To) const
{
	if (From.GetLineIndex() == To.GetLineIndex())
	{
		return Lines[From.GetLineIndex()].Mid(From.GetOffset(), To.GetOffset() - From.GetOffset());
	}
	FString Text = Lines[From.GetLineIndex()].Mid(From.GetOffset());
	for (int32 Index = From.GetLineIndex() + 1; Index < To.GetLineIndex(); ++Index)
	{
		Text += LINE_TERMINATOR;
		Text += Lines[Index];
	}
	return Text + LINE_TERMINATOR + Lines[To.GetLineIndex()].Left(To.GetOffset());
}

void SMultiLineEditableText::SetHintText(const TAttribute<FText>& InHintText)
{
	HintText = InHintText;
	Invalidate(EInvalidateWidgetReason::Layout);
}

void SMultiLineEditableText::SetTextStyle(const FTextBlockStyle* InTextStyle)
{
	TextStyle = InTextStyle != nullptr ? *InTextStyle : FTextBlockStyle::GetDefault();
	if (Marshaller.IsValid())
	{
		MarshalledLines->SetDefaultTextStyle(TextStyle);
		Marshaller->MakeDirty();
	}
	InvalidateText();
}

FTextLocation SMultiLineEditableText::Insert(const FTextLocation& Location, const FString& Text)
{
	const TArray<FString> Inserted = ToLines(Text);
	FString& Line = Lines[Location.GetLineIndex()];
	const FString Rest = Line.Mid(Location.GetOffset());
	Line = Line.Left(Location.GetOffset()) + Inserted[0];
	int32 LineIndex = Location.GetLineIndex();
	for (int32 Index = 1; Index < Inserted.Num(); ++Index)
	{
		Lines.Insert(Inserted[Index], ++LineIndex);
	}
	const FTextLocation End(LineIndex, Lines[LineIndex].Len());
	Lines[LineIndex] += Rest;
	return End;
}

void SMultiLineEditableText::InsertTextAtCursor(const FString& InString)
{
	if (IsTextReadOnly() || InString.IsEmpty())
	{
		return;
	}
	InsertAndRemember(InString, FTextHistory::EChange::Whole);
}

void SMultiLineEditableText::SetComposition(const FString& Text, int32 CursorOffset)
{
	if (IsTextReadOnly() || (Text.IsEmpty() && !IsComposing()))
	{
		return;
	}
	if (!IsComposing())
	{
		DeleteTo(Cursor);
		CompositionBegin = Cursor;
	}
	FString& Line = Lines[CompositionBegin.GetLineIndex()];
	const FString Shown = FString::Join(FWrappedText::SplitIntoParagraphs(Text), TEXT(" "));
	const int32 Begin = CompositionBegin.GetOffset();
	Line = Line.Left(Begin) + Shown + Line.Mid(Begin + CompositionLength);
	CompositionLength = Shown.Len();
	Cursor = FTextLocation(CompositionBegin.GetLineIndex(), Begin + FMath::Clamp(CursorOffset, 0, CompositionLength));
	SelectionAnchor = Cursor;
	MarshalEdit();
	InvalidateText();
	NotifyCursorMoved();
}

FSlateRect SMultiLineEditableText::GetCursorRect() const
{
	const FWrappedText& Shown = GetLayout();
	const FWrappedText::FLine& Line = Shown.GetLines()[Shown.FindLine(Cursor.GetLineIndex(), Cursor.GetOffset())];
	const FVector2D Place(Margin.Get().Left - SidewaysOffset + Shown.GetCursorX(Line, Cursor.GetOffset()),
		Margin.Get().Top - ScrollOffset + Line.Top);
	return GetCachedGeometry()
		.MakeChild(FVector2D(EditableText::CursorWidth, Line.Height), FSlateLayoutTransform(Place))
		.GetLayoutBoundingRect();
}

void SMultiLineEditableText::InsertAndRemember(const FString& Text, FTextHistory::EChange Change)
{
	EndComposition();
	History.BeforeChange(GetState(), AnyTextSelected() ? FTextHistory::EChange::Whole : Change);
	DeleteSelection();
	Cursor = Insert(Cursor, Text);
	SelectionAnchor = Cursor;
	if (Change == FTextHistory::EChange::Letter)
	{
		History.AfterLetter(Cursor);
	}
	NotifyEdited();
}

void SMultiLineEditableText::DeleteSelection()
{
	const FTextLocation From = GetSelectionStart();
	const FTextLocation To = GetSelectionEnd();
	const FString Rest = Lines[To.GetLineIndex()].Mid(To.GetOffset());
	Lines[From.GetLineIndex()] = Lines[From.GetLineIndex()].Left(From.GetOffset()) + Rest;
	for (int32 Index = To.GetLineIndex(); Index > From.GetLineIndex(); --Index)
	{
		Lines.RemoveAt(Index);
	}
	Cursor = From;
	SelectionAnchor = From;
}

void SMultiLineEditableText::DeleteTo(const FTextLocation& Wanted, FTextHistory::EChange Change)
{
	EndComposition();
	const FTextLocation Other = ClampToText(Wanted);
	const FTextHistory::FState Before = GetState();
	const bool bIsLetter = Change == FTextHistory::EChange::Letter && !AnyTextSelected();
	if (!AnyTextSelected())
	{
		SelectionAnchor = Other;
	}
	if (AnyTextSelected())
	{
		History.BeforeChange(Before, bIsLetter ? Change : FTextHistory::EChange::Whole);
		DeleteSelection();
		if (bIsLetter)
		{
			History.AfterLetter(Cursor);
		}
		NotifyEdited();
	}
}

void SMultiLineEditableText::GoTo(const FTextLocation& NewLocation)
{
	MoveCursor(ClampToText(NewLocation), false);
}

void SMultiLineEditableText::GoTo(ETextLocation NewLocation)
{
	switch (NewLocation)
	{
	case ETextLocation::BeginningOfDocument:
		return MoveCursor(FTextLocation(0, 0), false);
	case ETextLocation::EndOfDocument:
		return MoveCursor(GetEnd(), false);
	case ETextLocation::BeginningOfLine:
		return MoveCursor(FTextLocation(Cursor.GetLineIndex(), 0), false);
	case ETextLocation::EndOfLine:
		return MoveCursor(FTextLocation(Cursor.GetLineIndex(), Lines[Cursor.GetLineIndex()].Len()), false);
	}
}

void SMultiLineEditableText::SelectAllText()
{
	SelectionAnchor = FTextLocation(0, 0);
	Cursor = GetEnd();
	NotifyCursorMoved();
}

void SMultiLineEditableText::ClearSelection()
{
	SelectionAnchor = Cursor;
}

void SMultiLineEditableText::Refresh()
{
	if (BoundText.IsBound())
	{
		RefreshBoundText();
	}
}

FSlateFontInfo SMultiLineEditableText::GetFont() const
{
	return FontOverride.Get().HasValidFont() ? FontOverride.Get() : TextStyle.Font;
}

float SMultiLineEditableText::GetWrapWidth() const
{
	const float Allotted =
		AutoWrapText.Get() ? static_cast<float>(AllottedSize.X) - Margin.Get().GetTotalSpaceAlong<Orient_Horizontal>()
						   : 0.0f;
	if (WrapTextAt.Get() > 0.0f)
	{
		return Allotted > 0.0f ? FMath::Min(Allotted, WrapTextAt.Get()) : WrapTextAt.Get();
	}
	return Allotted;
}

const FWrappedText& SMultiLineEditableText::GetLayout() const
{
	FWrappedText::FSource Source;
	Source.Paragraphs = &GetShownLines();
	Source.Font = GetFont();
	Source.Runs = MarshalledLines.Get();
	Source.WrapWidth = GetWrapWidth();
	Source.WrappingPolicy = WrappingPolicy.Get();
	Source.LineHeightPercentage = LineHeightPercentage.Get();
	if (bLayoutIsStale || !(Layout.GetSource() == Source))
	{
		bLayoutIsStale = false;
		Layout.Update(Source);
	}
	return Layout;
}

FVector2D SMultiLineEditableText::ComputeDesiredSize(float LayoutScaleMultiplier) const
{
	FVector2D Size = GetLayout().GetSize();
	if (IsEmpty())
	{
		const FString Hint = GetHintText().ToString();
		const FVector2D HintSize = EditableText::Measure()->Measure(Hint, GetFont());
		Size = FVector2D(FMath::Max(Size.X, HintSize.X), Size.Y);
	}
	return Size + FVector2D(EditableText::CursorWidth, 0.0) + Margin.Get().GetDesiredSize();
}

void SMultiLineEditableText::Tick(
	const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	const FVector2D NewSize = AllottedGeometry.GetLocalSize();
	if (NewSize.X != AllottedSize.X && AutoWrapText.Get())
	{
		Invalidate(EInvalidateWidgetReason::Layout);
	}
	AllottedSize = NewSize;
	ScrollOffset = FMath::Clamp(ScrollOffset, 0.0f, GetLongestScrollOffset());
	if (Marshaller.IsValid() && Marshaller->IsDirty())
	{
		MarshalAgain(GetEditableText().ToString());
		InvalidateLayout();
		NotifyCursorMoved();
	}
	// While somebody is typing, what they have typed stands.
	if (BoundText.IsBound() && (IsTextReadOnly() || !HasKeyboardFocus()))
	{
		RefreshBoundText();
	}
}

float SMultiLineEditableText::GetLongestScrollOffset() const
{
	const double TextHeight = GetLayout().GetSize().Y + Margin.Get().GetDesiredSize().Y;
	const double Excess = TextHeight - AllottedSize.Y;
	return Excess > EditableText::RoundingError ? static_cast<float>(Excess) : 0.0f;
}

void SMultiLineEditableText::KeepCursorInView()
{
	if (AllottedSize.Y <= 0.0)
	{
		return;
	}
	const FWrappedText& Shown = GetLayout();
	const FWrappedText::FLine& Line = Shown.GetLines()[Shown.FindLine(Cursor.GetLineIndex(), Cursor.GetOffset())];
	const float CursorTop = static_cast<float>(Line.Top);
	const float SmallestOffset = CursorTop + Line.Height - static_cast<float>(AllottedSize.Y);
	ScrollOffset = FMath::Min(FMath::Max(ScrollOffset, SmallestOffset), CursorTop);
	ScrollOffset = FMath::Clamp(ScrollOffset, 0.0f, GetLongestScrollOffset());
	if (IsSingleLine())
	{
		const float CursorX = Shown.GetCursorX(Line, Cursor.GetOffset());
		const float Width = static_cast<float>(AllottedSize.X) - Margin.Get().GetTotalSpaceAlong<Orient_Horizontal>();
		const float LongestOffset =
			FMath::Max(static_cast<float>(Shown.GetSize().X) + EditableText::CursorWidth - Width, 0.0f);
		const float SmallestToSee = CursorX + EditableText::CursorWidth - Width;
		SidewaysOffset = FMath::Min(FMath::Max(SidewaysOffset, SmallestToSee), CursorX);
		SidewaysOffset = FMath::Clamp(SidewaysOffset, 0.0f, LongestOffset);
	}
}

TSharedRef<FSlateAccessibleWidget> SMultiLineEditableText::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleMultiLineEditableText>(AsShared());
}
