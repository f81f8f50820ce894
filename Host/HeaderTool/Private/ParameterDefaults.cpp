#include "ParameterDefaults.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{
/** True, and the inside, for "Name(inside)". */
bool TakeCall(const std::string& Source, const std::string& Name, std::string& Inside)
{
	if (!Source.starts_with(Name + "(") || !Source.ends_with(")"))
	{
		return false;
	}
	Inside = Source.substr(Name.size() + 1, Source.size() - Name.size() - 2);
	return true;
}

std::string Unquote(const std::string& Text)
{
	const bool bQuoted = Text.size() >= 2 && Text.starts_with('"') && Text.ends_with('"');
	return bQuoted ? Text.substr(1, Text.size() - 2) : Text;
}

std::string ToFixed(double Value)
{
	char Text[64];
	std::snprintf(Text, sizeof(Text), "%f", Value);
	return Text;
}

bool IsFloatingPoint(const std::string& Source)
{
	return Source.find('.') != std::string::npos && Source.find_first_not_of("+-.0123456789f") == std::string::npos;
}

/** The numbers of "1,-2.5f,3"; none when anything else is among them. */
std::vector<double> ReadNumbers(const std::string& Components)
{
	std::vector<double> Numbers;
	for (const char* Text = Components.c_str(); *Text;)
	{
		char* End = nullptr;
		Numbers.push_back(std::strtod(Text, &End));
		const char* const Next = End + (End != Text && *End == 'f' ? 1 : 0);
		if (End == Text || (*Next && *Next != ','))
		{
			return {};
		}
		Text = Next + (*Next ? 1 : 0);
	}
	return Numbers;
}

/** How a struct's value is written: a label before each number. */
struct FStructFormat
{
	const char* Struct;
	std::vector<const char*> Labels;
	const char* End;
};

const FStructFormat StructFormats[] = {
	{ "FVector", { "", ",", "," }, "" },
	{ "FRotator", { "", ",", "," }, "" },
	{ "FVector2D", { "(X=", ",Y=" }, ")" },
	{ "FLinearColor", { "(R=", ",G=", ",B=", ",A=" }, ")" },
};

/** False for what is no struct that pins have a form for, made of numbers. */
bool GetStructText(const std::string& Source, std::string& OutText)
{
	std::string Inside;
	for (const FStructFormat& Format : StructFormats)
	{
		if (!TakeCall(Source, Format.Struct, Inside))
		{
			continue;
		}
		std::vector<double> Numbers = ReadNumbers(Inside);
		if (Numbers.size() == 3 && Format.Labels.size() == 4)
		{
			Numbers.push_back(1.0); // a colour is opaque
		}
		if (Numbers.size() != Format.Labels.size())
		{
			return false;
		}
		OutText.clear();
		for (size_t Index = 0; Index < Numbers.size(); ++Index)
		{
			OutText += Format.Labels[Index] + ToFixed(Numbers[Index]);
		}
		OutText += Format.End;
		return true;
	}
	return false;
}
}

std::string GetDefaultText(const std::string& Source)
{
	std::string Inside;
	if (TakeCall(Source, "TEXT", Inside) || TakeCall(Source, "INVTEXT", Inside))
	{
		return Unquote(Inside);
	}
	if (std::string StructText; GetStructText(Source, StructText))
	{
		return StructText;
	}
	if (Source == "NAME_None" || Source == "nullptr" || Source == "NULL")
	{
		return "None";
	}
	if (Source == "FString()" || Source == "FName()" || Source == "FText()" || Source == "FText::GetEmpty()")
	{
		return "";
	}
	if (Source == "FVector(ForceInit)" || Source == "FVector::ZeroVector" || Source == "FRotator::ZeroRotator")
	{
		return "0, 0, 0";
	}
	if (IsFloatingPoint(Source))
	{
		return ToFixed(std::strtod(Source.c_str(), nullptr));
	}
	const size_t Scope = Source.rfind("::");
	return Scope == std::string::npos || Source.ends_with(')') ? Unquote(Source) : Source.substr(Scope + 2);
}
