#include "Mcp/McpSecret.h"

#include "Misc/Guid.h"

FString KestrelMcpSecret::Make()
{
	constexpr int32 NumGuids = 2;
	constexpr int32 NumParts = 4; // of a guid, 32 bits each
	constexpr int32 NumDigits = 8;
	constexpr int32 BitsOfDigit = 4;
	FString Text;
	for (int32 Index = 0; Index < NumGuids; ++Index)
	{
		const FGuid Guid = FGuid::NewGuid();
		const uint32 Parts[NumParts] = { Guid.A, Guid.B, Guid.C, Guid.D };
		for (int32 Digit = 0; Digit < NumParts * NumDigits; ++Digit)
		{
			const uint32 Part = Parts[Digit / NumDigits];
			Text.AppendChar(TEXT("0123456789abcdef")[(Part >> (Digit % NumDigits * BitsOfDigit)) & 0xF]);
		}
	}
	return Text;
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
