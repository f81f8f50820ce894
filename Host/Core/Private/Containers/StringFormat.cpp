#include "Containers/StringConv.h"
#include "Containers/UnrealString.h"

#include <cstdarg>
#include <cstdio>
#include <string>

// The C library has no Printf for UTF-16, so texts are laid out here and numbers are handed to snprintf.
namespace StringFormat
{
struct FSpecifier
{
	std::string Flags;
	int32 Width = 0;
	int32 Precision = -1; // none given
	int32 NumH = 0;
	int32 NumL = 0;
	bool bSize = false;
	TCHAR Conversion = 0;

	bool IsLeftAligned() const { return Flags.find('-') != std::string::npos; }
	bool Is64Bit() const { return NumL > 0 || bSize; }
};

int32 ParseNumber(const TCHAR*& At, va_list Args)
{
	if (*At == u'*')
	{
		++At;
		return va_arg(Args, int32);
	}
	int32 Number = 0;
	while (FChar::IsDigit(*At))
	{
		Number = Number * 10 + (*At++ - u'0');
	}
	return Number;
}

struct FArguments
{
	va_list List;
};

FSpecifier ParseSpecifier(const TCHAR*& At, FArguments& Args)
{
	FSpecifier Specifier;
	for (; *At == u'-' || *At == u'+' || *At == u' ' || *At == u'#' || *At == u'0'; ++At)
	{
		Specifier.Flags += static_cast<char>(*At);
	}
	Specifier.Width = ParseNumber(At, Args.List);
	if (Specifier.Width < 0)
	{
		Specifier.Flags += '-';
		Specifier.Width = -Specifier.Width;
	}
	if (*At == u'.')
	{
		++At;
		Specifier.Precision = ParseNumber(At, Args.List);
	}
	for (;; ++At)
	{
		Specifier.NumH += *At == u'h';
		Specifier.NumL += *At == u'l';
		const bool bSizeModifier = *At == u'z' || *At == u't' || *At == u'j';
		Specifier.bSize |= bSizeModifier;
		if (*At != u'h' && *At != u'l' && !bSizeModifier)
		{
			break;
		}
	}
	Specifier.Conversion = *At++;
	return Specifier;
}

template <typename ValueType>
void AppendNumber(FString& Out, const FSpecifier& Specifier, const char* Modifier, ValueType Value)
{
	std::string Format = "%" + Specifier.Flags;
	Format += Specifier.Width > 0 ? std::to_string(Specifier.Width) : "";
	Format += Specifier.Precision >= 0 ? "." + std::to_string(Specifier.Precision) : "";
	Format += Modifier;
	Format += static_cast<char>(Specifier.Conversion);

	const int Length = std::snprintf(nullptr, 0, Format.c_str(), Value);
	std::string Buffer(static_cast<size_t>(Length) + 1, '\0');
	std::snprintf(Buffer.data(), Buffer.size(), Format.c_str(), Value);
	for (int Index = 0; Index < Length; ++Index)
	{
		Out.AppendChar(static_cast<TCHAR>(static_cast<unsigned char>(Buffer[static_cast<size_t>(Index)])));
	}
}

void AppendText(FString& Out, const FSpecifier& Specifier, FStringView Text)
{
	if (Specifier.Precision >= 0)
	{
		Text = Text.Left(Specifier.Precision);
	}
	const FString Padding = FString::ChrN(FMath::Max(0, Specifier.Width - Text.Len()), u' ');
	if (!Specifier.IsLeftAligned())
	{
		Out += Padding;
	}
	Out += Text;
	if (Specifier.IsLeftAligned())
	{
		Out += Padding;
	}
}

void AppendTextArgument(FString& Out, const FSpecifier& Specifier, FArguments& Args)
{
	if (Specifier.NumH > 0)
	{
		const char* Narrow = va_arg(Args.List, const char*);
		const FUTF8ToTCHAR Wide(Narrow ? Narrow : "(null)");
		AppendText(Out, Specifier, FStringView(Wide.Get(), Wide.Length()));
		return;
	}
	const TCHAR* Text = va_arg(Args.List, const TCHAR*);
	AppendText(Out, Specifier, FStringView(Text ? Text : TEXT("(null)")));
}

void AppendArgument(FString& Out, const FSpecifier& Specifier, FArguments& Args)
{
	switch (Specifier.Conversion)
	{
	case u's':
	case u'S':
		AppendTextArgument(Out, Specifier, Args);
		break;
	case u'c':
	{
		const TCHAR C = static_cast<TCHAR>(va_arg(Args.List, int));
		AppendText(Out, Specifier, FStringView(&C, 1));
		break;
	}
	case u'd':
	case u'i':
		Specifier.Is64Bit() ? AppendNumber(Out, Specifier, "ll", va_arg(Args.List, long long))
							: AppendNumber(Out, Specifier, "", va_arg(Args.List, int));
		break;
	case u'p':
		AppendNumber(Out, Specifier, "", va_arg(Args.List, void*));
		break;
	case u'f':
	case u'F':
	case u'g':
	case u'G':
	case u'e':
	case u'E':
		AppendNumber(Out, Specifier, "", va_arg(Args.List, double));
		break;
	default:
		Specifier.Is64Bit() ? AppendNumber(Out, Specifier, "ll", va_arg(Args.List, unsigned long long))
							: AppendNumber(Out, Specifier, "", va_arg(Args.List, unsigned int));
		break;
	}
}
}

FString FString::PrintfVImpl(const TCHAR* Format, va_list Args)
{
	StringFormat::FArguments Arguments;
	va_copy(Arguments.List, Args);
	FString Out;
	for (const TCHAR* At = Format; *At;)
	{
		const TCHAR* LiteralEnd = At;
		while (*LiteralEnd && *LiteralEnd != u'%')
		{
			++LiteralEnd;
		}
		Out += FStringView(At, static_cast<int32>(LiteralEnd - At));
		At = LiteralEnd;
		if (!*At)
		{
			break;
		}
		if (*++At == u'%')
		{
			Out.AppendChar(*At++);
			continue;
		}
		const StringFormat::FSpecifier Specifier = StringFormat::ParseSpecifier(At, Arguments);
		StringFormat::AppendArgument(Out, Specifier, Arguments);
	}
	va_end(Arguments.List);
	return Out;
}

FString FString::PrintfImpl(const TCHAR* Format, ...)
{
	va_list Args;
	va_start(Args, Format);
	FString Result = PrintfVImpl(Format, Args);
	va_end(Args);
	return Result;
}
