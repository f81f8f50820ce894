#include "Widget/HiddenTexts.h"

#include "Agent/Tools/ToolTable.h"

namespace KestrelHiddenTexts
{
namespace
{
// Names of tools that this version does not have; the service's texts may still mention them.
const TCHAR* const NamesOfOtherTools[] = { TEXT("modify_blueprint"), TEXT("modify_behavior_tree"),
	TEXT("get_blueprint_subset_by_keywords"), TEXT("get_blueprint_summary") };
const TCHAR* const BoldMarker = TEXT("**");

/** A name may have been in two parts, with a marker in between. */
constexpr int32 NumPasses = 2;

TMap<FString, FString> MakeToolNames()
{
	TMap<FString, FString> Texts;
	for (const FKestrelTool& Tool : KestrelTools::GetAll())
	{
		if (Tool.NameInPanel == EKestrelNameInPanel::Hidden)
		{
			Texts.Add(Tool.WireName, FString());
		}
	}
	for (const TCHAR* Name : NamesOfOtherTools)
	{
		Texts.Add(Name, FString());
	}
	return Texts;
}

const TMap<FString, FString>& GetToolNames()
{
	static const TMap<FString, FString> Names = MakeToolNames();
	return Names;
}

bool IsCode(const FMarkdownSpan& Span)
{
	return EnumHasAnyFlags(Span.Style, EMarkdownStyle::Code);
}

/** Where a text stands in the spans' texts as one, from the first on. */
TArray<int32> FindPlaces(const FMarkdownText& Text, const FString& Hidden, bool bInCode)
{
	FString Joined;
	for (const FMarkdownSpan& Span : Text)
	{
		// What is not looked at parts what stands beside it.
		Joined += bInCode || !IsCode(Span) ? Span.Text : FString::ChrN(Span.Text.Len(), TEXT('\n'));
	}
	TArray<int32> Places;
	for (int32 Found = Joined.Find(Hidden); Found != INDEX_NONE;
		 Found = Joined.Find(Hidden, ESearchCase::IgnoreCase, ESearchDir::FromStart, Found + Hidden.Len()))
	{
		Places.Add(Found);
	}
	return Places;
}

/** Removes a text that may begin in one span and end in another. */
void RemoveFrom(FMarkdownText& Text, const FString& Hidden, bool bInCode)
{
	const TArray<int32> Places = FindPlaces(Text, Hidden, bInCode);
	if (Places.IsEmpty())
	{
		return;
	}
	int32 Place = 0; // of Places, the one that Index has not passed
	int32 Index = 0;
	for (FMarkdownSpan& Span : Text)
	{
		FString Kept;
		for (const TCHAR Character : Span.Text)
		{
			Place += Place < Places.Num() && Index >= Places[Place] + Hidden.Len() ? 1 : 0;
			if (Place == Places.Num() || Index < Places[Place])
			{
				Kept.AppendChar(Character);
			}
			++Index;
		}
		Span.Text = MoveTemp(Kept);
	}
}
}

FString Replace(const FString& Text, const TMap<FString, FString>& Replacements)
{
	FString Result = Text;
	for (const auto& Pair : Replacements)
	{
		Result.ReplaceInline(*Pair.Key, *Pair.Value);
	}
	return Result;
}

FString Remove(const FString& Message)
{
	static const TMap<FString, FString> Hidden = []() {
		TMap<FString, FString> Texts = GetToolNames();
		Texts.Add(BoldMarker, FString());
		return Texts;
	}();
	FString Shown = Message;
	for (int32 Pass = 0; Pass < NumPasses; ++Pass)
	{
		Shown = Replace(Shown, Hidden);
	}
	return Shown;
}

FMarkdownText Remove(const FMarkdownText& Text)
{
	FMarkdownText Shown = Text;
	for (int32 Pass = 0; Pass < NumPasses; ++Pass)
	{
		for (const auto& Pair : GetToolNames())
		{
			RemoveFrom(Shown, Pair.Key, true);
		}
		RemoveFrom(Shown, BoldMarker, false);
	}
	Shown.RemoveAll([](const FMarkdownSpan& Span) { return Span.Text.IsEmpty(); });
	return Shown;
}
}
