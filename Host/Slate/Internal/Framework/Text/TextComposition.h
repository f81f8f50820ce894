#pragma once

#include "CoreMinimal.h"
#include "Layout/SlateRect.h"

/** A text that shows what an input method composes, until it is typed. */
class ITextCompositionTarget
{
public:
	virtual ~ITextCompositionTarget() = default;

	/**
	 * Shows an unfinished text at the cursor, in the place of the one before. An empty one ends: what the user has
	 * chosen comes as typed characters.
	 *
	 * @param CursorOffset  in UTF-16 units of Text
	 */
	virtual void SetComposition(const FString& Text, int32 CursorOffset) = 0;
	/** Where the cursor is seen, in absolute space: the input method shows its choices below. */
	virtual FSlateRect GetCursorRect() const = 0;
};
