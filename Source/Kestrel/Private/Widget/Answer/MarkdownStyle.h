#pragma once

#include "CoreMinimal.h"
#include "Styling/SlateTypes.h"
#include "Widget/Markdown/CodeHighlight.h"
#include "Widget/Markdown/Markdown.h"

/** The text styles of formatted answers, from the colours of the plugin's style set and the user's size of text. */
namespace KestrelMarkdownStyle
{
/** @param HeadingLevel  0 for ordinary text */
FTextBlockStyle MakeTextStyle(EMarkdownStyle Style, bool bLink, int32 HeadingLevel = 0);
FTextBlockStyle MakeCodeStyle(ECodeToken Token);
/** For what stands beside a text: the language of code, a button. */
FTextBlockStyle MakeSmallStyle();
}
