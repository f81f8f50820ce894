#include "Agent/Chat/PromptStore.h"

#include "Agent/Files/KeyGuard.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Text/JsonText.h"
#include "Containers/StringConv.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Misc/Timespan.h"

namespace PromptStore
{
// The members of the file.
const TCHAR* const PromptsField = TEXT("prompts");
const TCHAR* const TextField = TEXT("text");
const TCHAR* const TimeField = TEXT("time"); // seconds since 1970, UTC

/** Bytes. Twice as much as the prompts have, for what JSON escapes. */
constexpr int64 MaxFileBytes = 2ll * FKestrelPromptStore::MaxPrompts * FKestrelPromptStore::MaxPromptBytes;

bool IsStorable(const FString& Prompt)
{
	// A UTF-16 unit has at least one byte in UTF-8, so most need no conversion.
	return !Prompt.TrimStartAndEnd().IsEmpty() && Prompt.Len() <= FKestrelPromptStore::MaxPromptBytes &&
		   FTCHARToUTF8(*Prompt, Prompt.Len()).Length() <= FKestrelPromptStore::MaxPromptBytes;
}
}

FString FKestrelPromptStore::GetUsualFile()
{
	return FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir() / TEXT("Kestrel") / TEXT("Prompts.json"));
}

void FKestrelPromptStore::Open(const FString& InFile)
{
	File = InFile;
	Prompts.Empty();
	Times.Empty();
	Draft.Empty();
	Load();
}

bool FKestrelPromptStore::MayUseFile() const
{
	// A link could lead anywhere, and a pipe would hold the editor.
	const bool bIsOrdinary = !FPaths::FileExists(File) || KestrelNativeFile::IsRegularFile(File);
	return !File.IsEmpty() && bIsOrdinary &&
		   KestrelNativeFile::IsReachedWithoutLinks(File, FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
}

void FKestrelPromptStore::Load()
{
	FString Text;
	if (!MayUseFile() || IFileManager::Get().FileSize(*File) > PromptStore::MaxFileBytes || !FPaths::FileExists(File) ||
		!FFileHelper::LoadFileToString(Text, *File))
	{
		return;
	}
	const TSharedPtr<FJsonObject> Root = KestrelJson::ParseObject(Text);
	const TArray<TSharedPtr<FJsonValue>>* Entries = nullptr;
	if (!Root.IsValid() || !Root->TryGetArrayField(PromptStore::PromptsField, Entries))
	{
		return;
	}
	for (const TSharedPtr<FJsonValue>& Value : *Entries)
	{
		const TSharedPtr<FJsonObject>* Entry = nullptr;
		FString Prompt;
		double Seconds = 0.0;
		if (Value.IsValid() && Value->TryGetObject(Entry) &&
			(*Entry)->TryGetStringField(PromptStore::TextField, Prompt) &&
			(*Entry)->TryGetNumberField(PromptStore::TimeField, Seconds) && PromptStore::IsStorable(Prompt))
		{
			// What claims to come from the future would never become old.
			const double Latest = static_cast<double>(FDateTime::UtcNow().ToUnixTimestamp());
			Append(Prompt, FDateTime::FromUnixTimestamp(static_cast<int64>(FMath::Clamp(Seconds, 0.0, Latest))));
		}
	}
}

void FKestrelPromptStore::Append(const FString& Prompt, const FDateTime& Time)
{
	const int32 Known = Prompts.IndexOfByPredicate([&Prompt](const FString& Each) { return Each.Equals(Prompt); });
	if (Known != INDEX_NONE)
	{
		Prompts.RemoveAt(Known);
		Times.RemoveAt(Known);
	}
	else if (Prompts.Num() == MaxPrompts)
	{
		Prompts.RemoveAt(0);
		Times.RemoveAt(0);
	}
	Prompts.Add(Prompt);
	Times.Add(Time);
}

void FKestrelPromptStore::Add(const FString& Prompt)
{
	const FString Hidden = KestrelKeyGuard::Hide(Prompt);
	if (PromptStore::IsStorable(Hidden))
	{
		Append(Hidden, FDateTime::UtcNow());
		Save();
	}
}

void FKestrelPromptStore::RemoveAll()
{
	Prompts.Empty();
	Times.Empty();
	if (MayUseFile())
	{
		IFileManager::Get().Delete(*File);
	}
}

void FKestrelPromptStore::RemoveOld(int32 Days)
{
	const int32 NumBefore = Prompts.Num();
	for (int32 Index = Prompts.Num() - 1; Index >= 0; --Index)
	{
		if ((FDateTime::UtcNow() - Times[Index]).GetTotalDays() > Days)
		{
			Prompts.RemoveAt(Index);
			Times.RemoveAt(Index);
		}
	}
	if (Prompts.Num() < NumBefore)
	{
		Save();
	}
}

void FKestrelPromptStore::Save() const
{
	if (!MayUseFile())
	{
		return;
	}
	TArray<TSharedPtr<FJsonValue>> Entries;
	for (int32 Index = 0; Index < Prompts.Num(); ++Index)
	{
		const TSharedRef<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(PromptStore::TextField, Prompts[Index]);
		Entry->SetNumberField(PromptStore::TimeField, static_cast<double>(Times[Index].ToUnixTimestamp()));
		Entries.Add(MakeShared<FJsonValueObject>(Entry));
	}
	const TSharedRef<FJsonObject> Root = MakeShared<FJsonObject>();
	Root->SetArrayField(PromptStore::PromptsField, Entries);
	// An editor that is killed in between leaves the old file, and nobody else could read the new one for a moment.
	const FString Unfinished = File + TEXT(".new");
	IFileManager& Files = IFileManager::Get();
	Files.Delete(*Unfinished);
	if (!Files.MakeDirectory(*FPaths::GetPath(File), true) || !FFileHelper::SaveStringToFile(FString(), *Unfinished))
	{
		return;
	}
	KestrelNativeFile::RestrictToOwner(Unfinished);
	if (!FFileHelper::SaveStringToFile(
			KestrelJson::ToCondensedText(Root), *Unfinished, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM) ||
		!Files.Move(*File, *Unfinished))
	{
		Files.Delete(*Unfinished);
	}
}
