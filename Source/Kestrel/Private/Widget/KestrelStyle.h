#pragma once

#include "CoreMinimal.h"

class FSlateStyleSet;
class ISlateStyle;

/** The plugin's icons. Initialising it also brings up the chat interface, which logs and relays from then on. */
class KESTREL_API FKestrelStyle
{
public:
	static void Initialize();
	static void Shutdown();
	/** Asks the renderer to reload the images; does nothing without a Slate application. */
	static void ReloadTextures();

	/** Only between Initialize and Shutdown. */
	static const ISlateStyle& Get();
	static FName GetStyleSetName();

private:
	static TSharedRef<FSlateStyleSet> Create();
	static void SetMarkdownStyles(FSlateStyleSet& Style);

	static TSharedPtr<FSlateStyleSet> StyleInstance;
};
