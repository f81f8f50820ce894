#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/TextLayout.h"
#include "Styling/SlateTypes.h"

class SWidget;

/** The layout that a widget hands to its marshaller. */
class FSlateTextLayout final : public FTextLayout
{
public:
	/** @param InOwner  the widget that shows the text, or null */
	static TSharedRef<FSlateTextLayout> Create(SWidget* InOwner, FTextBlockStyle InDefaultTextStyle);

	void SetDefaultTextStyle(FTextBlockStyle InDefaultTextStyle) { DefaultTextStyle = MoveTemp(InDefaultTextStyle); }
	const FTextBlockStyle& GetDefaultTextStyle() const { return DefaultTextStyle; }

private:
	explicit FSlateTextLayout(FTextBlockStyle InDefaultTextStyle);

	FTextBlockStyle DefaultTextStyle;
};
