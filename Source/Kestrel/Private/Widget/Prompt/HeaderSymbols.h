#pragma once

#include "CoreMinimal.h"

/** Something that a C++ header declares. */
struct FKestrelSymbol
{
	/** A type as "AWarden", a reflected member of it as "AWarden::Wake". */
	FString Name;
	int32 Line = 1; // of its name, from 1
	/** Whether the engine's reflection knows it. */
	bool bIsReflected = false;
};

namespace KestrelHeaderSymbols
{
/** More is generated, and nothing that anybody types. */
constexpr int32 MaxTextLength = 1024 * 1024;
constexpr int32 MaxSymbols = 2000;

/**
 * The classes, structs and enums that a header defines, and functions and properties with UFUNCTION and UPROPERTY, in
 * their order. What is only mentioned, such as a forward declaration, is none; nor is anything in a comment or a
 * string.
 *
 * It reads words and brackets and knows no types and no macros, so it takes the time of one pass, whatever the text is.
 */
KESTREL_API TArray<FKestrelSymbol> Find(const FString& Text);
}
