#include "Mcp/McpSecret.h"

#include "Misc/Guid.h"

FString KestrelMcpSecret::Make()
{
	return FGuid::NewGuid().ToString(EGuidFormats::DigitsLower) + FGuid::NewGuid().ToString(EGuidFormats::DigitsLower);
}

bool KestrelMcpSecret::IsSame(const FString& Expected, const FString& Given)
{
	uint32 Difference = static_cast<uint32>(Expected.Len() ^ Given.Len());
	for (int32 Index = 0; Index < Expected.Len(); ++Index)
	{
		const TCHAR Other = Index < Given.Len() ? Given[Index] : TEXT('\0');
		Difference |= static_cast<uint32>(Expected[Index] ^ Other);
	}
	return Difference == 0 && !Expected.IsEmpty();
}
