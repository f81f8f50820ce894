#pragma once

#include "Containers/UnrealString.h"
#include "Logging/TokenizedMessage.h"

class UEdGraphNode;

/** What a compile says. A message about a node is shown on the node as well. */
class UNREALED_API FCompilerResultsLog
{
public:
	/** Whether messages are kept from the editor's log. */
	bool bSilentMode = false;
	int32 NumErrors = 0;
	int32 NumWarnings = 0;
	TArray<TSharedRef<FTokenizedMessage>> Messages;

	/** "@@" in the text stands for the node's title. */
	void Error(const FString& Message, UEdGraphNode* Node = nullptr);
	void Warning(const FString& Message, UEdGraphNode* Node = nullptr);
	void Note(const FString& Message, UEdGraphNode* Node = nullptr);

private:
	void Add(EMessageSeverity::Type Severity, const FString& Message, UEdGraphNode* Node);
};
