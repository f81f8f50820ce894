#include "PinValueText.h"

#include "EdGraph/EdGraphPin.h"
#include "EdGraphSchema_K2.h"

namespace PinValueText
{
/** Numbers without the zeros behind them: "1.500000" is "1.5". */
FString ShortenNumber(const FString& Text)
{
	if (!Text.Contains(TEXT(".")) || !Text.IsNumeric())
	{
		return Text;
	}
	int32 Length = Text.Len();
	while (Text[Length - 1] == TEXT('0'))
	{
		--Length;
	}
	return Text.Left(Text[Length - 1] == TEXT('.') ? Length - 1 : Length);
}

/** "0.000000,0.000000,90.000000", the form of vectors, as "(0, 0, 90)"; "(R=1.000000)", that of others, as "(R=1)". */
FString ShortenStruct(const FString& Text)
{
	TArray<FString> Parts;
	const bool bBracketed = Text.StartsWith(TEXT("(")) && Text.EndsWith(TEXT(")"));
	(bBracketed ? Text.Mid(1, Text.Len() - 2) : Text).ParseIntoArray(Parts, TEXT(","));
	for (FString& Part : Parts)
	{
		FString Name;
		FString Number = Part.TrimStartAndEnd();
		const bool bNamed = Number.Split(TEXT("="), &Name, &Number);
		Part = (bNamed ? Name + TEXT("=") : FString()) + ShortenNumber(Number);
	}
	return TEXT("(") + FString::Join(Parts, TEXT(", ")) + TEXT(")");
}

FString GetWhole(const UEdGraphPin& Pin)
{
	using K2 = UEdGraphSchema_K2;
	const FName Category = Pin.PinType.PinCategory;
	if (Pin.DefaultObject)
	{
		return Pin.DefaultObject->GetName();
	}
	if (K2::IsSelfPin(Pin))
	{
		return TEXT("self");
	}
	const FString Text = Pin.GetDefaultAsString();
	return Category == K2::PC_Real ? ShortenNumber(Text) : Category == K2::PC_Struct ? ShortenStruct(Text) : Text;
}
}

bool FPinValueText::HasValue(const UEdGraphPin& Pin)
{
	using K2 = UEdGraphSchema_K2;
	const FName Category = Pin.PinType.PinCategory;
	if (Pin.Direction != EGPD_Input || Pin.HasAnyConnections() || K2::IsExecPin(Pin) || Pin.PinType.IsContainer() ||
		Pin.bDefaultValueIsIgnored)
	{
		return false;
	}
	const bool bMayBeEmpty = Category == K2::PC_String || Category == K2::PC_Text || Category == K2::PC_Name;
	return bMayBeEmpty || K2::IsSelfPin(Pin) || Pin.DefaultObject || !Pin.IsDefaultAsStringEmpty();
}

FString FPinValueText::Get(const UEdGraphPin& Pin)
{
	const FString Line = PinValueText::GetWhole(Pin).Replace(TEXT("\n"), TEXT(" "));
	return Line.Len() > MaxLength ? Line.Left(MaxLength - 1) + TEXT("\u2026") : Line;
}
