#include "RequestParser.h"

#include <gtest/gtest.h>

namespace
{
std::string ListParameters(const std::vector<Plain::Parameter>& Parameters)
{
	std::string Text;
	for (const Plain::Parameter& Each : Parameters)
	{
		Text += " " + Each.Name + ":" + Each.Type;
	}
	return Text;
}

/** A letter and what belongs to it, for each kind. */
struct Describer
{
	std::string operator()(const Plain::ReadFile& R) const
	{
		return "R " + R.Path +
			   (R.Lines ? " " + std::to_string(R.Lines->First) + " " + std::to_string(R.Lines->Last) : "");
	}
	std::string operator()(const Plain::ListFolder& R) const { return "L " + R.Path; }
	std::string operator()(const Plain::CreateFile& R) const { return "C " + R.Path + " [" + R.Text + "]"; }
	std::string operator()(const Plain::ReplaceText& R) const
	{
		return "X " + R.Path + " [" + R.Old + "] [" + R.New + "]";
	}
	std::string operator()(const Plain::InsertLine& R) const
	{
		return "I " + R.Path + " " + std::to_string(R.LineNumber) + " [" + R.Text + "]";
	}
	std::string operator()(const Plain::DeleteFile& R) const { return "D " + R.Path; }
	std::string operator()(const Plain::RunPython& R) const { return "P [" + R.Code + "]"; }
	std::string operator()(const Plain::Compile&) const { return "B"; }
	std::string operator()(const Plain::FindText& R) const { return "? [" + R.Text + "]"; }
	std::string operator()(const Plain::ReadBlueprint& R) const { return "RB " + R.Name + " " + R.Section; }
	std::string operator()(const Plain::CreateBlueprint& R) const
	{
		return "CB " + R.Name + " " + R.ParentClass + " " + R.Folder;
	}
	std::string operator()(const Plain::SaveBlueprints&) const { return "SB"; }
	std::string operator()(const Plain::ReadBehaviorTree& R) const { return "RT " + R.Name; }
	std::string operator()(const Plain::AddVariable& R) const
	{
		return "AV " + R.Blueprint + " " + R.Name + " " + R.Type + " [" + R.Value + "]" +
			   (R.bReplicated ? " replicated" : "");
	}
	std::string operator()(const Plain::AddFunction& R) const
	{
		return "AF " + R.Blueprint + " " + R.Name + ListParameters(R.Inputs) + " ->" + ListParameters(R.Outputs);
	}
	std::string operator()(const Plain::AddPrintNode& R) const
	{
		return "AP " + R.Blueprint + " " + R.Function + " [" + R.Text + "]";
	}
	std::string operator()(const Plain::PlacePrintNode& R) const { return "PP " + R.Blueprint; }
	std::string operator()(const Plain::Finish&) const { return "F"; }
};

std::string Describe(const std::string& Text)
{
	std::string Result;
	for (const PlainRequest& Request : ParsePlainRequests(Text))
	{
		Result += (Result.empty() ? "" : "; ") + std::visit(Describer(), Request);
	}
	return Result;
}
}

TEST(PlainRequestTest, UnderstandsShortRequests)
{
	struct FCase
	{
		const char* Text;
		const char* Expected;
	};
	const FCase Cases[] = {
		{ "read Source/Player.h", "R Source/Player.h" },
		{ "Please READ the file Source/Player.h.", "R Source/Player.h" },
		{ "show me lines 5-12 of Config/DefaultGame.ini", "R Config/DefaultGame.ini 5 12" },
		{ "read Player.h lines 5 to 12", "R Player.h 5 12" },
		{ "read line 7 of Player.h", "R Player.h 7 7" },
		{ "read Player.h lines 30-", "R Player.h 30 -1" },
		{ "read A.h and B.h, then C.cpp", "R A.h; R B.h; R C.cpp" },
		{ "read \"My Notes/to do\"", "R My Notes/to do" },
		{ "look at Source/", "L Source/" },
		{ "list the files", "L " },
		{ "list the files in Source", "L Source" },
		{ "which files are in the project?", "L " },
		{ "show the tree of Source/Game", "L Source/Game" },
		{ "finish", "F" },
		{ "read blueprint BP_Gate", "RB BP_Gate All" },
		{ "Show the VARIABLES of blueprint BP_Gate.", "RB BP_Gate Variables" },
		{ "create blueprint BP_Gate", "CB BP_Gate Actor /Game" },
		{ "create a blueprint named BP_Gate from Pawn in /Game/Doors", "CB BP_Gate Pawn /Game/Doors" },
		{ "save and compile all blueprints", "SB" },
		{ "find save in all files", "? [save]" },
		{ "run python: show = 1 # of blueprint BP_Gate", "P [show = 1 # of blueprint BP_Gate]" },
		{ "read behaviour tree BT_Gate", "RT BT_Gate" },
		{ "add an int variable Health to BP_Gate with value 100", "AV BP_Gate Health int [100]" },
		{ "add a vector variable Spot to BP_Gate, with value 1,2.5,3", "AV BP_Gate Spot vector [1,2.5,3]" },
		{ "Please add a replicated variable called Names of type string[] to the blueprint BP_Gate.",
			"AV BP_Gate Names string[] [] replicated" },
		{ "add variable Health to BP_Gate", "" },
		{ "add function Heal to blueprint BP_Gate", "AF BP_Gate Heal ->" },
		{ "add a function Heal with inputs Amount int, Who: actor and output Done bool to BP_Gate",
			"AF BP_Gate Heal Amount:int Who:actor -> Done:bool" },
		{ "add a print node to function Heal of BP_Gate saying \"Up and well\"", "AP BP_Gate Heal [Up and well]" },
		{ "create Docs/A.md with \"# One\\n\\ttwo \\\"three\\\"\"", "C Docs/A.md [# One\n\ttwo \"three\"]" },
		{ "please create a file Docs/A.md", "C Docs/A.md []" },
		{ "replace foo with bar in A.h", "X A.h [foo] [bar]" },
		{ "replace \"float Walk = 3.0f;\" with \"with care\" in Source/A.h",
			"X Source/A.h [float Walk = 3.0f;] [with care]" },
		{ "replace foo with bar", "" },
		{ "insert \"; note\" at line 3 of A.ini", "I A.ini 3 [; note]" },
		{ "delete A.h and B.h", "D A.h; D B.h" },
		{ "delete everything", "" },
		{ "compile the game", "B" },
		{ "find Health", "? [Health]" },
		{ "where is \"Take Damage\" used?", "? [Take Damage]" },
		{ "run python: print('a, b')", "P [print('a, b')]" },
		{ "run python \"print(1)\\nprint(2)\"", "P [print(1)\nprint(2)]" },
		{ "run this script\n```python\nx = 1\nprint(x)\n```\nthanks", "P [x = 1\nprint(x)\n]" },
		{ "read the build log Build/Nightly.ini", "R Build/Nightly.ini" },
		{ "make me a coffee", "" },
		{ "read the newspaper", "" },
		{ "", "" },
	};
	for (const FCase& Case : Cases)
	{
		EXPECT_EQ(Describe(Case.Text), Case.Expected) << Case.Text;
	}
}

TEST(PlainRequestTest, OddTextsAreHarmless)
{
	EXPECT_EQ(Describe("read lines 99999999999-5 of A.h"), "R A.h");
	EXPECT_EQ(Describe(std::string(1 << 20, '"')), "");
	EXPECT_EQ(Describe("read \"unclosed.h"), "R unclosed.h");
	EXPECT_EQ(Describe("create \"A.h\" with \"ends in \\"), "C A.h [ends in \\]");
	EXPECT_EQ(Describe("run python"), "");
}
