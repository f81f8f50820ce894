#pragma once

#include "UObject/NameTypes.h"

enum ECompressionFlags
{
	COMPRESS_NoFlags = 0,
};

inline const FName NAME_Zlib("Zlib");

struct FCompression
{
	/** How large the result of CompressMemory can become, in bytes. */
	static int32 CompressMemoryBound(FName FormatName, int32 UncompressedSize,
		ECompressionFlags Flags = COMPRESS_NoFlags, int32 CompressionData = 0);
	/** @param CompressedSize  the buffer's size, then the result's, which may be larger than the source; bytes */
	static bool CompressMemory(FName FormatName, void* CompressedBuffer, int32& CompressedSize,
		const void* UncompressedBuffer, int32 UncompressedSize, ECompressionFlags Flags = COMPRESS_NoFlags,
		int32 CompressionData = 0);
	/** @param UncompressedSize  the original's exact size, in bytes; another one is a failure */
	static bool UncompressMemory(FName FormatName, void* UncompressedBuffer, int32 UncompressedSize,
		const void* CompressedBuffer, int32 CompressedSize, ECompressionFlags Flags = COMPRESS_NoFlags,
		int32 CompressionData = 0);
};
