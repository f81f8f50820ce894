#pragma once

#include "CoreMinimal.h"
#include "Input/Events.h"
#include "Input/Reply.h"
#include "Layout/Geometry.h"
#include "Widget/Answer/StyledText.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/Text/SMultiLineEditableText.h"

/** The user has chosen a piece of text that leads somewhere. */
DECLARE_DELEGATE_TwoParams(FOnKestrelLinkChosen, const FKestrelLink& /*Link*/, const FVector2D& /*ScreenPosition*/);

/**
 * Text in several styles that can be selected and copied. A click on a link, or Enter with the cursor in it, chooses
 * it; a click that ends a selection does not.
 */
class SKestrelStyledText : public SMultiLineEditableText
{
public:
	/**
	 * @param bWrap           at the widget's width, within words too if need be; otherwise lines are as long as they
	 * are
	 * @param AccessibleName  what the text is, for somebody who hears it
	 */
	static TSharedRef<SKestrelStyledText> Make(TArray<FStyledPiece>&& Pieces, bool bWrap, const FText& AccessibleName,
		const FOnKestrelLinkChosen& OnLinkChosen = FOnKestrelLinkChosen());

	virtual FReply OnMouseButtonUp(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent) override;
	virtual FReply OnKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent) override;

private:
	bool ChooseLink(const FVector2D& ScreenPosition) const;

	TSharedPtr<FKestrelStyledText> Styled;
	FOnKestrelLinkChosen OnLinkChosen;
};
