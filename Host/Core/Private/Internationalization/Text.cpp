#include "Internationalization/Text.h"

#include "UObject/NameTypes.h"

FTextFormat::FTextFormat(const FText& Pattern)
	: Source(Pattern.ToString())
{
}

FTextFormat FTextFormat::FromString(const FString& Pattern)
{
	FTextFormat Format;
	Format.Source = Pattern;
	return Format;
}

FText::FText()
	: Data(GetEmpty().Data)
{
}

const FText& FText::GetEmpty()
{
	static const FText Empty(MakeShared<const FData>());
	return Empty;
}

FText FText::FromString(const FString& String)
{
	return FText(MakeShared<const FData>(FData{ FString(), FString(), String }));
}

FText FText::FromName(const FName& Name)
{
	return FromString(Name.ToString());
}

FText FText::AsNumber(int64 Number)
{
	FString Digits = FString::Printf(TEXT("%lld"), Number);
	constexpr int32 GroupSize = 3;
	const int32 FirstDigit = Number < 0 ? 1 : 0;
	for (int32 At = Digits.Len() - GroupSize; At > FirstDigit; At -= GroupSize)
	{
		Digits.InsertAt(At, u',');
	}
	return FromString(Digits);
}

namespace TextFormat
{
/**
 * "|plural(one=place,other=places)" behind a number, by the rules of English.
 *
 * @param Modifier  what follows the number's closing brace
 * @return how many characters of it were taken; 0 when it is no such modifier
 */
int32 ApplyPlural(FStringView Modifier, FString& InOutValue)
{
	const FStringView Opening = TEXT("|plural(");
	const int32 Close = Modifier.Find(TEXT(")"), 0, ESearchCase::CaseSensitive);
	if (!Modifier.StartsWith(Opening, ESearchCase::CaseSensitive) || Close == INDEX_NONE)
	{
		return 0;
	}
	const FString Wanted = InOutValue.Equals(TEXT("1")) ? TEXT("one") : TEXT("other");
	TArray<FString> Forms;
	FString(Modifier.Mid(Opening.Len(), Close - Opening.Len())).ParseIntoArray(Forms, TEXT(","));
	for (const FString& Form : Forms)
	{
		FString Name;
		FString Text;
		if (Form.Split(TEXT("="), &Name, &Text) && Name.TrimStartAndEnd().Equals(Wanted))
		{
			InOutValue = Text;
		}
	}
	return Close + 1;
}

/** Replaces each "{Name}" by what Resolve answers; a name that it does not know stays. "`" escapes the next character.
 */
template <typename ResolveType>
FString Substitute(const FString& Pattern, ResolveType&& Resolve)
{
	FString Result;
	for (int32 Index = 0; Index < Pattern.Len(); ++Index)
	{
		const TCHAR C = Pattern[Index];
		if (C == u'`' && Index + 1 < Pattern.Len())
		{
			Result.AppendChar(Pattern[++Index]);
			continue;
		}
		const int32 Close =
			C == u'{' ? Pattern.Find(FStringView(TEXT("}")), ESearchCase::CaseSensitive, ESearchDir::FromStart, Index)
					  : INDEX_NONE;
		FString Value;
		if (Close == INDEX_NONE || !Resolve(Pattern.Mid(Index + 1, Close - Index - 1), Value))
		{
			Result.AppendChar(C);
			continue;
		}
		Index = Close + ApplyPlural(FStringView(Pattern).Mid(Close + 1), Value);
		Result += Value;
	}
	return Result;
}
}

FText FText::FormatOrdered(const FTextFormat& Fmt, const FString* Values, int32 NumValues)
{
	return FromString(TextFormat::Substitute(Fmt.GetSourceString(), [&](const FString& Name, FString& OutValue) {
		const int32 Index = Name.IsNumeric() ? FCString::Atoi(*Name) : INDEX_NONE;
		if (Index < 0 || Index >= NumValues)
		{
			return false;
		}
		OutValue = Values[Index];
		return true;
	}));
}

FText FText::Format(FTextFormat Fmt, const FFormatNamedArguments& NamedArguments)
{
	return FromString(TextFormat::Substitute(Fmt.GetSourceString(), [&](const FString& Name, FString& OutValue) {
		const FText* Value = NamedArguments.Find(Name);
		if (Value)
		{
			OutValue = Value->ToString();
		}
		return Value != nullptr;
	}));
}

FText MakeLocalizableText(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source)
{
	return FText(MakeShared<const FText::FData>(FText::FData{ Namespace, Key, Source }));
}
