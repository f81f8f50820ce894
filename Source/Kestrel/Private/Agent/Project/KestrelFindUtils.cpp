#include "Agent/Project/KestrelFindUtils.h"

#include "Agent/Files/FolderWalk.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Project/SearchReview.h"
#include "Agent/Text/JsonText.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "KestrelLog.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

namespace KestrelFindUtils
{
constexpr int32 AsciiEnd = 0x80;
/** No source is that large; what is, a dump or a sparse file for instance, would stop the editor. */
constexpr int64 MaxSourceBytes = 64 * 1024 * 1024;
constexpr int32 MaxNotSearched = 100; // of the files that are told

uint8 ToLowerAscii(uint8 Byte)
{
	return Byte >= 'A' && Byte <= 'Z' ? Byte + ('a' - 'A') : Byte;
}

/**
 * A text that is looked for in many files, without regard to case.
 *
 * Nearly all sources are UTF-8 and nearly all names are ASCII: then the bytes are searched as they are, with Horspool's
 * algorithm (R. N. Horspool, "Practical fast searching in strings", 1980), which is several times faster than decoding
 * each file first.
 */
class FNeedle
{
public:
	explicit FNeedle(const FString& InText)
		: Text(InText)
	{
		for (const TCHAR C : Text)
		{
			if (C >= AsciiEnd)
			{
				return;
			}
		}
		bIsAscii = true;
		for (const TCHAR C : Text)
		{
			Lower.Add(ToLowerAscii(static_cast<uint8>(C)));
		}
		for (int32& Step : Steps)
		{
			Step = Lower.Num();
		}
		for (int32 Index = 0; Index < Lower.Num() - 1; ++Index)
		{
			Steps[Lower[Index]] = Lower.Num() - 1 - Index;
			Steps[ToUpperAscii(Lower[Index])] = Lower.Num() - 1 - Index;
		}
	}

	/** Bytes: a whole file. */
	bool OccursIn(const TArray<uint8>& Bytes) const
	{
		const bool bMayBeUtf16 = !Bytes.IsEmpty() && (Bytes[0] == 0xFF || Bytes[0] == 0xFE);
		if (bIsAscii && !bMayBeUtf16)
		{
			return OccursInBytes(Bytes);
		}
		FString FileText;
		FFileHelper::BufferToString(FileText, Bytes.GetData(), Bytes.Num());
		return Text.IsEmpty() || FileText.Contains(Text); // the engine does not find the empty text
	}

private:
	static uint8 ToUpperAscii(uint8 Byte) { return Byte >= 'a' && Byte <= 'z' ? Byte - ('a' - 'A') : Byte; }

	bool OccursInBytes(const TArray<uint8>& Bytes) const
	{
		// Plain pointers: the checks of the arrays would take longer than the search.
		const uint8* const Begin = Bytes.GetData();
		const int32 Length = Lower.Num();
		for (int64 At = 0; At + Length <= Bytes.Num();)
		{
			if (IsAt(Begin + At))
			{
				return true;
			}
			At += Steps[Begin[At + Length - 1]];
		}
		return false;
	}

	bool IsAt(const uint8* Place) const
	{
		const uint8* const Wanted = Lower.GetData();
		for (int32 Index = Lower.Num() - 1; Index >= 0; --Index)
		{
			if (ToLowerAscii(Place[Index]) != Wanted[Index])
			{
				return false;
			}
		}
		return true;
	}

	const FString Text;
	bool bIsAscii = false;
	TArray<uint8> Lower; // the text in lower case, when it is ASCII
	int32 Steps[256];    // how far to go on when a byte stands under the last place; set when it is ASCII
};

/** The sources of the project and of its plugins; all of one kind after all of the other. */
TArray<FString> ListSources(FKestrelSearchReview& Review)
{
	TArray<FString> Sources;
	for (const TCHAR* Folder : { TEXT("Source"), TEXT("Plugins") })
	{
		FString Root = FPaths::Combine(FPaths::ProjectDir(), Folder);
		FPaths::NormalizeDirectoryName(Root);
		Root = FPaths::ConvertRelativePathToFull(Root);
		const TArray<FString> Files = FKestrelFolder::FindFiles(
			Root, [](const FString& Name) { return Name.EndsWith(TEXT(".cpp")) || Name.EndsWith(TEXT(".h")); },
			[&Review](const FString& Path, const FString& RealPath) { return Review.MayRead(Path, RealPath); });
		for (const TCHAR* Ending : { TEXT(".cpp"), TEXT(".h") })
		{
			Sources += Files.FilterByPredicate([Ending](const FString& File) { return File.EndsWith(Ending); });
		}
	}
	return Sources;
}

TSharedRef<FJsonValueObject> MakeReference(const FString& File)
{
	const TSharedRef<FJsonObject> Reference = MakeShared<FJsonObject>();
	Reference->SetStringField(TEXT("Type"), TEXT("cpp or h File"));
	Reference->SetStringField(TEXT("Name"), FPaths::GetCleanFilename(File));
	Reference->SetStringField(TEXT("Path"), File);
	return MakeShared<FJsonValueObject>(Reference);
}
}

FString FKestrelFindUtils::FindInAllFiles(const FString& ReferenceString)
{
	TSharedPtr<FJsonObject> Result = MakeShared<FJsonObject>();
	Result->SetStringField(TEXT("reference_string"), ReferenceString);
	FindInAllCppFiles(ReferenceString, Result);
	FindInAllBlueprintFiles(ReferenceString, Result);
	return KestrelJson::ToCondensedText(Result.ToSharedRef());
}

void FKestrelFindUtils::FindInAllCppFiles(const FString& ReferenceString, TSharedPtr<FJsonObject>& Result)
{
	const KestrelFindUtils::FNeedle Needle(ReferenceString);
	TArray<TSharedPtr<FJsonValue>> References;
	TArray<TSharedPtr<FJsonValue>> NotSearched;
	TArray<uint8> Bytes;
	FKestrelSearchReview Review;
	for (const FString& File : KestrelFindUtils::ListSources(Review))
	{
		if (!KestrelNativeFile::IsRegularFile(File))
		{
			continue;
		}
		if (IFileManager::Get().FileSize(*File) > KestrelFindUtils::MaxSourceBytes)
		{
			UE_LOG(LogKestrel, Warning, TEXT("%s is larger than 64 MB and was not searched."), *File);
			NotSearched.Add(MakeShared<FJsonValueString>(File));
		}
		else if (FFileHelper::LoadFileToArray(Bytes, *File) && Needle.OccursIn(Bytes))
		{
			References.Add(KestrelFindUtils::MakeReference(File));
		}
	}
	Result->SetArrayField(TEXT("cpp_references"), References);
	if (!NotSearched.IsEmpty())
	{
		NotSearched.SetNum(FMath::Min(NotSearched.Num(), KestrelFindUtils::MaxNotSearched));
		Result->SetArrayField(TEXT("cpp_files_not_searched"), NotSearched);
	}
	Review.Report(*Result, TEXT("cpp_not_searched"));
}
