#pragma once

#include "CoreMinimal.h"

/** What a piece of source code is. */
enum class ECodeToken : uint8
{
	Plain,
	Keyword, // of the language; a key of JSON or INI, a section of INI
	String,
	Number,
	Comment,
	Directive, // of the preprocessor; a decorator of Python
};

/** A part of a text, by UTF-16 units. */
struct FCodePiece
{
	ECodeToken Token = ECodeToken::Plain;
	int32 Begin = 0;
	int32 End = 0;
};

/** Tells the words of source code apart by their spelling; nothing is parsed, so that a fragment is as good as a file.
 */
namespace KestrelCodeHighlight
{
/** UTF-16 units. Longer code is one piece: nobody reads that much of it in an answer. */
constexpr int32 MaxLength = 100000;

/**
 * @param Language  as after the fence of a code block ("cpp", "py"); C++, C, C#, Python, JSON and INI are known
 * @return pieces that follow one another without a gap from the beginning of the code to its end; one piece if the
 *         language is not known or the code is too long
 */
KESTREL_API TArray<FCodePiece> Tokenize(FStringView Code, const FString& Language);
}
