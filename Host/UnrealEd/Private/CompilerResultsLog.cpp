#include "Kismet2/CompilerResultsLog.h"

#include "EdGraph/EdGraphNode.h"
#include "Logging/LogMacros.h"

DEFINE_LOG_CATEGORY_STATIC(LogBlueprint, Log, All);

void FCompilerResultsLog::Error(const FString& Message, UEdGraphNode* Node)
{
	++NumErrors;
	Add(EMessageSeverity::Error, Message, Node);
}

void FCompilerResultsLog::Warning(const FString& Message, UEdGraphNode* Node)
{
	++NumWarnings;
	Add(EMessageSeverity::Warning, Message, Node);
}

void FCompilerResultsLog::Note(const FString& Message, UEdGraphNode* Node)
{
	Add(EMessageSeverity::Info, Message, Node);
}

void FCompilerResultsLog::Add(EMessageSeverity::Type Severity, const FString& Message, UEdGraphNode* Node)
{
	FString Text = Message;
	if (Node)
	{
		const FString Title = Node->GetNodeTitle(ENodeTitleType::ListView).ToString();
		Text = Message.Replace(TEXT("@@"), *Title);
		// The worst of several messages is the one to show.
		if (!Node->bHasCompilerMessage || Severity < Node->ErrorType)
		{
			Node->ErrorMsg = Text;
			Node->ErrorType = Severity;
		}
		Node->bHasCompilerMessage = true;
	}
	Messages.Add(FTokenizedMessage::Create(Severity, FText::FromString(Text)));
	if (bSilentMode)
	{
		return;
	}
	if (Severity == EMessageSeverity::Error)
	{
		UE_LOG(LogBlueprint, Error, TEXT("[Compiler] %s"), *Text);
	}
	else if (Severity == EMessageSeverity::Warning)
	{
		UE_LOG(LogBlueprint, Warning, TEXT("[Compiler] %s"), *Text);
	}
}
