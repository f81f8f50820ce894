#include "BlueprintTestSupport.h"
#include "Editor.h"
#include "Editor/TransBuffer.h"
#include "ScopedTransaction.h"

#include <ctime>

namespace
{
/** One transaction that adds variables and functions to a Blueprint, a call of the engine for each, and its undo. */
class StructuralChangeTest : public BlueprintTest
{
protected:
	struct FSize
	{
		int32 NumVariables;
		int32 NumFunctions;
		int32 NumNodesPerFunction;
	};

	/** Seconds of the processor that it all takes, which other programs' load does not change. */
	static double Measure(const TCHAR* Package, const FSize& Size)
	{
		UBlueprint& Blueprint = *Make(Package);
		const double Start = Now();
		{
			const FScopedTransaction Transaction(FText::FromString(TEXT("Everything")));
			AddVariables(Blueprint, Size.NumVariables);
			AddFunctions(Blueprint, Size);
			EXPECT_EQ(Compile(&Blueprint), BS_UpToDate);
		}
		EXPECT_EQ(Blueprint.NewVariables.Num(), Size.NumVariables);
		EXPECT_TRUE(GEditor->UndoTransaction());
		const double Seconds = Now() - Start;
		EXPECT_EQ(Blueprint.NewVariables.Num(), 0);
		EXPECT_EQ(GetOwnProperties(Blueprint.SkeletonGeneratedClass).size(), 1u) << "its root component";
		return Seconds;
	}

private:
	static double Now() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

	static void AddVariables(UBlueprint& Blueprint, int32 NumVariables)
	{
		const FName Categories[] = { UEdGraphSchema_K2::PC_Int, UEdGraphSchema_K2::PC_String,
			UEdGraphSchema_K2::PC_Boolean };
		for (int32 Index = 0; Index < NumVariables; ++Index)
		{
			EXPECT_TRUE(FBlueprintEditorUtils::AddMemberVariable(
				&Blueprint, FName(*FString::Printf(TEXT("Value%d"), Index)), MakeType(Categories[Index % 3])));
		}
	}

	static void AddFunctions(UBlueprint& Blueprint, const FSize& Size)
	{
		for (int32 Index = 0; Index < Size.NumFunctions; ++Index)
		{
			UEdGraph* const Graph =
				FBlueprintEditorUtils::CreateNewGraph(&Blueprint, FName(*FString::Printf(TEXT("Work%d"), Index)),
					UEdGraph::StaticClass(), UEdGraphSchema_K2::StaticClass());
			FBlueprintEditorUtils::AddFunctionGraph<UClass>(&Blueprint, Graph, true, nullptr);
			Graph->Modify();
			AddNodes(*Graph, Size);
			FBlueprintEditorUtils::MarkBlueprintAsStructurallyModified(&Blueprint);
		}
	}

	/** A chain of prints, each of a variable's value. */
	static void AddNodes(UEdGraph& Graph, const FSize& Size)
	{
		UEdGraphPin* Then = Graph.Nodes[0]->FindPinChecked(UEdGraphSchema_K2::PN_Then);
		for (int32 Index = 0; Index < Size.NumNodesPerFunction / 2; ++Index)
		{
			UK2Node_CallFunction* const Print =
				AddCall(Graph, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
			const int32 TextVariable = (Size.NumVariables / 3 - 1 - Index) * 3 + 1; // each third is a text
			const FString Variable = FString::Printf(TEXT("Value%d"), TextVariable);
			UK2Node_VariableGet* const Get = AddVariableNode<UK2Node_VariableGet>(Graph, *Variable);
			Then->MakeLinkTo(Print->FindPinChecked(UEdGraphSchema_K2::PN_Execute));
			Get->FindPinChecked(FName(*Variable))->MakeLinkTo(Print->FindPinChecked(TEXT("InString")));
			Then = Print->FindPinChecked(UEdGraphSchema_K2::PN_Then);
		}
	}
};

TEST_F(StructuralChangeTest, CostsNoMoreThanItsSizeAsksFor)
{
	Measure(TEXT("/Game/BP_First"), { 50, 10, 20 }); // what is made once
	const double Once = Measure(TEXT("/Game/BP_Once"), { 100, 20, 20 });
	const double EightTimes = Measure(TEXT("/Game/BP_EightTimes"), { 800, 160, 20 });
	// The skeleton that each change asks for is more than linear; what is quadratic throughout would be 64.
	EXPECT_LT(EightTimes, Once * 32.0) << "once: " << Once << " s, eight times: " << EightTimes << " s";
}
}
