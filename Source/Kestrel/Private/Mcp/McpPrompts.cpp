#include "Mcp/McpPrompts.h"

#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"

namespace McpPrompts
{
struct FArgument
{
	const TCHAR* Name;
	const TCHAR* Description;
	bool bRequired;
};

struct FPrompt
{
	const TCHAR* Name;
	const TCHAR* Title;
	const TCHAR* Description;
	TArray<FArgument> Arguments;
	/** With "{name}" for each argument. */
	const TCHAR* Text;
};

const TArray<FPrompt>& GetAll()
{
	static const TArray<FPrompt> Prompts = {
		{ TEXT("review_blueprint"), TEXT("Review this Blueprint"), TEXT("Looks for mistakes in a Blueprint."),
			{ { TEXT("blueprint_name"), TEXT("The Blueprint's short name, such as BP_Door."), true } },
			TEXT(
				"Review the Blueprint {blueprint_name} of this Unreal project. Read it with read_blueprint (data_subset "
				"\"All\") and look for the places that use it with find_reference_in_all_files. Report errors first: nodes "
				"that are not connected, variables that nothing reads, functions that can fail, work done each tick. Then "
				"say what to simplify. Change nothing without being asked.") },
		{ TEXT("explain_compile_error"), TEXT("Explain this compile error"),
			TEXT("Finds the cause of an error of the C++ compiler."),
			{ { TEXT("error"), TEXT("The compiler's message; without it, the last compile's output."), false } },
			TEXT(
				"Explain this compile error of an Unreal project, and how to mend it: {error}\nIf no message is given, read "
				"the resource kestrel://compile/output, or call compile. Read the files that are named, say in a few "
				"sentences what is wrong and why, and propose the smallest change. Make it only when asked to.") },
		{ TEXT("add_cpp_class"), TEXT("Add a tested C++ class"), TEXT("Writes a class with an automation test."),
			{ { TEXT("class_name"), TEXT("The class's name with its prefix, such as AGate."), true },
				{ TEXT("purpose"), TEXT("What it is for."), true } },
			TEXT(
				"Add the C++ class {class_name} to this Unreal project. Its purpose: {purpose}\nLook at the project tree and "
				"at a class that exists, and follow its style and folders. Write header and source with create_cpp_file, and "
				"an automation test that would fail without the class. Call compile and mend what it reports.") },
	};
	return Prompts;
}

const FPrompt* Find(const FString& Name)
{
	return GetAll().FindByPredicate([&Name](const FPrompt& Prompt) { return Name.Equals(Prompt.Name); });
}

TSharedRef<FJsonObject> Describe(const FPrompt& Prompt)
{
	TArray<TSharedPtr<FJsonValue>> Arguments;
	for (const FArgument& Argument : Prompt.Arguments)
	{
		const TSharedRef<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("name"), Argument.Name);
		Entry->SetStringField(TEXT("description"), Argument.Description);
		Entry->SetBoolField(TEXT("required"), Argument.bRequired);
		Arguments.Add(MakeShared<FJsonValueObject>(Entry));
	}
	const TSharedRef<FJsonObject> Description = MakeShared<FJsonObject>();
	Description->SetStringField(TEXT("name"), Prompt.Name);
	Description->SetStringField(TEXT("title"), Prompt.Title);
	Description->SetStringField(TEXT("description"), Prompt.Description);
	Description->SetArrayField(TEXT("arguments"), Arguments);
	return Description;
}

TSharedRef<FJsonObject> MakeMessage(const FString& Text)
{
	const TSharedRef<FJsonObject> Content = MakeShared<FJsonObject>();
	Content->SetStringField(TEXT("type"), TEXT("text"));
	Content->SetStringField(TEXT("text"), Text);
	const TSharedRef<FJsonObject> Message = MakeShared<FJsonObject>();
	Message->SetStringField(TEXT("role"), TEXT("user"));
	Message->SetObjectField(TEXT("content"), Content);
	return Message;
}
}

TSharedRef<FJsonObject> KestrelMcpPrompts::MakeList()
{
	TArray<TSharedPtr<FJsonValue>> Entries;
	for (const McpPrompts::FPrompt& Prompt : McpPrompts::GetAll())
	{
		Entries.Add(MakeShared<FJsonValueObject>(McpPrompts::Describe(Prompt)));
	}
	const TSharedRef<FJsonObject> List = MakeShared<FJsonObject>();
	List->SetArrayField(TEXT("prompts"), Entries);
	return List;
}

TSharedPtr<FJsonObject> KestrelMcpPrompts::Get(const FString& Name, const FJsonObject& Arguments, FString& OutError)
{
	const McpPrompts::FPrompt* Prompt = McpPrompts::Find(Name);
	if (!Prompt)
	{
		OutError = TEXT("Unknown prompt");
		return nullptr;
	}
	FString Text = Prompt->Text;
	for (const McpPrompts::FArgument& Argument : Prompt->Arguments)
	{
		FString Value;
		if (!Arguments.TryGetStringField(Argument.Name, Value) && Argument.bRequired)
		{
			OutError = FString::Printf(TEXT("Missing argument: %s"), Argument.Name);
			return nullptr;
		}
		Text = Text.Replace(*FString::Printf(TEXT("{%s}"), Argument.Name), *Value, ESearchCase::CaseSensitive);
	}
	const TSharedRef<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("description"), Prompt->Description);
	Result->SetArrayField(TEXT("messages"), { MakeShared<FJsonValueObject>(McpPrompts::MakeMessage(Text)) });
	return Result;
}

bool KestrelMcpPrompts::HasArgument(const FString& Name, const FString& Argument)
{
	const McpPrompts::FPrompt* Prompt = McpPrompts::Find(Name);
	return Prompt && Prompt->Arguments.ContainsByPredicate(
						 [&Argument](const McpPrompts::FArgument& Each) { return Argument.Equals(Each.Name); });
}
