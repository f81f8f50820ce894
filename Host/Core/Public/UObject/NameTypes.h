#pragma once

#include "Containers/UnrealString.h"

enum EFindName
{
	FNAME_Find, // only a name that exists already, NAME_None otherwise
	FNAME_Add,
};

enum class ENameCase : uint8
{
	CaseSensitive,
	IgnoreCase,
};

enum EName
{
	NAME_None = 0,
};

#define NAME_NO_NUMBER_INTERNAL 0
#define NAME_SIZE 1024

// What names must not have in them: any name, the name of an object, the name of a package.
#define INVALID_NAME_CHARACTERS TEXT("\"' ,\n\r\t")
#define INVALID_OBJECTNAME_CHARACTERS TEXT("\"' ,/.:|&!~\n\r\t@#(){}[]=;^%$`")
#define INVALID_LONGPACKAGE_CHARACTERS TEXT("\\:*?\"<>|' ,.&!~\n\r\t@#")

/**
 * A word of a process-wide table. Comparing two is comparing numbers; letter case is ignored, but each name keeps
 * the case it was made with. A trailing "_7" (no leading zero) is kept as a number.
 */
class FName
{
public:
	constexpr FName() = default;
	constexpr FName(EName) {}
	FName(const TCHAR* Name, EFindName FindType = FNAME_Add)
		: FName(FStringView(Name), FindType)
	{
	}
	FName(const ANSICHAR* Name, EFindName FindType = FNAME_Add);
	explicit FName(FStringView View, EFindName FindType = FNAME_Add);
	explicit FName(const FString& String, EFindName FindType = FNAME_Add)
		: FName(FStringView(String), FindType)
	{
	}
	/** The plain word with a number of its own (internal form: 0 is none, n + 1 shows as "_n"). */
	FName(const FName& Other, int32 InNumber)
		: Comparison(Other.Comparison)
		, Display(Other.Display)
		, Number(InNumber)
	{
	}

	bool IsNone() const { return Comparison == 0 && Number == 0; }
	bool IsValid() const { return true; }
	FString ToString() const;
	void ToString(FString& Out) const { Out = ToString(); }
	void AppendString(FString& Out) const;
	FString GetPlainNameString() const;
	/** A variable's or function's name as a person reads it: "bIsOn" of a bool is "Is On", "UseInMap" "Use in Map". */
	static FString NameToDisplayString(const FString& InDisplayName, const bool bIsBool);
	/** Whether the text has none of the characters. Nothing is said about its length. */
	static bool IsValidXName(const FString& InName, const FString& InInvalidChars);
	int32 GetNumber() const { return Number; }
	void SetNumber(int32 NewNumber) { Number = NewNumber; }

	/** Alphabetical order, ignoring case. */
	bool LexicalLess(const FName& Other) const { return Compare(Other) < 0; }
	/** Some order, the same within a run. */
	bool FastLess(const FName& Other) const
	{
		return Comparison != Other.Comparison ? Comparison < Other.Comparison : Number < Other.Number;
	}
	int32 Compare(const FName& Other) const;
	bool IsEqual(const FName& Other, const ENameCase CompareMethod = ENameCase::IgnoreCase) const
	{
		return *this == Other && (CompareMethod == ENameCase::IgnoreCase || Display == Other.Display);
	}

	friend bool operator==(const FName& A, const FName& B)
	{
		return A.Comparison == B.Comparison && A.Number == B.Number;
	}
	friend bool operator==(const FName& A, EName) { return A.IsNone(); }
	friend bool operator==(const FName& A, const TCHAR* B)
	{
		return FStringView(A.ToString()).Equals(FStringView(B), ESearchCase::IgnoreCase);
	}
	friend uint32 GetTypeHash(const FName& Name)
	{
		return HashCombine(Name.Comparison, static_cast<uint32>(Name.Number));
	}

private:
	uint32 Comparison = 0; // the word, case folded
	uint32 Display = 0;    // the word as it was written
	int32 Number = NAME_NO_NUMBER_INTERNAL;
};

struct FNameLexicalLess
{
	bool operator()(const FName& A, const FName& B) const { return A.LexicalLess(B); }
};

struct FNameFastLess
{
	bool operator()(const FName& A, const FName& B) const { return A.FastLess(B); }
};

inline FString LexToString(const FName& Name)
{
	return Name.ToString();
}
