#pragma once

#include "CoreMinimal.h"
#include "Widget/Markdown/MarkdownBlock.h"

namespace KestrelMarkdown
{
/** Reads what stands in a paragraph, a heading or a cell; its lines have no indentation. */
FMarkdownText ReadInlines(FStringView Source);
}
