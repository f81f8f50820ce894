#pragma once

#include "Containers/UnrealString.h"
#include "HAL/FileManager.h"

/** Whole files as texts, lines or bytes. */
struct FFileHelper
{
	enum class EEncodingOptions
	{
		AutoDetect, // plain bytes if every character is below 0x80, otherwise UTF-16 with a byte order mark
		ForceAnsi,
		ForceUnicode,
		ForceUTF8,
		ForceUTF8WithoutBOM,
	};
	enum class EHashOptions
	{
		None,
	};

	static void BufferToString(FString& Result, const uint8* Buffer, int32 Size);
	/**
	 * Reads by mark: UTF-16 of either order, UTF-8 with or without one. Bytes that are no UTF-8 become U+FFFD, text
	 * ends at the first NUL, line endings stay as stored.
	 *
	 * @return false when the file cannot be opened or holds 2^31 bytes or more
	 */
	static bool LoadFileToString(
		FString& Result, const TCHAR* Filename, EHashOptions VerifyFlags = EHashOptions::None, uint32 ReadFlags = 0);
	/** Splits at "\n", "\r" and "\r\n". Blank lines stay; a final line break adds no element. */
	static bool LoadFileToStringArray(
		TArray<FString>& Result, const TCHAR* Filename, EHashOptions VerifyFlags = EHashOptions::None);
	static bool LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 Flags = 0);

	/** Creates missing folders; false on what cannot be written. */
	static bool SaveStringToFile(FStringView String, const TCHAR* Filename,
		EEncodingOptions EncodingOptions = EEncodingOptions::AutoDetect,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
	/** Every line is followed by LINE_TERMINATOR, the last included. */
	static bool SaveStringArrayToFile(const TArray<FString>& Lines, const TCHAR* Filename,
		EEncodingOptions EncodingOptions = EEncodingOptions::AutoDetect,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
	static bool SaveArrayToFile(TArrayView<const uint8> Array, const TCHAR* Filename,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
};
