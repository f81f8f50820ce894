#pragma once

#include "CoreMinimal.h"
#include "Widget/Answer/StyledText.h"
#include "Widget/Markdown/Markdown.h"

/** What the panel shows of Markdown's texts: in their styles, without what never reaches the screen. */
namespace KestrelMarkdownPieces
{
/**
 * The text of a paragraph, heading or cell. Tool names and stray markers for bold text are left out, and addresses and
 * files of the project can be chosen.
 *
 * @param HeadingLevel    0 for ordinary text
 * @param InOutFilesLeft  of the answer, see KestrelLinks
 */
TArray<FStyledPiece> MakeText(const FMarkdownText& Text, int32 HeadingLevel, int32& InOutFilesLeft);
/** Code as it was written, but for characters that would make it read otherwise. */
TArray<FStyledPiece> MakeCode(const FString& Code, const FString& Language);
/** The language beside a block of code. */
FString ShowLanguage(const FString& Language);
}
