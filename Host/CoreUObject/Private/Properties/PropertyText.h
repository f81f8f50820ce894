#pragma once

#include "Containers/UnrealString.h"
#include "Templates/Function.h"
#include "UObject/NameTypes.h"
#include "UObject/PropertyPortFlags.h"

/** The small grammar of values as text: words, quoted texts, and lists in round brackets. */
namespace PropertyText
{
FString Quote(const FString& Text);
/** The name if anything is called so; none for one that is too long to be a name. */
FName FindName(const FString& Text);
const TCHAR* SkipBlanks(const TCHAR* Buffer);

/** Reads a text in double quotes. Null when there is none or it does not end. */
const TCHAR* ReadQuoted(const TCHAR* Buffer, FString& OutText);
/** Reads a quoted text, or a word of letters, digits, "_", "-", "+", ":" and ".". Null when there is none. */
const TCHAR* ReadToken(const TCHAR* Buffer, FString& OutText);
/** Reads the path of an object, in any form that ExportText writes: bare, quoted, or Class'Path'. */
const TCHAR* ReadPath(const TCHAR* Buffer, FString& OutPath);
/** "Path" of "Class'Path'", and of the path alone. */
FString StripExportPath(const FString& Text);

/**
 * Reads "(a,b,c)": ReadItem is called at each item and returns where it ends, or null. A comma before the closing
 * bracket is allowed. Null when the list is not well formed.
 */
const TCHAR* ReadList(const TCHAR* Buffer, TFunctionRef<const TCHAR*(const TCHAR*)> ReadItem);
/** Passes one value of a list, whatever it is. */
const TCHAR* SkipValue(const TCHAR* Buffer);
}
