#pragma once

#include "CoreMinimal.h"
#include "Widget/Markdown/MarkdownBlock.h"

/**
 * Reads Markdown: CommonMark 0.30 without HTML, references and addresses of mail, and with tables and strikethrough.
 * What is left out is text like any other. There is no Markdown that is wrong.
 *
 * The result is flat, each block with the containers around it, so that depth costs nobody a stack. Time and memory
 * grow with the text and not faster, and what exceeds the limits below is text without markers.
 */
namespace KestrelMarkdown
{
KESTREL_API TArray<FMarkdownBlock> Read(FStringView Source);
}
