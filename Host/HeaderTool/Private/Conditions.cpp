#include "Conditions.h"

#include <algorithm>

namespace
{
/** A branch of an #if, with what its #else is. */
struct FBranch
{
	bool bSkipped = false;
	bool bElseSkipped = false;
	ECondition Condition = ECondition::None;
	ECondition ElseCondition = ECondition::None;
};

std::string FirstWord(std::string& Text)
{
	const size_t End = std::min(Text.find_first_of(" \t\"<(!"), Text.size());
	const std::string Word = Text.substr(0, End);
	const size_t Rest = Text.find_first_not_of(" \t", End);
	Text = Rest == std::string::npos ? "" : Text.substr(Rest);
	return Word;
}

FBranch EvaluateIf(const std::string& Expression)
{
	if (Expression == "WITH_EDITOR")
	{
		return { false, false, ECondition::Editor, ECondition::Unknown };
	}
	if (Expression == "WITH_EDITORONLY_DATA")
	{
		return { false, false, ECondition::EditorOnlyData, ECondition::Unknown };
	}
	if (Expression == "0" || Expression == "CPP")
	{
		return { true, false };
	}
	if (Expression == "1" || Expression == "!CPP")
	{
		return { false, true };
	}
	return { false, false, ECondition::Unknown, ECondition::Unknown };
}

void ApplyDirective(std::string Text, int Line, FSource& Source, std::vector<FBranch>& Branches)
{
	const std::string Word = FirstWord(Text);
	if (Word == "include" && Text.size() > 2)
	{
		Source.Includes.push_back({ Text.substr(1, Text.size() - 2), Line });
	}
	else if (Word == "if")
	{
		Branches.push_back(EvaluateIf(Text));
	}
	else if (Word == "ifdef" || Word == "ifndef")
	{
		Branches.push_back({ false, false, ECondition::Unknown, ECondition::Unknown });
	}
	else if (!Branches.empty() && (Word == "else" || Word == "elif"))
	{
		FBranch& Branch = Branches.back();
		Branch.bSkipped = Branch.bElseSkipped;
		Branch.Condition = Word == "else" ? Branch.ElseCondition : ECondition::Unknown;
	}
	else if (!Branches.empty() && Word == "endif")
	{
		Branches.pop_back();
	}
}

ECondition Combine(const std::vector<FBranch>& Branches)
{
	ECondition Result = ECondition::None;
	for (const FBranch& Branch : Branches)
	{
		Result = std::max(Result, Branch.Condition);
	}
	return Result;
}
}

FSource ResolveConditions(const std::vector<FToken>& Tokens)
{
	FSource Source;
	std::vector<FBranch> Branches;
	for (const FToken& Token : Tokens)
	{
		const bool bSkipped =
			std::any_of(Branches.begin(), Branches.end(), [](const FBranch& Branch) { return Branch.bSkipped; });
		if (Token.Kind == ETokenKind::Directive)
		{
			ApplyDirective(Token.Text, Token.Line, Source, Branches);
		}
		else if (!bSkipped || Token.Kind == ETokenKind::End)
		{
			Source.Tokens.push_back({ Token, Combine(Branches) });
		}
	}
	return Source;
}
