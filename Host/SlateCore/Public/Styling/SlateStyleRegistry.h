#pragma once

#include "CoreMinimal.h"

class ISlateStyle;

/** The style sets of the process by name. It does not own them: a set is unregistered before it is destroyed. */
class FSlateStyleRegistry
{
public:
	/** Asserts that there is no set of this name. If there is a renderer, it loads the set's images. */
	static void RegisterSlateStyle(const ISlateStyle& InSlateStyle);
	static void UnRegisterSlateStyle(const ISlateStyle& InSlateStyle);
	/** No effect for an unknown name. */
	static void UnRegisterSlateStyle(const FName InSlateStyleName);
	static const ISlateStyle* FindSlateStyle(const FName& InSlateStyleName);
	/** Iteration ends when the function returns false. */
	static void IterateAllStyles(const TFunction<bool(const ISlateStyle&)>& IteratorFunction);
};
