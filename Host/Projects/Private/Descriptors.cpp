#include "DescriptorFile.h"
#include "Misc/FileHelper.h"
#include "PluginDescriptor.h"
#include "ProjectDescriptor.h"
#include "Serialization/JsonSerializer.h"

#define LOCTEXT_NAMESPACE "Descriptors"

namespace Descriptors
{
constexpr const TCHAR* LoadingPhases[] = { TEXT("EarliestPossible"), TEXT("PostConfigInit"), TEXT("PostSplashScreen"),
	TEXT("PreEarlyLoadingScreen"), TEXT("PreLoadingScreen"), TEXT("PreDefault"), TEXT("Default"), TEXT("PostDefault"),
	TEXT("PostEngineInit"), TEXT("None") };
static_assert(UE_ARRAY_COUNT(LoadingPhases) == ELoadingPhase::Max);

constexpr const TCHAR* HostTypes[] = { TEXT("Runtime"), TEXT("RuntimeNoCommandlet"), TEXT("RuntimeAndProgram"),
	TEXT("CookedOnly"), TEXT("UncookedOnly"), TEXT("Developer"), TEXT("DeveloperTool"), TEXT("Editor"),
	TEXT("EditorNoCommandlet"), TEXT("EditorAndProgram"), TEXT("Program"), TEXT("ServerOnly"), TEXT("ClientOnly"),
	TEXT("ClientOnlyNoCommandlet") };
static_assert(UE_ARRAY_COUNT(HostTypes) == EHostType::Max);

template <typename EnumType>
bool Find(TArrayView<const TCHAR* const> Names, const FString& Text, EnumType& Out)
{
	for (int32 Index = 0; Index < Names.Num(); ++Index)
	{
		if (Text == Names[Index])
		{
			Out = static_cast<EnumType>(Index);
			return true;
		}
	}
	return false;
}

constexpr int32 LatestFileVersion = 3;

TArray<FPluginReferenceDescriptor> ReadPlugins(const FJsonObject& Object)
{
	TArray<FPluginReferenceDescriptor> References;
	const TArray<TSharedPtr<FJsonValue>>* Plugins = nullptr;
	Object.TryGetArrayField(TEXT("Plugins"), Plugins);
	for (const TSharedPtr<FJsonValue>& Value : Plugins ? *Plugins : TArray<TSharedPtr<FJsonValue>>())
	{
		const TSharedPtr<FJsonObject>* Plugin = nullptr;
		FPluginReferenceDescriptor Reference;
		if (Value->TryGetObject(Plugin) && (*Plugin)->TryGetStringField(TEXT("Name"), Reference.Name))
		{
			(*Plugin)->TryGetBoolField(TEXT("Enabled"), Reference.bEnabled);
			(*Plugin)->TryGetBoolField(TEXT("Optional"), Reference.bOptional);
			References.Add(Reference);
		}
	}
	return References;
}
}

bool ELoadingPhase::FromString(const FString& Text, Type& OutPhase)
{
	return Descriptors::Find(Descriptors::LoadingPhases, Text, OutPhase);
}

bool EHostType::FromString(const FString& Text, Type& OutType)
{
	return Descriptors::Find(Descriptors::HostTypes, Text, OutType);
}

bool FModuleDescriptor::Read(const FJsonObject& Object, FText& OutFailReason)
{
	FString ModuleName;
	if (!Object.TryGetStringField(TEXT("Name"), ModuleName) || ModuleName.IsEmpty())
	{
		OutFailReason = LOCTEXT("ModuleWithoutName", "a module has no \"Name\"");
		return false;
	}
	if (ModuleName.Len() >= NAME_SIZE)
	{
		OutFailReason = FText::Format(
			LOCTEXT("ModuleNameTooLong", "a module has a name of {0} characters"), FText::AsNumber(ModuleName.Len()));
		return false;
	}
	Name = FName(*ModuleName);
	FString Text;
	if (!Object.TryGetStringField(TEXT("Type"), Text) || !EHostType::FromString(Text, Type))
	{
		OutFailReason = FText::Format(LOCTEXT("ModuleType", "module {0} has no known \"Type\""), FText::FromName(Name));
		return false;
	}
	if (Object.TryGetStringField(TEXT("LoadingPhase"), Text) && !ELoadingPhase::FromString(Text, LoadingPhase))
	{
		OutFailReason =
			FText::Format(LOCTEXT("ModulePhase", "module {0} has no known \"LoadingPhase\""), FText::FromName(Name));
		return false;
	}
	TArray<FString> Platforms;
	const bool bHasAllowList = Object.TryGetStringArrayField(TEXT("PlatformAllowList"), Platforms);
	bAllowedOnPlatform = !bHasAllowList || Platforms.Contains(TEXT("Linux"));
	return true;
}

bool FModuleDescriptor::IsLoadedInEditor() const
{
	switch (Type)
	{
	case EHostType::CookedOnly:
	case EHostType::Program:
	case EHostType::ServerOnly:
	case EHostType::ClientOnly:
	case EHostType::ClientOnlyNoCommandlet:
		return false;
	default:
		return bAllowedOnPlatform;
	}
}

TSharedPtr<FJsonObject> DescriptorFile::Load(const FString& FileName, FText& OutFailReason)
{
	FString Text;
	if (!FFileHelper::LoadFileToString(Text, *FileName))
	{
		OutFailReason = FText::Format(LOCTEXT("CannotRead", "{0} cannot be read"), FText::FromString(FileName));
		return nullptr;
	}
	const TSharedRef<TJsonReader<TCHAR>> Reader = TJsonReaderFactory<>::Create(MoveTemp(Text));
	TSharedPtr<FJsonObject> Object;
	if (!FJsonSerializer::Deserialize(Reader, Object))
	{
		OutFailReason = FText::Format(LOCTEXT("NoJson", "{0} is no JSON object: {1}"), FText::FromString(FileName),
			FText::FromString(Reader->GetErrorMessage()));
		return nullptr;
	}
	int32 FileVersion = 0;
	if (!Object->TryGetNumberField(TEXT("FileVersion"), FileVersion) || FileVersion < 1 ||
		FileVersion > Descriptors::LatestFileVersion)
	{
		OutFailReason =
			FText::Format(LOCTEXT("FileVersion", "{0} has no \"FileVersion\" of 1 to 3"), FText::FromString(FileName));
		return nullptr;
	}
	return Object;
}

bool DescriptorFile::ReadModules(const FJsonObject& Object, TArray<FModuleDescriptor>& OutModules, FText& OutFailReason)
{
	const TArray<TSharedPtr<FJsonValue>>* Modules = nullptr;
	if (!Object.TryGetArrayField(TEXT("Modules"), Modules))
	{
		return true;
	}
	for (const TSharedPtr<FJsonValue>& Value : *Modules)
	{
		const TSharedPtr<FJsonObject>* Module = nullptr;
		FModuleDescriptor Descriptor;
		if (!Value->TryGetObject(Module))
		{
			OutFailReason = LOCTEXT("ModuleNoObject", "an entry of \"Modules\" is no object");
			return false;
		}
		if (!Descriptor.Read(**Module, OutFailReason))
		{
			return false;
		}
		OutModules.Add(Descriptor);
	}
	return true;
}

bool FPluginDescriptor::Load(const FString& FileName, FText& OutFailReason)
{
	const TSharedPtr<FJsonObject> Object = DescriptorFile::Load(FileName, OutFailReason);
	if (!Object)
	{
		return false;
	}
	Object->TryGetNumberField(TEXT("Version"), Version);
	Object->TryGetStringField(TEXT("VersionName"), VersionName);
	Object->TryGetStringField(TEXT("FriendlyName"), FriendlyName);
	Object->TryGetStringField(TEXT("Description"), Description);
	Object->TryGetStringField(TEXT("Category"), Category);
	Object->TryGetStringField(TEXT("CreatedBy"), CreatedBy);
	Object->TryGetBoolField(TEXT("CanContainContent"), bCanContainContent);
	Object->TryGetBoolField(TEXT("EnabledByDefault"), bEnabledByDefault);
	Plugins = Descriptors::ReadPlugins(*Object);
	return DescriptorFile::ReadModules(*Object, Modules, OutFailReason);
}

bool FProjectDescriptor::Load(const FString& FileName, FText& OutFailReason)
{
	const TSharedPtr<FJsonObject> Object = DescriptorFile::Load(FileName, OutFailReason);
	if (!Object || !DescriptorFile::ReadModules(*Object, Modules, OutFailReason))
	{
		return false;
	}
	Object->TryGetStringField(TEXT("EngineAssociation"), EngineAssociation);
	Object->TryGetStringField(TEXT("Category"), Category);
	Object->TryGetStringField(TEXT("Description"), Description);
	for (const FPluginReferenceDescriptor& Reference : Descriptors::ReadPlugins(*Object))
	{
		PluginsEnabled.Add(Reference.Name, Reference.bEnabled);
	}
	return true;
}

#undef LOCTEXT_NAMESPACE
