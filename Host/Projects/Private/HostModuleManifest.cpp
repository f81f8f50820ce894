#include "HostModuleManifest.h"

#include "Dom/JsonObject.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "Serialization/JsonSerializer.h"

const TCHAR* FHostModuleManifest::GetFlavour()
{
	return TEXT(HOST_FLAVOUR);
}

FString FHostModuleManifest::GetFolder(const FString& BaseDir)
{
	return BaseDir / TEXT("Binaries/Linux");
}

FString FHostModuleManifest::GetFileName(const FString& BaseDir)
{
	return GetFolder(BaseDir) / TEXT("HostEditor-" HOST_FLAVOUR ".modules");
}

bool FHostModuleManifest::Load(const FString& BaseDir)
{
	FString Text;
	TSharedPtr<FJsonObject> Object;
	const TSharedPtr<FJsonObject>* Modules = nullptr;
	if (!FFileHelper::LoadFileToString(Text, *GetFileName(BaseDir)) ||
		!FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(MoveTemp(Text)), Object) ||
		!Object->TryGetObjectField(TEXT("Modules"), Modules))
	{
		return false;
	}
	Object->TryGetStringField(TEXT("BuildId"), BuildId);
	for (const auto& Pair : (*Modules)->Values)
	{
		// A longer one names no module, and the file may be anybody's.
		if (Pair.Key.Len() < NAME_SIZE)
		{
			Libraries.Add(Pair.Key, Pair.Value->AsString());
		}
	}
	return true;
}

bool FHostModuleManifest::Save(const FString& BaseDir) const
{
	const TSharedRef<FJsonObject> Modules = MakeShared<FJsonObject>();
	for (const auto& Pair : Libraries)
	{
		Modules->SetStringField(Pair.Key, Pair.Value);
	}
	const TSharedRef<FJsonObject> Object = MakeShared<FJsonObject>();
	Object->SetStringField(TEXT("BuildId"), BuildId);
	Object->SetObjectField(TEXT("Modules"), Modules);
	FString Text;
	return FJsonSerializer::Serialize(Object, TJsonWriterFactory<>::Create(&Text)) &&
		   FFileHelper::SaveStringToFile(
			   Text, *GetFileName(BaseDir), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
}

void FHostModuleManifest::Announce(const FString& BaseDir) const
{
	for (const auto& Pair : Libraries)
	{
		const FString Library = FPaths::ConvertRelativePathToFull(GetFolder(BaseDir) / Pair.Value);
		FModuleManager::Get().AddModuleLibrary(FName(*Pair.Key), Library);
	}
}
