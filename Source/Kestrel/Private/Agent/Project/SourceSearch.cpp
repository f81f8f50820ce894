#include "Agent/Project/SourceSearch.h"

#include "Agent/Files/NativeFile.h"
#include "Agent/Project/TextNeedle.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformTime.h"
#include "HAL/ThreadSafeCounter.h"
#include "KestrelLog.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

namespace SourceSearch
{
const TCHAR* const Roots[] = { TEXT("Source"), TEXT("Plugins") };
const TCHAR* const Endings[] = { TEXT(".cpp"), TEXT(".h") };
constexpr int32 NumFilesOfBatch = 64; // read by one thread in a row
/** No source is that large; what is, a dump or a sparse file for instance, would stop the search. */
constexpr int64 MaxSourceBytes = 64 * 1024 * 1024;
constexpr int32 MaxNotSearched = 100; // of the files that are told

TSharedRef<FJsonValueObject> MakeReference(const FString& File)
{
	const TSharedRef<FJsonObject> Reference = MakeShared<FJsonObject>();
	Reference->SetStringField(TEXT("Type"), TEXT("cpp or h File"));
	Reference->SetStringField(TEXT("Name"), FPaths::GetCleanFilename(File));
	Reference->SetStringField(TEXT("Path"), File);
	return MakeShared<FJsonValueObject>(Reference);
}
}

FKestrelSourceSearch::FKestrelSourceSearch(const FString& ReferenceString, EParallelForFlags InFlags)
	: Needle(MakeShared<FKestrelTextNeedle>(ReferenceString))
	, Flags(InFlags)
{
}

FKestrelSourceSearch::~FKestrelSourceSearch() = default;

bool FKestrelSourceSearch::BeginWalk()
{
	if (NumWalks == UE_ARRAY_COUNT(SourceSearch::Roots))
	{
		return false;
	}
	FString Root = FPaths::Combine(FPaths::ProjectDir(), SourceSearch::Roots[NumWalks++]);
	FPaths::NormalizeDirectoryName(Root);
	Walk = MakeUnique<FKestrelFileWalk>(
		FPaths::ConvertRelativePathToFull(Root),
		[](const FString& Name) {
			return Name.EndsWith(SourceSearch::Endings[0]) || Name.EndsWith(SourceSearch::Endings[1]);
		},
		[this](const FString& Path, const FString& RealPath) { return Review.MayRead(Path, RealPath); });
	return true;
}

void FKestrelSourceSearch::TakeFiles()
{
	// All of one kind come after all of the other.
	for (const TCHAR* Ending : SourceSearch::Endings)
	{
		for (FString& File : Walk->GetFiles())
		{
			if (File.EndsWith(Ending))
			{
				Files->Add(MoveTemp(File));
			}
		}
	}
	Walk.Reset();
}

bool FKestrelSourceSearch::Step(double Deadline)
{
	while (!Scan)
	{
		if (Walk ? !Walk->Next() : !BeginWalk())
		{
			Walk ? TakeFiles() : BeginScan();
		}
		else if (FPlatformTime::Seconds() >= Deadline)
		{
			return false;
		}
	}
	return Scan->Step(Deadline);
}

float FKestrelSourceSearch::GetProgress() const
{
	return Scan ? Scan->GetProgress() : 0.0f;
}

FKestrelSourceSearch::EFinding FKestrelSourceSearch::Look(
	const FString& File, const FKestrelTextNeedle& Needle, TArray<uint8>& Bytes)
{
	if (!KestrelNativeFile::IsRegularFile(File))
	{
		return EFinding::Nothing;
	}
	if (IFileManager::Get().FileSize(*File) > SourceSearch::MaxSourceBytes)
	{
		return EFinding::TooLarge;
	}
	return FFileHelper::LoadFileToArray(Bytes, *File) && Needle.OccursIn(Bytes) ? EFinding::Found : EFinding::Nothing;
}

void FKestrelSourceSearch::BeginScan()
{
	const auto Body = [Files = Files, Needle = Needle, Flags = Flags](FKestrelTaskControl& Control) {
		const int32 Num = Files->Num();
		TArray<EFinding> Findings;
		Findings.SetNumZeroed(Num);
		Control.NumTotal.Set(Num);
		const int32 NumBatches = FMath::DivideAndRoundUp(Num, SourceSearch::NumFilesOfBatch);
		ParallelFor(
			NumBatches,
			[&](int32 Batch) {
				TArray<uint8> Bytes;
				const int32 Begin = Batch * SourceSearch::NumFilesOfBatch;
				const int32 End = FMath::Min(Begin + SourceSearch::NumFilesOfBatch, Num);
				for (int32 Index = Begin; Index < End && !Control.IsCanceled(); ++Index)
				{
					Findings[Index] = Look((*Files)[Index], *Needle, Bytes);
					Control.NumDone.Increment();
				}
			},
			Flags);
		return Findings;
	};
	Scan = MakeUnique<TKestrelBackgroundWork<TArray<EFinding>>>(Body);
}

void FKestrelSourceSearch::Report(FJsonObject& Result)
{
	TArray<TSharedPtr<FJsonValue>> References;
	TArray<TSharedPtr<FJsonValue>> NotSearched;
	const TArray<EFinding>& Findings = Scan->GetResult();
	for (int32 Index = 0; Index < Findings.Num(); ++Index)
	{
		const FString& File = (*Files)[Index];
		if (Findings[Index] == EFinding::Found)
		{
			References.Add(SourceSearch::MakeReference(File));
		}
		else if (Findings[Index] == EFinding::TooLarge)
		{
			UE_LOG(LogKestrel, Warning, TEXT("%s is larger than 64 MB and was not searched."), *File);
			NotSearched.Add(MakeShared<FJsonValueString>(File));
		}
	}
	Result.SetArrayField(TEXT("cpp_references"), References);
	if (!NotSearched.IsEmpty())
	{
		NotSearched.SetNum(FMath::Min(NotSearched.Num(), SourceSearch::MaxNotSearched));
		Result.SetArrayField(TEXT("cpp_files_not_searched"), NotSearched);
	}
	Review.Report(Result, TEXT("cpp_not_searched"));
}
