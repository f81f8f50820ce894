#pragma once

#include "Containers/Map.h"
#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"

class FName;
class FText;

/** A pattern with "{0}" or "{Name}" placeholders. */
class FTextFormat
{
public:
	FTextFormat(const FText& Pattern);
	static FTextFormat FromString(const FString& Pattern);
	const FString& GetSourceString() const { return Source; }

private:
	FTextFormat() = default;
	FString Source;
};

/** Text that a user reads. It has no ==: two texts with the same letters may differ in identity. */
class FText
{
public:
	FText();
	static const FText& GetEmpty();
	/** Culture-invariant text; not gathered for translation. */
	static FText FromString(const FString& String);
	static FText FromName(const FName& Name);
	static FText AsCultureInvariant(const FString& String) { return FromString(String); }
	static FText AsNumber(int64 Number);

	const FString& ToString() const { return Data->Display; }
	bool IsEmpty() const { return Data->Display.IsEmpty(); }
	bool IsEmptyOrWhitespace() const { return FStringView(Data->Display).TrimStartAndEnd().IsEmpty(); }
	bool IsCultureInvariant() const { return Data->Key.IsEmpty(); }
	bool EqualTo(const FText& Other) const { return Data->Display.Equals(Other.Data->Display); }
	bool EqualToCaseIgnored(const FText& Other) const { return Data->Display == Other.Data->Display; }
	int32 CompareTo(const FText& Other) const { return Data->Display.Compare(Other.Data->Display); }
	bool IdenticalTo(const FText& Other) const { return Data == Other.Data; }

	template <typename... ArgTypes>
	static FText Format(FTextFormat Fmt, ArgTypes... Args)
	{
		const FString Values[] = { ToArgument(Args)..., FString() };
		return FormatOrdered(Fmt, Values, static_cast<int32>(sizeof...(Args)));
	}
	static FText Format(FTextFormat Fmt, const TMap<FString, FText>& NamedArguments);

private:
	friend struct FTextInspector;
	friend FText MakeLocalizableText(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source);

	struct FData
	{
		FString Namespace;
		FString Key; // empty for culture-invariant text
		FString Display;
	};

	explicit FText(TSharedRef<const FData> InData)
		: Data(MoveTemp(InData))
	{
	}
	static FText FormatOrdered(const FTextFormat& Fmt, const FString* Values, int32 NumValues);
	static FString ToArgument(const FText& Text) { return Text.ToString(); }
	template <typename T>
	requires std::is_arithmetic_v<T>
	static FString ToArgument(T Number)
	{
		if constexpr (std::is_integral_v<T>)
		{
			return AsNumber(static_cast<int64>(Number)).ToString();
		}
		return LexToString(static_cast<double>(Number));
	}

	TSharedRef<const FData> Data;
};

using FFormatNamedArguments = TMap<FString, FText>;

/** Looks into a text's identity. */
struct FTextInspector
{
	static const FString* GetSourceString(const FText& Text) { return &Text.Data->Display; }
	static FString GetNamespace(const FText& Text) { return Text.Data->Namespace; }
	static FString GetKey(const FText& Text) { return Text.Data->Key; }
};

FText MakeLocalizableText(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source);

// The arguments are narrow literals: pasting the prefix refuses anything else.
#define NSLOCTEXT(InNamespace, InKey, InTextLiteral)                                                                   \
	MakeLocalizableText(TEXT(InNamespace), TEXT(InKey), TEXT(InTextLiteral))
#define LOCTEXT(InKey, InTextLiteral) NSLOCTEXT(LOCTEXT_NAMESPACE, InKey, InTextLiteral)
#define INVTEXT(InTextLiteral) FText::FromString(TEXT(InTextLiteral))
