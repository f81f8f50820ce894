#include "EditorBuild.h"

#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformProcess.h"
#include "Misc/FileHelper.h"
#include "Serialization/JsonSerializer.h"

#define LOCTEXT_NAMESPACE "EditorBuild"

namespace EditorBuild
{
FEditorBuild::FModule ReadModule(const FJsonObject& Object)
{
	FEditorBuild::FModule Module;
	Object.TryGetStringArrayField(TEXT("IncludePaths"), Module.IncludePaths);
	Object.TryGetStringArrayField(TEXT("Definitions"), Module.Definitions);
	Object.TryGetStringField(TEXT("Library"), Module.Library);
	Object.TryGetStringField(TEXT("Types"), Module.Types);
	// Only a part of the editor may have been built, as for a test.
	Module.Types = IFileManager::Get().FileExists(*Module.Types) ? Module.Types : FString();
	return Module;
}

/** FNV-1a, 64 bits: https://en.wikipedia.org/wiki/Fowler-Noll-Vo_hash_function */
uint64 Mix(uint64 Hash, int64 Value)
{
	for (int32 Shift = 0; Shift < 64; Shift += 8)
	{
		Hash = (Hash ^ (static_cast<uint64>(Value) >> Shift & 0xff)) * 0x100000001b3ull;
	}
	return Hash;
}
}

bool FEditorBuild::Load(FText& OutFailReason)
{
	const FString FileName = FString(FPlatformProcess::BaseDir()) / TEXT("HostEditor.build.json");
	FString Text;
	TSharedPtr<FJsonObject> Object;
	const TSharedPtr<FJsonObject>* ModuleObjects = nullptr;
	if (!FFileHelper::LoadFileToString(Text, *FileName) ||
		!FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(MoveTemp(Text)), Object) ||
		!Object->TryGetObjectField(TEXT("Modules"), ModuleObjects))
	{
		OutFailReason =
			FText::Format(LOCTEXT("NoDescription", "{0}, which describes the editor's build, cannot be read"),
				FText::FromString(FileName));
		return false;
	}
	Object->TryGetStringField(TEXT("Ninja"), Ninja);
	Object->TryGetStringField(TEXT("Compiler"), Compiler);
	Object->TryGetStringArrayField(TEXT("CompilerLauncher"), CompilerLauncher);
	Object->TryGetStringArrayField(TEXT("CompileFlags"), CompileFlags);
	Object->TryGetStringArrayField(TEXT("LinkFlags"), LinkFlags);
	Object->TryGetStringField(TEXT("HeaderTool"), HeaderTool);
	Object->TryGetStringField(TEXT("PrecompiledHeader"), PrecompiledHeader);
	for (const auto& Pair : (*ModuleObjects)->Values)
	{
		Modules.Add(Pair.Key, EditorBuild::ReadModule(*Pair.Value->AsObject()));
	}
	for (const FString& Tool : { Ninja, Compiler, HeaderTool })
	{
		if (!IFileManager::Get().FileExists(*Tool))
		{
			OutFailReason =
				FText::Format(LOCTEXT("NoTool", "{0}, which builds game modules, is missing"), FText::FromString(Tool));
			return false;
		}
	}
	return true;
}

FString FEditorBuild::GetBuildId() const
{
	uint64 Hash = 0xcbf29ce484222325ull;
	for (const auto& Pair : Modules)
	{
		Hash = EditorBuild::Mix(Hash, IFileManager::Get().FileSize(*Pair.Value.Library));
		Hash = EditorBuild::Mix(Hash, IFileManager::Get().GetTimeStamp(*Pair.Value.Library).GetTicks());
	}
	return FString::Printf(TEXT("%016llx"), Hash);
}

#undef LOCTEXT_NAMESPACE
