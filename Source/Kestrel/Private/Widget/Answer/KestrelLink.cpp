#include "Widget/Answer/KestrelLink.h"

#include "HAL/FileManager.h"
#include "Misc/Paths.h"
#include "Widget/Markdown/MarkdownCharacters.h"

namespace KestrelLinks
{
namespace
{
/** Of an address or a path; longer ones are nobody's. */
constexpr int32 MaxLength = 2048;

const TCHAR* const Extensions[] = { TEXT("h"), TEXT("hpp"), TEXT("cpp"), TEXT("c"), TEXT("inl"), TEXT("cs"), TEXT("py"),
	TEXT("ini"), TEXT("json"), TEXT("md"), TEXT("txt"), TEXT("csv"), TEXT("usf"), TEXT("ush"), TEXT("uproject"),
	TEXT("uplugin") };

bool IsPage(const FString& Address)
{
	return Address.StartsWith(TEXT("https://"), ESearchCase::IgnoreCase) ||
		   Address.StartsWith(TEXT("http://"), ESearchCase::IgnoreCase);
}

bool IsOfPath(TCHAR Character)
{
	return KestrelMarkdown::IsLetter(Character) || KestrelMarkdown::IsDigit(Character) || Character == TEXT('_') ||
		   Character == TEXT('.') || Character == TEXT('/') || Character == TEXT('\\') || Character == TEXT('-');
}

bool HasKnownExtension(const FString& Path)
{
	const FString Extension = FPaths::GetExtension(Path);
	for (const TCHAR* Known : Extensions)
	{
		if (Extension == Known)
		{
			return true;
		}
	}
	return false;
}

/** @return empty if there is no such file in the project, or none may be looked for */
FString FindFile(const FString& Path, int32& InOutFilesLeft)
{
	if (Path.IsEmpty() || Path.Len() > MaxLength || !HasKnownExtension(Path) || InOutFilesLeft == 0)
	{
		return FString();
	}
	--InOutFilesLeft;
	FString Project = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	FPaths::NormalizeDirectoryName(Project);
	const FString Full = FPaths::ConvertRelativePathToFull(Project, Path.Replace(TEXT("\\"), TEXT("/")));
	return FPaths::IsUnderDirectory(Full, Project) && IFileManager::Get().FileExists(*Full) ? Full : FString();
}

/** A path with or without ":42" behind it. */
FKestrelLink MakeFileLink(const FString& Text, int32& InOutFilesLeft)
{
	FKestrelLink Link;
	FString Path;
	FString Line;
	if (Text.Split(TEXT(":"), &Path, &Line))
	{
		Link.Line = FMath::Max(0, FCString::Atoi(*Line));
	}
	Link.File = FindFile(Path.IsEmpty() ? Text : Path, InOutFilesLeft);
	return Link;
}

int32 FindEndOfPage(const FString& Text, int32 Begin)
{
	int32 End = Begin;
	int32 Depth = 0; // of round brackets, which may be part of an address
	int32 Ignored = INDEX_NONE;
	for (; End < Text.Len() && End - Begin < MaxLength; ++End)
	{
		const TCHAR Character = Text[End];
		Depth += Character == TEXT('(') ? 1 : Character == TEXT(')') ? -1 : 0;
		if (Depth < 0 || Character <= TEXT(' ') || Character > 0x7E ||
			FStringView(TEXT("<>\"`{}|\\^")).FindChar(Character, Ignored))
		{
			break;
		}
	}
	while (End > Begin && FStringView(TEXT(".,;:!?'*_~")).FindChar(Text[End - 1], Ignored))
	{
		--End;
	}
	return End;
}

int32 FindEndOfPath(const FString& Text, int32 Begin)
{
	int32 End = Begin;
	while (End < Text.Len() && IsOfPath(Text[End]))
	{
		++End;
	}
	while (End > Begin && Text[End - 1] == TEXT('.'))
	{
		--End;
	}
	return End;
}

/** Behind a path. @return End if no line is named */
int32 FindEndOfLine(const FString& Text, int32 End)
{
	constexpr int32 MaxDigits = 7;
	int32 Index = End + 1;
	while (End < Text.Len() && Text[End] == TEXT(':') && Index < Text.Len() && Index - End <= MaxDigits &&
		   KestrelMarkdown::IsDigit(Text[Index]))
	{
		++Index;
	}
	return Index > End + 1 ? Index : End;
}
}

FKestrelLink FromAddress(const FString& Address, int32& InOutFilesLeft)
{
	if (IsPage(Address) && Address.Len() <= MaxLength)
	{
		FKestrelLink Link;
		Link.Address = Address;
		return Link;
	}
	// Some write a line as hosts of repositories do.
	return MakeFileLink(Address.Replace(TEXT("#L"), TEXT(":"), ESearchCase::CaseSensitive), InOutFilesLeft);
}

TArray<FKestrelFoundLink> FindIn(const FString& Text, int32& InOutFilesLeft)
{
	TArray<FKestrelFoundLink> Found;
	for (int32 Index = 0; Index < Text.Len();)
	{
		if (!IsOfPath(Text[Index]))
		{
			++Index;
			continue;
		}
		int32 End = FindEndOfPath(Text, Index);
		FKestrelLink Link;
		if (IsPage(Text.Mid(Index, 8)))
		{
			End = FindEndOfPage(Text, Index);
			Link.Address = Text.Mid(Index, End - Index);
		}
		else if (End - Index <= MaxLength && HasKnownExtension(Text.Mid(Index, End - Index)))
		{
			End = FindEndOfLine(Text, End);
			Link = MakeFileLink(Text.Mid(Index, End - Index), InOutFilesLeft);
		}
		if (Link.IsSet())
		{
			Found.Add({ Index, End, Link });
		}
		Index = FMath::Max(End, Index + 1);
	}
	return Found;
}
}
