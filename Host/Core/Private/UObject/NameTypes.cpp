#include "UObject/NameTypes.h"

#include "Containers/Map.h"
#include "Containers/StringConv.h"

#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Names
{
/** Every word ever used, spelt as it was made, with the number of the word that it equals when case is ignored. */
class FNameTable
{
public:
	static FNameTable& Get()
	{
		// Never destroyed: names are used by static objects of every module.
		static FNameTable* Table = new FNameTable;
		return *Table;
	}

	bool Find(FStringView Text, EFindName FindType, uint32& OutComparison, uint32& OutDisplay)
	{
		const std::lock_guard Lock(Mutex);
		const std::u16string_view Spelling(Text.GetData(), static_cast<size_t>(Text.Len()));
		const auto Known = BySpelling.find(Spelling);
		if (Known == BySpelling.end())
		{
			return AddSpelling(Spelling, FindType, OutComparison, OutDisplay);
		}
		OutDisplay = Known->second;
		OutComparison = GetEntry(OutDisplay).Comparison;
		return true;
	}

	/** Takes no lock: names turn into text all the time, and an entry never changes once its number is known. */
	FStringView GetText(uint32 Display) const
	{
		const std::u16string& Text = GetEntry(Display).Text;
		return FStringView(Text.data(), static_cast<int32>(Text.size()));
	}

private:
	struct FEntry
	{
		std::u16string Text;
		uint32 Comparison = 0;
	};
	static constexpr uint32 EntriesPerBlock = 1024;
	static constexpr uint32 MaxBlocks = 16 * 1024; // sixteen million names

	FNameTable()
	{
		uint32 Comparison = 0;
		uint32 Display = 0;
		AddSpelling(u"None", FNAME_Add, Comparison, Display);
	}

	/** A spelling that is new, be it of a word that is known. */
	bool AddSpelling(std::u16string_view Spelling, EFindName FindType, uint32& OutComparison, uint32& OutDisplay)
	{
		std::u16string Folded(Spelling);
		for (TCHAR& C : Folded)
		{
			C = FChar::ToLower(C);
		}
		const auto Known = ByFolded.find(Folded);
		if (Known == ByFolded.end() && FindType == FNAME_Find)
		{
			return false;
		}
		OutDisplay = NumEntries;
		OutComparison = Known == ByFolded.end() ? NumEntries : Known->second;
		FEntry& Entry = GetBlock(NumEntries / EntriesPerBlock)[NumEntries % EntriesPerBlock];
		Entry = { std::u16string(Spelling), OutComparison };
		BySpelling.emplace(Entry.Text, NumEntries);
		ByFolded.emplace(std::move(Folded), NumEntries);
		++NumEntries;
		return true;
	}

	const FEntry& GetEntry(uint32 Display) const
	{
		return Blocks[Display / EntriesPerBlock].load(std::memory_order_acquire)[Display % EntriesPerBlock];
	}

	FEntry* GetBlock(uint32 Block)
	{
		checkf(Block < MaxBlocks, TEXT("There are more than %u names"), MaxBlocks * EntriesPerBlock);
		if (!Blocks[Block].load(std::memory_order_relaxed))
		{
			Blocks[Block].store(new FEntry[EntriesPerBlock], std::memory_order_release);
		}
		return Blocks[Block].load(std::memory_order_relaxed);
	}

	std::mutex Mutex;
	std::atomic<FEntry*> Blocks[MaxBlocks] = {}; // entries keep their place
	uint32 NumEntries = 0;
	std::unordered_map<std::u16string_view, uint32> BySpelling; // of the entries' texts
	std::unordered_map<std::u16string, uint32> ByFolded;
};

constexpr int32 LongestNumberSuffix = 9;

/** "Foo_3" to "Foo" and 3. "Foo_03", "_3" and numbers past 32 bits are left alone. */
int32 SplitNumber(FStringView& Text)
{
	int32 Underscore = INDEX_NONE;
	if (!Text.FindLastChar(u'_', Underscore) || Underscore == 0)
	{
		return NAME_NO_NUMBER_INTERNAL;
	}
	const FStringView Digits = Text.Mid(Underscore + 1);
	if (Digits.IsEmpty() || Digits.Len() > LongestNumberSuffix || (Digits.Len() > 1 && Digits[0] == u'0'))
	{
		return NAME_NO_NUMBER_INTERNAL;
	}
	int32 Number = 0;
	for (const TCHAR C : Digits)
	{
		if (!FChar::IsDigit(C))
		{
			return NAME_NO_NUMBER_INTERNAL;
		}
		Number = Number * 10 + (C - u'0');
	}
	Text = Text.Left(Underscore);
	return Number + 1;
}
}

FName::FName(const ANSICHAR* Name, EFindName FindType)
	: FName(FStringView(FString(Name)), FindType)
{
}

FName::FName(FStringView View, EFindName FindType)
{
	checkf(View.Len() < NAME_SIZE, TEXT("A name of %d characters is too long; the most are %d"), View.Len(),
		NAME_SIZE - 1);
	if (View.IsEmpty())
	{
		return;
	}
	Number = Names::SplitNumber(View);
	if (!Names::FNameTable::Get().Find(View, FindType, Comparison, Display))
	{
		*this = FName();
	}
}

FString FName::GetPlainNameString() const
{
	return FString(Names::FNameTable::Get().GetText(Display));
}

FString FName::ToString() const
{
	FString Text;
	AppendString(Text);
	return Text;
}

void FName::AppendString(FString& Out) const
{
	Out.Append(Names::FNameTable::Get().GetText(Display));
	if (Number != NAME_NO_NUMBER_INTERNAL)
	{
		Out.AppendChar(u'_');
		Out.AppendInt(Number - 1);
	}
}

int32 FName::Compare(const FName& Other) const
{
	if (Comparison == Other.Comparison)
	{
		return Number - Other.Number;
	}
	Names::FNameTable& Table = Names::FNameTable::Get();
	return Table.GetText(Comparison).Compare(Table.GetText(Other.Comparison), ESearchCase::IgnoreCase);
}

namespace Names
{
bool IsUpper(TCHAR C)
{
	return C >= u'A' && C <= u'Z';
}

bool IsLower(TCHAR C)
{
	return C >= u'a' && C <= u'z';
}

TCHAR ToUpper(TCHAR C)
{
	return IsLower(C) ? static_cast<TCHAR>(C - u'a' + u'A') : C;
}

TCHAR ToLower(TCHAR C)
{
	return IsUpper(C) ? static_cast<TCHAR>(C - u'A' + u'a') : C;
}

/** Whether a small word, written without a capital inside a title, starts at the place. */
bool StartsWithSmallWord(FStringView Text)
{
	static const FStringView SmallWords[] = { TEXT("In"), TEXT("As"), TEXT("To"), TEXT("Or"), TEXT("At"), TEXT("On"),
		TEXT("If"), TEXT("Be"), TEXT("By"), TEXT("The"), TEXT("For"), TEXT("And"), TEXT("With"), TEXT("When"),
		TEXT("From") };
	for (const FStringView Word : SmallWords)
	{
		if (Text.Left(Word.Len()).Equals(Word) && (Text.Len() == Word.Len() || !IsLower(Text[Word.Len()])))
		{
			return true;
		}
	}
	return false;
}
}

bool FName::IsValidXName(const FString& InName, const FString& InInvalidChars)
{
	for (const TCHAR C : InName)
	{
		if (FStringView(InInvalidChars).Contains(FStringView(&C, 1)))
		{
			return false;
		}
	}
	return true;
}

FString FName::NameToDisplayString(const FString& InDisplayName, const bool bIsBool)
{
	FStringView Name(InDisplayName);
	if (bIsBool && Name.Len() > 1 && Name[0] == u'b' && Names::IsUpper(Name[1]))
	{
		Name = Name.RightChop(1);
	}

	FString Result;
	bool bInRun = false; // of capitals and digits, which stay together
	for (int32 Index = 0; Index < Name.Len(); ++Index)
	{
		TCHAR C = Name[Index];
		if (C == u'_')
		{
			Result += Result.IsEmpty() ? TEXT("") : TEXT(" ");
			bInRun = true;
			continue;
		}
		if ((Names::IsUpper(C) || FChar::IsDigit(C)) && !bInRun)
		{
			Result += Result.IsEmpty() || Result.EndsWith(TEXT(" ")) ? TEXT("") : TEXT(" ");
			bInRun = true;
		}
		bInRun &= !Names::IsLower(C);

		if (Result.IsEmpty())
		{
			C = Names::ToUpper(C);
		}
		else if (Result.EndsWith(TEXT(" ")))
		{
			C = Names::StartsWithSmallWord(Name.RightChop(Index)) ? Names::ToLower(C) : Names::ToUpper(C);
		}
		Result += C;
	}
	return Result;
}
