#include "Interpreter/PythonCommand.h"

#include "Misc/Char.h"
#include "Misc/Paths.h"

namespace PythonCommand
{
/** Takes the next word off the text: up to a space, or between double quotes. */
bool TakeWord(FStringView& Text, FString& OutWord)
{
	Text = Text.TrimStartAndEnd();
	if (Text.IsEmpty())
	{
		return false;
	}
	const bool bQuoted = Text[0] == u'"';
	Text = Text.RightChop(bQuoted ? 1 : 0);
	int32 Length = 0;
	while (Length < Text.Len() && !(bQuoted ? Text[Length] == u'"' : FChar::IsWhitespace(Text[Length])))
	{
		++Length;
	}
	OutWord = FString(Text.Left(Length));
	Text = Text.RightChop(Length + (bQuoted ? 1 : 0));
	return true;
}
}

bool FPythonFileCommand::Parse(const FString& Command)
{
	FStringView Rest(Command);
	if (!PythonCommand::TakeWord(Rest, Path) || !Path.EndsWith(TEXT(".py")))
	{
		return false;
	}
	FString Argument;
	while (PythonCommand::TakeWord(Rest, Argument))
	{
		Arguments.Add(Argument);
	}
	return true;
}

FString FPythonFileCommand::Resolve(const TArray<FString>& SearchFolders) const
{
	const FString Full = FPaths::ConvertRelativePathToFull(Path);
	if (FPaths::FileExists(Full))
	{
		return Full;
	}
	if (FPaths::IsRelative(Path))
	{
		for (const FString& Folder : SearchFolders)
		{
			const FString Candidate = FPaths::ConvertRelativePathToFull(Folder, Path);
			if (!Folder.IsEmpty() && FPaths::FileExists(Candidate))
			{
				return Candidate;
			}
		}
	}
	return FString();
}
