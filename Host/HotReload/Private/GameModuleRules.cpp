#include "GameModuleRules.h"

#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

#define LOCTEXT_NAMESPACE "GameModuleRules"

namespace GameModuleRules
{
/** The text without its comments. A Build.cs has no quoted text that looks like one. */
FString WithoutComments(const FString& Text)
{
	FString Result;
	int32 Index = 0;
	while (Index < Text.Len())
	{
		const FStringView Rest(*Text + Index, Text.Len() - Index);
		const bool bLine = Rest.StartsWith(TEXT("//"));
		if (!bLine && !Rest.StartsWith(TEXT("/*")))
		{
			Result += Text[Index++];
			continue;
		}
		const TCHAR* const End = bLine ? TEXT("\n") : TEXT("*/");
		const int32 Found = Text.Find(End, ESearchCase::CaseSensitive, ESearchDir::FromStart, Index + (bLine ? 0 : 2));
		Index = Found == INDEX_NONE ? Text.Len() : Found + (bLine ? 0 : 2);
	}
	return Result;
}

/** What stands between Name and the next semicolon, for each time that Name stands there. */
TArray<FString> FindStatements(const FString& Text, const TCHAR* Name)
{
	TArray<FString> Statements;
	int32 Start = 0;
	while ((Start = Text.Find(Name, ESearchCase::CaseSensitive, ESearchDir::FromStart, Start)) != INDEX_NONE)
	{
		Start += FCString::Strlen(Name);
		const int32 End = Text.Find(TEXT(";"), ESearchCase::CaseSensitive, ESearchDir::FromStart, Start);
		Statements.Add(Text.Mid(Start, End == INDEX_NONE ? MAX_int32 : End - Start));
	}
	return Statements;
}

TArray<FString> QuotedTexts(const FString& Text)
{
	TArray<FString> Parts;
	Text.ParseIntoArray(Parts, TEXT("\""), false);
	TArray<FString> Quoted;
	for (int32 Index = 1; Index < Parts.Num(); Index += 2)
	{
		Quoted.Add(Parts[Index]);
	}
	return Quoted;
}

/** The arguments of a statement: split at the commas that are not inside a call. */
TArray<FString> SplitArguments(const FString& Statement)
{
	const bool bList = Statement.Contains(TEXT("{"));
	const TCHAR Open = bList ? u'{' : u'(';
	const TCHAR Close = bList ? u'}' : u')';
	TArray<FString> Arguments;
	FString Argument;
	int32 Depth = 0;
	for (const TCHAR C : Statement)
	{
		const bool bCloses = C == Close || C == u')';
		Depth -= Depth > 0 && bCloses;
		if (Depth == 1 && C == u',')
		{
			Arguments.Add(Argument);
			Argument.Empty();
		}
		else if (Depth > 0)
		{
			Argument += C;
		}
		Depth += C == Open || (Depth > 0 && C == u'(');
	}
	Arguments.Add(Argument);
	return Arguments;
}

/** Folders as Build.cs files name them: ModuleDirectory, Path.Combine(ModuleDirectory, "A", "B"), "A/B". */
void AddFolders(const FString& Text, const TCHAR* Statement, const FString& ModuleFolder, TArray<FString>& OutFolders)
{
	for (const FString& Found : FindStatements(Text, Statement))
	{
		for (const FString& Argument : SplitArguments(Found))
		{
			if (Argument.TrimStartAndEnd().IsEmpty())
			{
				continue;
			}
			FString Folder = ModuleFolder;
			for (const FString& Part : QuotedTexts(Argument))
			{
				Folder /= Part;
			}
			FPaths::CollapseRelativeDirectories(Folder);
			OutFolders.AddUnique(Folder);
		}
	}
}

bool IsReflected(const FString& HeaderFile)
{
	FString Text;
	FFileHelper::LoadFileToString(Text, *HeaderFile);
	if (Text.Contains(TEXT(".generated.h\""), ESearchCase::CaseSensitive))
	{
		return true;
	}
	// One that lacks the include is HeaderTool's to reject.
	TArray<FString> Lines;
	Text.ParseIntoArrayLines(Lines);
	return Lines.ContainsByPredicate([](const FString& Line) {
		const FString Code = Line.TrimStart();
		return Code.StartsWith(TEXT("UCLASS("), ESearchCase::CaseSensitive) ||
			   Code.StartsWith(TEXT("USTRUCT("), ESearchCase::CaseSensitive) ||
			   Code.StartsWith(TEXT("UENUM("), ESearchCase::CaseSensitive) ||
			   Code.StartsWith(TEXT("UINTERFACE("), ESearchCase::CaseSensitive);
	});
}

/** Sorted, so that the build does not depend on the file system's order. */
TArray<FString> FindBelow(const FString& ProjectDir, const FString& Folder, const TCHAR* Pattern)
{
	TArray<FString> Files;
	IFileManager::Get().FindFilesRecursive(Files, *(ProjectDir / Folder), Pattern, true, false);
	for (FString& File : Files)
	{
		File.RemoveFromStart(ProjectDir / TEXT(""), ESearchCase::CaseSensitive);
	}
	Files.Sort([](const FString& A, const FString& B) { return A.Compare(B, ESearchCase::CaseSensitive) < 0; });
	return Files;
}
}

bool FGameModuleRules::Read(const FString& ProjectDir, const FString& ModuleName, FText& OutFailReason)
{
	const TArray<FString> Files =
		GameModuleRules::FindBelow(ProjectDir, TEXT("Source"), *(ModuleName + TEXT(".Build.cs")));
	FString Text;
	if (Files.IsEmpty() || !FFileHelper::LoadFileToString(Text, *(ProjectDir / Files[0])))
	{
		OutFailReason = FText::Format(
			LOCTEXT("NoBuildCs", "the project names the module {0}, but below {1} there is no {0}.Build.cs"),
			FText::FromString(ModuleName), FText::FromString(ProjectDir / TEXT("Source")));
		return false;
	}
	Name = ModuleName;
	Folder = FPaths::GetPath(Files[0]);
	ReadBuildCs(ProjectDir, GameModuleRules::WithoutComments(Text));
	FindFiles(ProjectDir);
	if (Sources.IsEmpty())
	{
		OutFailReason = FText::Format(LOCTEXT("NoSources", "the module {0} has no sources in {1}"),
			FText::FromString(Name), FText::FromString(Folder));
		return false;
	}
	return true;
}

void FGameModuleRules::ReadBuildCs(const FString& ProjectDir, const FString& Text)
{
	for (const FString& Statement : GameModuleRules::FindStatements(Text, TEXT("DependencyModuleNames.Add")))
	{
		for (const FString& Dependency : GameModuleRules::QuotedTexts(Statement))
		{
			Dependencies.AddUnique(Dependency);
		}
	}
	for (const TCHAR* Standard : { TEXT("Public"), TEXT("Private") })
	{
		if (IFileManager::Get().DirectoryExists(*(ProjectDir / Folder / Standard)))
		{
			(FCString::Strcmp(Standard, TEXT("Public")) == 0 ? PublicFolders : PrivateFolders).Add(Folder / Standard);
		}
	}
	GameModuleRules::AddFolders(Text, TEXT("PublicIncludePaths.Add"), Folder, PublicFolders);
	GameModuleRules::AddFolders(Text, TEXT("PrivateIncludePaths.Add"), Folder, PrivateFolders);
}

void FGameModuleRules::FindFiles(const FString& ProjectDir)
{
	Sources = GameModuleRules::FindBelow(ProjectDir, Folder, TEXT("*.cpp"));
	ReflectedHeaders = GameModuleRules::FindBelow(ProjectDir, Folder, TEXT("*.h"))
						   .FilterByPredicate([&ProjectDir](const FString& Header) {
							   return GameModuleRules::IsReflected(ProjectDir / Header);
						   });
}

#undef LOCTEXT_NAMESPACE
