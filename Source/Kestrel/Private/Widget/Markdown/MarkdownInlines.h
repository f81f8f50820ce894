#pragma once

#include "CoreMinimal.h"
#include "Widget/Markdown/Markdown.h"

namespace KestrelMarkdown
{
/** Reads what stands in a paragraph, a heading or a cell; its lines have no indentation. */
FMarkdownText ReadInlines(FStringView Source);

/** A text in which "\" before punctuation stands for the mark itself, and entities ("&amp;") for their characters. */
FString Unescape(FStringView Source);
}
