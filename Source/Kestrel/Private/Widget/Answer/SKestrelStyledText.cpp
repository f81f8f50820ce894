#include "Widget/Answer/SKestrelStyledText.h"

#include "Framework/Text/TextLayout.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "InputCoreTypes.h"
#include "Layout/Geometry.h"

namespace KestrelStyledText
{
// Prose is read with more ease than lines that stand side by side with their numbers.
constexpr float WrappedLineHeight = 1.15f;
}

TSharedRef<SKestrelStyledText> SKestrelStyledText::Make(
	TArray<FStyledPiece>&& Pieces, bool bWrap, const FText& AccessibleName, const FOnKestrelLinkChosen& OnLinkChosen)
{
	const TSharedRef<FKestrelStyledText> Styled = MakeShared<FKestrelStyledText>(MoveTemp(Pieces));
	const TSharedRef<SKestrelStyledText> Widget =
		SArgumentNew(SMultiLineEditableText::FArguments()
						 .Text(Styled->GetText())
						 .Marshaller(Styled)
						 .IsReadOnly(true)
						 .AutoWrapText(bWrap)
						 .LineHeightPercentage(bWrap ? KestrelStyledText::WrappedLineHeight : 1.0f)
						 .WrappingPolicy(ETextWrappingPolicy::AllowPerCharacterWrapping)
						 .AccessibleText(AccessibleName),
			SKestrelStyledText);
	if (Styled->HasLinks())
	{
		Widget->Styled = Styled;
		Widget->OnLinkChosen = OnLinkChosen;
	}
	return Widget;
}

FReply SKestrelStyledText::OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent)
{
	const FReply Reply = SMultiLineEditableText::OnMouseButtonUp(MyGeometry, MouseEvent);
	if (MouseEvent.GetEffectingButton() == EKeys::LeftMouseButton && !AnyTextSelected())
	{
		ChooseLink(FVector2D(MouseEvent.GetScreenSpacePosition()));
	}
	return Reply;
}

FReply SKestrelStyledText::OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	if (InKeyEvent.GetKey() == EKeys::Enter && ChooseLink(FVector2D(MyGeometry.GetAbsolutePosition())))
	{
		return FReply::Handled();
	}
	return SMultiLineEditableText::OnKeyDown(MyGeometry, InKeyEvent);
}

bool SKestrelStyledText::ChooseLink(const FVector2D& ScreenPosition) const
{
	const FKestrelLink Link = Styled.IsValid() ? Styled->GetLinkAt(GetCursorLocation()) : FKestrelLink();
	return Link.IsSet() && OnLinkChosen.ExecuteIfBound(Link, ScreenPosition);
}
