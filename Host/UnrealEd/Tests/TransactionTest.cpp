#include "BlueprintTestSupport.h"
#include "Editor.h"
#include "Editor/TransBuffer.h"
#include "ScopedTransaction.h"

namespace
{
class TransactionTest : public BlueprintTest
{
protected:
	TransactionTest() { GetBuffer().Reset(FText()); }
	~TransactionTest() override { GetBuffer().Reset(FText()); }

	static UTransBuffer& GetBuffer() { return *CastChecked<UTransBuffer>(GEditor->Trans.Get()); }
	static FText Title(const TCHAR* Text) { return FText::FromString(Text); }

	/** The titles from the oldest on; what was undone stands behind a bar. */
	static std::string GetTitles()
	{
		std::string Titles;
		for (int32 Index = 0; Index < GetBuffer().GetQueueLength(); ++Index)
		{
			const bool bFirstUndone = Index == GetBuffer().GetQueueLength() - GetBuffer().GetUndoCount();
			Titles += bFirstUndone ? "| " : "";
			Titles += ToUtf8(GetBuffer().GetTransaction(Index)->GetTitle().ToString()) + " ";
		}
		return Titles;
	}

	/** The name of the first variable, as the change that a transaction makes. */
	static void SetComment(UBlueprint& Blueprint, const TCHAR* Comment)
	{
		Blueprint.Modify();
		Blueprint.BlueprintDescription = Comment;
	}

	static std::string SaveAndRead(UBlueprint* Blueprint)
	{
		EXPECT_TRUE(Save(Blueprint));
		return ToUtf8(ReadFile(Blueprint->GetOutermost()->GetName()));
	}
};

TEST_F(TransactionTest, KeepsTheOutermostTitleAndDropsWhatIsEmpty)
{
	UBlueprint& Blueprint = *Make(TEXT("/Game/BP_T"));
	{
		const FScopedTransaction Outer(Title(TEXT("Outer")));
		EXPECT_FALSE(GetBuffer().CanUndo()) << "one is open";
		EXPECT_FALSE(GEditor->UndoTransaction());
		const FScopedTransaction Inner(Title(TEXT("Inner")));
		SetComment(Blueprint, TEXT("one"));
	}
	EXPECT_EQ(GetTitles(), "Outer ");
	{
		const FScopedTransaction Nothing(Title(TEXT("Nothing")));
	}
	{
		const FScopedTransaction Equal(Title(TEXT("Equal")));
		SetComment(Blueprint, TEXT("two"));
		Blueprint.BlueprintDescription = TEXT("one");
	}
	{
		const FScopedTransaction NotModified(Title(TEXT("NotModified")));
		Blueprint.BlueprintDescription = TEXT("three");
	}
	EXPECT_EQ(GetTitles(), "Outer ");
	{
		FScopedTransaction Cancelled(Title(TEXT("Cancelled")));
		SetComment(Blueprint, TEXT("four"));
		Cancelled.Cancel();
		EXPECT_FALSE(Cancelled.IsOutstanding());
	}
	EXPECT_EQ(GetTitles(), "Outer ");
	EXPECT_EQ(ToUtf8(Blueprint.BlueprintDescription), "four") << "cancelling does not undo";
}

TEST_F(TransactionTest, UndoneEntriesStayUntilSomethingNewIsDone)
{
	UBlueprint& Blueprint = *Make(TEXT("/Game/BP_T"));
	for (const TCHAR* Each : { TEXT("A"), TEXT("B"), TEXT("C") })
	{
		const FScopedTransaction Transaction(Title(Each));
		SetComment(Blueprint, Each);
	}
	Blueprint.GetOutermost()->SetDirtyFlag(false);
	EXPECT_TRUE(GEditor->UndoTransaction());
	EXPECT_TRUE(GEditor->UndoTransaction());
	EXPECT_EQ(GetTitles(), "A | B C ");
	EXPECT_EQ(ToUtf8(Blueprint.BlueprintDescription), "A");
	EXPECT_TRUE(Blueprint.GetOutermost()->IsDirty());
	EXPECT_EQ(ToUtf8(GetBuffer().GetUndoContext().Title.ToString()), "A");
	EXPECT_EQ(ToUtf8(GetBuffer().GetRedoContext().Title.ToString()), "B");
	{
		const FScopedTransaction Nothing(Title(TEXT("Nothing")));
	}
	EXPECT_EQ(GetTitles(), "A | B C ") << "an empty transaction changes nothing";
	EXPECT_TRUE(GEditor->RedoTransaction());
	EXPECT_EQ(ToUtf8(Blueprint.BlueprintDescription), "B");
	{
		const FScopedTransaction Transaction(Title(TEXT("D")));
		SetComment(Blueprint, TEXT("D"));
	}
	EXPECT_EQ(GetTitles(), "A B D ");
	EXPECT_FALSE(GEditor->RedoTransaction());
	GetBuffer().MaxMemory = 1;
	{
		const FScopedTransaction Transaction(Title(TEXT("E")));
		SetComment(Blueprint, TEXT("E"));
	}
	EXPECT_EQ(GetTitles(), "E ") << "the oldest are given up, the last never";
	GetBuffer().MaxMemory = 256 * 1024 * 1024;
	while (GEditor->UndoTransaction())
	{
	}
	EXPECT_EQ(ToUtf8(GetBuffer().GetUndoContext().Title.ToString()), "Nothing to undo");
}

TEST_F(TransactionTest, PinsOfAFunctionGoOnlyIfItsEntryWasToBeModified)
{
	UBlueprint& Blueprint = *Make(TEXT("/Game/BP_T"));
	const auto CountAfterUndo = [&Blueprint](const TCHAR* Function, bool bModify) {
		UK2Node_EditablePinBase& Entry = *FBlueprintEditorUtils::GetEntryNode(AddFunction(&Blueprint, Function, true));
		GetBuffer().Reset(FText());
		{
			const FScopedTransaction Transaction(Title(TEXT("Add")));
			bModify ? Entry.Modify() : false;
			Entry.CreateUserDefinedPin(TEXT("Count"), MakeType(UEdGraphSchema_K2::PC_Int), EGPD_Output);
		}
		EXPECT_TRUE(GEditor->UndoTransaction());
		return Entry.UserDefinedPins.Num();
	};
	EXPECT_EQ(CountAfterUndo(TEXT("Announced"), true), 0);
	EXPECT_EQ(CountAfterUndo(TEXT("Unannounced"), false), 1);
}

TEST_F(TransactionTest, ABlueprintIsAsItWasToTheByte)
{
	UBlueprint& Blueprint = *Make(TEXT("/Game/BP_T"), ACharacter::StaticClass());
	FBlueprintEditorUtils::AddMemberVariable(&Blueprint, TEXT("Old"), MakeType(UEdGraphSchema_K2::PC_Int), TEXT("3"));
	UEdGraph& Page = *Blueprint.UbergraphPages[0];
	UEdGraphNode* const First = AddCall(Page, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	Page.Nodes[0]->FindPin(TEXT("then"))->MakeLinkTo(First->FindPin(TEXT("execute")));
	Compile(&Blueprint);
	const std::string Before = SaveAndRead(&Blueprint);
	{
		const FScopedTransaction Transaction(Title(TEXT("Change")));
		FBlueprintEditorUtils::AddMemberVariable(
			&Blueprint, TEXT("New"), MakeType(UEdGraphSchema_K2::PC_String), TEXT("text"));
		UEdGraph* const Function = AddFunction(&Blueprint, TEXT("Measure"), false);
		UK2Node_EditablePinBase* const Entry = FBlueprintEditorUtils::GetEntryNode(Function);
		Entry->CreateUserDefinedPin(TEXT("Count"), MakeType(UEdGraphSchema_K2::PC_Int), EGPD_Output);
		FBlueprintEditorUtils::FindOrCreateFunctionResultNode(Entry)->CreateUserDefinedPin(
			TEXT("Total"), MakeType(UEdGraphSchema_K2::PC_Int), EGPD_Input);
		Page.Modify();
		UEdGraphNode* const Second = AddCall(Page, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
		First->FindPin(TEXT("then"))->MakeLinkTo(Second->FindPin(TEXT("execute")));
		UEdGraphNode* const Get = AddVariableNode<UK2Node_VariableGet>(Page, TEXT("New"));
		Get->FindPin(TEXT("New"))->MakeLinkTo(First->FindPin(TEXT("InString")));
		First->Modify();
		First->FindPin(TEXT("Duration"))->DefaultValue = TEXT("7.0");
		Compile(&Blueprint);
		UObject* const Defaults = Blueprint.GeneratedClass->GetDefaultObject();
		Defaults->Modify();
		FindFProperty<FIntProperty>(Defaults->GetClass(), TEXT("Old"))->SetPropertyValue_InContainer(Defaults, 44);
		Compile(&Blueprint);
	}
	EXPECT_EQ(Blueprint.Status, BS_UpToDate);
	const std::string After = SaveAndRead(&Blueprint);
	EXPECT_NE(Before, After);

	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_FALSE(Blueprint.SkeletonGeneratedClass->FindPropertyByName(TEXT("New"))) << "the skeleton has followed";
	Compile(&Blueprint);
	EXPECT_EQ(Blueprint.Status, BS_UpToDate);
	EXPECT_EQ(SaveAndRead(&Blueprint), Before);
	EXPECT_FALSE(FindObjectFast<UEdGraph>(&Blueprint, TEXT("Measure"))) << "the name is free again";

	ASSERT_TRUE(GEditor->RedoTransaction());
	Compile(&Blueprint);
	EXPECT_EQ(SaveAndRead(&Blueprint), After);
	ASSERT_TRUE(GEditor->UndoTransaction());
	Compile(&Blueprint);
	EXPECT_EQ(SaveAndRead(&Blueprint), Before);
}

TEST_F(TransactionTest, RemovedNodesComeBackWithTheirLinks)
{
	UBlueprint& Blueprint = *Make(TEXT("/Game/BP_T"));
	UEdGraph& Page = *Blueprint.UbergraphPages[0];
	UEdGraphNode* const Print = AddCall(Page, UKismetSystemLibrary::StaticClass(), TEXT("PrintString"));
	Page.Nodes[0]->FindPin(TEXT("then"))->MakeLinkTo(Print->FindPin(TEXT("execute")));
	const std::string Before = SaveAndRead(&Blueprint);
	{
		const FScopedTransaction Transaction(Title(TEXT("Remove")));
		FBlueprintEditorUtils::RemoveNode(&Blueprint, Print);
	}
	EXPECT_EQ(Page.Nodes[0]->FindPin(TEXT("then"))->LinkedTo.Num(), 0);
	CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	ASSERT_TRUE(GEditor->UndoTransaction());
	ASSERT_EQ(Page.Nodes[0]->FindPin(TEXT("then"))->LinkedTo.Num(), 1);
	EXPECT_EQ(Page.Nodes[0]->FindPin(TEXT("then"))->LinkedTo[0]->GetOwningNode(), Print);
	EXPECT_EQ(SaveAndRead(&Blueprint), Before);
}
}
