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

std::string GetColorText(const std::string& Components)
{
	double Values[4] = { 0.0, 0.0, 0.0, 1.0 };
	const char* Text = Components.c_str();
	for (double& Value : Values)
	{
		char* End = nullptr;
		const double Read = std::strtod(Text, &End);
		if (End == Text)
		{
			break;
		}
		Value = Read;
		Text = End + (*End == 'f' ? 1 : 0);
		Text += *Text == ',' ? 1 : 0;
	}
	return "(R=" + ToFixed(Values[0]) + ",G=" + ToFixed(Values[1]) + ",B=" + ToFixed(Values[2]) +
		   ",A=" + ToFixed(Values[3]) + ")";
}
}

std::string GetDefaultText(const std::string& Source)
{
	std::string Inside;
	if (TakeCall(Source, "TEXT", Inside))
	{
		return Unquote(Inside);
	}
	if (TakeCall(Source, "FLinearColor", Inside))
	{
		return GetColorText(Inside);
	}
	if (Source == "NAME_None" || Source == "nullptr" || Source == "NULL")
	{
		return "None";
	}
	if (Source == "FString()" || Source == "FName()")
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
