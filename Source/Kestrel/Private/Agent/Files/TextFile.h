#pragma once

#include "CoreMinimal.h"

/** Text files as they lie on the disk: what reading one as text keeps, and what it would lose. */
namespace KestrelTextFile
{
enum class EContent : uint8
{
	/** Missing, not to be opened, or no ordinary file. */
	Unreadable,
	/** The text says all: written as UTF-8, it is the file again. */
	PlainAscii,
	/** The text says all but the encoding. */
	Text,
	/** There are bytes that the text does not show: NUL, or what is no character. Writing the text would lose them. */
	Binary,
};

/**
 * Reads a file as the engine's text loading does, and tells what that has kept.
 *
 * @param FullPath  absolute
 * @param OutBytes  the file as it is stored
 */
EContent Load(const FString& FullPath, FString& OutText, TArray<uint8>& OutBytes);

/** Whether the bytes are the text, and plain ASCII. Reads both once: files may be large. */
bool IsPlainAsciiOf(const FString& Text, const TArray<uint8>& Bytes);
}
