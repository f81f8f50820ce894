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

/** A second time, since a name may have been in two parts with a marker in between. */
FString RemoveAll(const FString& Text, const TMap<FString, FString>& Hidden)
{
	const FString Once = Replace(Text, Hidden);
	return Once.Len() < Text.Len() ? Replace(Once, Hidden) : Once;
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
		TMap<FString, FString> Texts = MakeToolNames();
		Texts.Add(BoldMarker, FString());
		return Texts;
	}();
	return RemoveAll(Message, Hidden);
}

FString RemoveToolNames(const FString& Code)
{
	static const TMap<FString, FString> Hidden = MakeToolNames();
	return RemoveAll(Code, Hidden);
}
}
