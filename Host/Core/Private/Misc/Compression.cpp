#include "Misc/Compression.h"

#include "CoreGlobals.h"
#include "Misc/AssertionMacros.h"

#include <zlib.h>

namespace Compression
{
void CheckFormat(FName FormatName)
{
	checkf(FormatName == NAME_Zlib, TEXT("Only Zlib is at hand here, not %s"), *FormatName.ToString());
}
}

int32 FCompression::CompressMemoryBound(FName FormatName, int32 UncompressedSize, ECompressionFlags, int32)
{
	Compression::CheckFormat(FormatName);
	return static_cast<int32>(::compressBound(static_cast<uLong>(UncompressedSize)));
}

bool FCompression::CompressMemory(FName FormatName, void* CompressedBuffer, int32& CompressedSize,
	const void* UncompressedBuffer, int32 UncompressedSize, ECompressionFlags, int32)
{
	Compression::CheckFormat(FormatName);
	uLongf Size = static_cast<uLongf>(CompressedSize);
	const int Result = ::compress(static_cast<Bytef*>(CompressedBuffer), &Size,
		static_cast<const Bytef*>(UncompressedBuffer), static_cast<uLong>(UncompressedSize));
	CompressedSize = static_cast<int32>(Size);
	return Result == Z_OK;
}

bool FCompression::UncompressMemory(FName FormatName, void* UncompressedBuffer, int32 UncompressedSize,
	const void* CompressedBuffer, int32 CompressedSize, ECompressionFlags, int32)
{
	Compression::CheckFormat(FormatName);
	uLongf Size = static_cast<uLongf>(UncompressedSize);
	const int Result = ::uncompress(static_cast<Bytef*>(UncompressedBuffer), &Size,
		static_cast<const Bytef*>(CompressedBuffer), static_cast<uLong>(CompressedSize));
	const bool bWhole = Result == Z_OK && Size == static_cast<uLongf>(UncompressedSize);
	UE_CLOG(!bWhole, LogCore, Warning, TEXT("Compressed data is damaged, or not of the size that was given"));
	return bWhole;
}
