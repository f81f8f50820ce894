#include "Agent/Agent.h"
#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Agent/FileHistory.h"
#include "Agent/History/UndoPreview.h"
#include "EdGraphSchema_K2.h"
#include "Editor.h"
#include "Editor/EditorEngine.h"
#include "Editor/Transactor.h"
#include "Engine/Blueprint.h"
#include "Kismet2/BlueprintEditorUtils.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "ScopedTransaction.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "UObject/Package.h"

namespace TransactionUndoTest
{
const FString Conversation = TEXT("undo-test");

void AddVariable(UBlueprint& Blueprint, const FString& Title, const TCHAR* Variable)
{
	const FScopedTransaction Transaction(FText::FromString(Title));
	FBlueprintEditorUtils::AddMemberVariable(&Blueprint, Variable, KestrelTest::MakePinType(UEdGraphSchema_K2::PC_Int));
}

FString GetVariables(const UBlueprint& Blueprint)
{
	FString Names;
	for (const FBPVariableDescription& Variable : Blueprint.NewVariables)
	{
		Names += Variable.VarName.ToString() + TEXT(" ");
	}
	return Names;
}
}

DEFINE_SPEC(FKestrelTransactionUndoSpec, "Kestrel.TransactionUndo", KestrelTest::Flags)
void FKestrelTransactionUndoSpec::Define()
{
	using namespace TransactionUndoTest;

	BeforeEach([]() {
		GEditor->ResetTransaction(FText());
		FAgent::Get().SetUndoConversationID(Conversation);
		FAgent::Get().SetRedoConversationID(FString());
	});

	AfterEach([]() {
		GEditor->ResetTransaction(FText());
		FAgent::Get().SetUndoConversationID(FString());
		FAgent::Get().SetRedoConversationID(FString());
		FAgent::Get().ClearToolResults();
	});

	It("undoes the conversation's transaction and all that came after it, and saves", [this]() {
		const FKestrelTestContent Content;
		const FKestrelPanelRecorder Recorder;
		UBlueprint& Blueprint = *Content.CreateBlueprint(TEXT("BP_Undo"));
		FKestrelBlueprintUtils::SaveBlueprint(&Blueprint);
		const FKestrelInterface& Interface = FKestrelInterface::Get();
		TestFalse(TEXT("nothing to undo"), Interface.CanUndo());
		AddVariable(Blueprint, TEXT("Before"), TEXT("Early"));
		AddVariable(Blueprint, GetKestrelTransactionName(Conversation), TEXT("Ours"));
		AddVariable(Blueprint, GetKestrelTransactionName(TEXT("UNDO-TEST")), TEXT("Others"));
		AddVariable(Blueprint, TEXT("By hand"), TEXT("Late"));
		TestTrue(TEXT("can undo"), Interface.CanUndo());
		KestrelTest::TestSameText(
			*this, TEXT("touches"), Interface.PreviewUndo().Describe().ToString(), TEXT("1 step in the editor"));
		KestrelTest::TestSameText(*this, TEXT("touches of others"), Interface.PreviewUndo().DescribeOthers().ToString(),
			TEXT("2 later steps in the editor that you or others made go with them: By hand, Kestrel Transaction "
				 "UNDO-TEST."));

		FKestrelInterface::Get().UndoLastOperation();
		KestrelTest::TestSameText(*this, TEXT("variables"), GetVariables(Blueprint), TEXT("Early "));
		TestFalse(TEXT("saved"), Blueprint.GetOutermost()->IsDirty());
		FString Text;
		FFileHelper::LoadFileToString(Text, *Content.GetFile(TEXT("BP_Undo")));
		TestTrue(TEXT("in the file"), Text.Contains(TEXT("Early")) && !Text.Contains(TEXT("Ours")));
		TestTrue(TEXT("said"), Recorder.Hints.Contains(TEXT("Undone: 1 step in the editor.")) &&
								   Recorder.Hints.Contains(TEXT("With them 2 later steps of others.")));
		TestFalse(TEXT("undone, and not to be made again"), Interface.CanUndo() || Interface.CanRedo());
		TestEqual(TEXT("undone entries stay"), GEditor->Trans->GetUndoCount(), 3);
	});

	It("leaves everything alone when the user has undone the transaction by hand", [this]() {
		const FKestrelTestContent Content;
		const FKestrelPanelRecorder Recorder;
		UBlueprint& Blueprint = *Content.CreateBlueprint(TEXT("BP_Undo"));
		AddVariable(Blueprint, TEXT("Before"), TEXT("Early"));
		AddVariable(Blueprint, GetKestrelTransactionName(Conversation), TEXT("Ours"));
		GEditor->UndoTransaction();
		TestFalse(TEXT("found"),
			FKestrelInterface::Get().UndoUntilLastTransactionByName(GetKestrelTransactionName(Conversation)));
		KestrelTest::TestSameText(*this, TEXT("variables"), GetVariables(Blueprint), TEXT("Early "));
	});

	It("lets files be made again only when nothing in the editor was undone with them", [this]() {
		const FKestrelTestFolder Folder;
		const FKestrelTestContent Content;
		const FKestrelPanelRecorder Recorder;
		UBlueprint& Blueprint = *Content.CreateBlueprint(TEXT("BP_Undo"));
		const FString File = Folder.Full(TEXT("a.txt"));
		for (const bool bWithBlueprint : { false, true })
		{
			Folder.Write(TEXT("a.txt"), TEXT("old"));
			FAgent::Get().SetUndoConversationID(Conversation);
			const FString Before = FAgent::Get().GetConversationId();
			FAgent::Get().SetConversationId(Conversation);
			KestrelTest::UseTool(TEXT("create_file"), { TEXT("path"), File, TEXT("file_text"), TEXT("new") });
			FAgent::Get().SetConversationId(Before);
			if (bWithBlueprint)
			{
				AddVariable(Blueprint, GetKestrelTransactionName(Conversation), TEXT("Ours"));
			}
			FKestrelInterface::Get().UndoLastOperation();
			FString Text;
			FFileHelper::LoadFileToString(Text, *File);
			KestrelTest::TestSameText(*this, TEXT("file"), Text, TEXT("old"));
			TestEqual(TEXT("redo"), FKestrelInterface::Get().CanRedo(), !bWithBlueprint);
			FFileHistory::Get().RedoAllChanges(Conversation);
			FFileHistory::Get().UndoAllChanges(Conversation);
		}
	});
}
