#include "Agent/Blueprints/Assets/BlueprintCompileLog.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EdGraph/EdGraph.h"
#include "EdGraph/EdGraphNode.h"
#include "Engine/Blueprint.h"
#include "Kismet2/CompilerResultsLog.h"
#include "Kismet2/KismetEditorUtilities.h"
#include "Logging/TokenizedMessage.h"
#include "UObject/StrongObjectPtr.h"

namespace BlueprintCompileLog
{
using FValues = TArray<TSharedPtr<FJsonValue>>;

constexpr int32 MaxMessages = 100; // of each kind: more are mostly consequences

/** The nodes that the compile said something about. */
TArray<const UEdGraphNode*> FindMarkedNodes(const UBlueprint& Blueprint)
{
	TArray<UEdGraph*> Graphs;
	Blueprint.GetAllGraphs(Graphs);
	TArray<const UEdGraphNode*> Marked;
	for (const UEdGraph* Graph : Graphs)
	{
		for (const UEdGraphNode* Node : Graph->Nodes)
		{
			if (Node && Node->bHasCompilerMessage)
			{
				Marked.Add(Node);
			}
		}
	}
	return Marked;
}

/** A node shows the messages about it, which do not name it otherwise. */
TSharedRef<FJsonObject> Describe(const FString& Message, const TArray<const UEdGraphNode*>& Marked)
{
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	const UEdGraphNode* const* Node = Marked.FindByPredicate(
		[&Message](const UEdGraphNode* Each) { return Each->ErrorMsg.Contains(Message, ESearchCase::CaseSensitive); });
	if (Node)
	{
		Object->SetStringField(TEXT("Graph"), (*Node)->GetGraph()->GetName());
		Object->SetStringField(TEXT("Node"), (*Node)->GetNodeTitle(ENodeTitleType::FullTitle).ToString());
	}
	Object->SetStringField(TEXT("Message"), Message);
	return Object;
}

void Add(const FCompilerResultsLog& Log, bool bErrors, const TCHAR* Field, const TArray<const UEdGraphNode*>& Marked,
	FJsonObject& OutMessages)
{
	FValues Values;
	for (const TSharedRef<FTokenizedMessage>& Message : Log.Messages)
	{
		const EMessageSeverity::Type Severity = Message->GetSeverity();
		const bool bWanted =
			bErrors ? Severity <= EMessageSeverity::Error
					: Severity == EMessageSeverity::Warning || Severity == EMessageSeverity::PerformanceWarning;
		if (bWanted && Values.Num() < MaxMessages)
		{
			Values.Add(MakeShared<FJsonValueObject>(Describe(Message->ToText().ToString(), Marked)));
		}
	}
	if (!Values.IsEmpty())
	{
		OutMessages.SetArrayField(Field, Values);
	}
}
}

void KestrelBlueprintCompileLog::Compile(UBlueprint& Blueprint, FJsonObject& OutMessages)
{
	const TStrongObjectPtr<UBlueprint> Kept(&Blueprint); // compiling collects garbage
	FCompilerResultsLog Log;
	FKismetEditorUtilities::CompileBlueprint(&Blueprint, EBlueprintCompileOptions::None, &Log);
	const TArray<const UEdGraphNode*> Marked = BlueprintCompileLog::FindMarkedNodes(Blueprint);
	BlueprintCompileLog::Add(Log, true, TEXT("CompileErrors"), Marked, OutMessages);
	BlueprintCompileLog::Add(Log, false, TEXT("CompileWarnings"), Marked, OutMessages);
}
