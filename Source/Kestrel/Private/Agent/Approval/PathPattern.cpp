#include "Agent/Approval/PathPattern.h"

namespace PathPattern
{
const TCHAR* const AnyFolders = TEXT("**");

/**
 * Matches a row of items with a row of patterns, some of which stand for any number of items. On a mismatch only the
 * last of those is tried with one item more: what an earlier one could take as well makes no difference.
 */
template <typename MatchesType, typename IsAnyType>
bool MatchRow(int32 NumItems, int32 NumPatterns, const MatchesType& Matches, const IsAnyType& IsAny)
{
	int32 Item = 0;
	int32 Pattern = 0;
	int32 LastAny = INDEX_NONE;
	int32 ItemAfterAny = 0;
	while (Item < NumItems)
	{
		if (Pattern < NumPatterns && IsAny(Pattern))
		{
			LastAny = Pattern++;
			ItemAfterAny = Item;
		}
		else if (Pattern < NumPatterns && Matches(Item, Pattern))
		{
			++Item;
			++Pattern;
		}
		else if (LastAny != INDEX_NONE)
		{
			Pattern = LastAny + 1;
			Item = ++ItemAfterAny;
		}
		else
		{
			return false;
		}
	}
	while (Pattern < NumPatterns && IsAny(Pattern))
	{
		++Pattern;
	}
	return Pattern == NumPatterns;
}

bool IsDrive(const FString& Text)
{
	return Text.Len() > 1 && FChar::IsAlpha(Text[0]) && Text[1] == TEXT(':');
}
}

FKestrelPathPattern::FKestrelPathPattern(const FString& Pattern)
{
	FString Text = Pattern.TrimStartAndEnd().Replace(TEXT("\\"), TEXT("/"));
	while (Text.RemoveFromStart(TEXT("./"), ESearchCase::CaseSensitive))
	{
	}
	bIsAbsolute = Text.StartsWith(TEXT("/"), ESearchCase::CaseSensitive) || PathPattern::IsDrive(Text);
	int32 Slash = INDEX_NONE;
	const bool bIsAboutNames = !Text.FindChar(TEXT('/'), Slash);
	const bool bIsFolder = Text.EndsWith(TEXT("/"), ESearchCase::CaseSensitive);
	bMatchesAll = Text.IsEmpty() || Text.Replace(TEXT("*"), TEXT("")).IsEmpty();
	Text.ParseIntoArray(Names, TEXT("/"));
	if (bIsAboutNames && !bMatchesAll)
	{
		Names.Insert(PathPattern::AnyFolders, 0);
	}
	if (bIsFolder)
	{
		Names.Add(PathPattern::AnyFolders);
	}
}

bool FKestrelPathPattern::Matches(const FString& Path) const
{
	if (bMatchesAll)
	{
		return true;
	}
	TArray<FString> PathNames;
	Path.ParseIntoArray(PathNames, TEXT("/"));
	return PathPattern::MatchRow(
		PathNames.Num(), Names.Num(),
		[&](int32 Item, int32 Pattern) { return MatchesName(PathNames[Item], Names[Pattern]); },
		[&](int32 Pattern) { return Names[Pattern].Equals(PathPattern::AnyFolders, ESearchCase::CaseSensitive); });
}

bool FKestrelPathPattern::MatchesName(const FString& Name, const FString& Pattern)
{
	return PathPattern::MatchRow(
		Name.Len(), Pattern.Len(),
		[&](int32 Item, int32 Sign) {
			return Pattern[Sign] == TEXT('?') || FChar::ToLower(Name[Item]) == FChar::ToLower(Pattern[Sign]);
		},
		[&](int32 Sign) { return Pattern[Sign] == TEXT('*'); });
}
