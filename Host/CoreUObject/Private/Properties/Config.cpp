#include "Misc/ConfigCacheIni.h"

#include "CoreGlobals.h"
#include "Misc/Paths.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"

DEFINE_LOG_CATEGORY_STATIC(LogObjectConfig, Log, All);

namespace ObjectConfig
{
/** The section of a property: a global one has that of the class that declares it. */
FString GetSection(const UClass* Class, const FProperty& Property)
{
	return (Property.HasAnyPropertyFlags(CPF_GlobalConfig) ? Property.GetOwnerClass() : Class)->GetPathName();
}

/** "Name", or "Name[1]" for an element of a C array. */
FString GetKey(const FProperty& Property, int32 Index)
{
	return Property.ArrayDim == 1 ? Property.GetName() : FString::Printf(TEXT("%s[%d]"), *Property.GetName(), Index);
}

void Import(const FProperty& Property, const FString& Text, void* Value, UObject* Object)
{
	UE_CLOG(!Property.ImportText_Direct(*Text, Value, Object, PPF_None), LogObjectConfig, Warning,
		TEXT("'%s' is no value for %s"), *Text, *Property.GetPathName());
}

void LoadArray(const FArrayProperty& Property, const FString& Section, const FString& Filename, UObject* Object)
{
	TArray<FString> Lines;
	if (GConfig->GetArray(*Section, *Property.GetName(), Lines, Filename) == 0)
	{
		return;
	}
	FScriptArrayHelper_InContainer Array(&Property, Object);
	Array.EmptyAndAddValues(Lines.Num());
	for (int32 Index = 0; Index < Lines.Num(); ++Index)
	{
		Import(*Property.Inner, Lines[Index], Array.GetRawPtr(Index), Object);
	}
}

void Load(const FProperty& Property, const FString& Section, const FString& Filename, UObject* Object)
{
	if (const FArrayProperty* ArrayProperty = CastField<FArrayProperty>(&Property))
	{
		LoadArray(*ArrayProperty, Section, Filename, Object);
		return;
	}
	for (int32 Index = 0; Index < Property.ArrayDim; ++Index)
	{
		FString Text;
		if (GConfig->GetString(*Section, *GetKey(Property, Index), Text, Filename))
		{
			Import(Property, Text, Property.ContainerPtrToValuePtr<void>(Object, Index), Object);
		}
	}
}

FString Export(const FProperty& Property, const void* Value, UObject* Object)
{
	FString Text;
	Property.ExportTextItem_Direct(Text, Value, Value, Object, PPF_None);
	return Text;
}

/** Hands each key of a property, with its values, to Sink(Key, Values). */
template <typename SinkType>
void ForEachKey(const FProperty& Property, UObject* Object, SinkType Sink)
{
	if (const FArrayProperty* ArrayProperty = CastField<FArrayProperty>(&Property))
	{
		const FScriptArrayHelper_InContainer Array(ArrayProperty, Object);
		TArray<FString> Values;
		for (int32 Index = 0; Index < Array.Num(); ++Index)
		{
			Values.Add(Export(*ArrayProperty->Inner, Array.GetRawPtr(Index), Object));
		}
		Sink(Property.GetName(), Values);
		return;
	}
	for (int32 Index = 0; Index < Property.ArrayDim; ++Index)
	{
		const FString Text = Export(Property, Property.ContainerPtrToValuePtr<void>(Object, Index), Object);
		Sink(GetKey(Property, Index), TArray<FString>{ Text });
	}
}

/** Properties that are kept in a configuration file. */
template <typename FunctionType>
void ForEachProperty(const UClass* Class, uint64 Flags, FunctionType Function)
{
	for (TFieldIterator<FProperty> It(Class); It; ++It)
	{
		if (It->HasAnyPropertyFlags(Flags) && !It->HasAnyPropertyFlags(CPF_Transient))
		{
			Function(**It);
		}
	}
}

void CopyToDefaultObject(UObject* Object, uint64 Flags)
{
	UObject* const Default = Object->GetClass()->GetDefaultObject();
	if (Default != Object)
	{
		ForEachProperty(Object->GetClass(), Flags,
			[=](const FProperty& Property) { Property.CopyCompleteValue_InContainer(Default, Object); });
	}
}
}

const FString UClass::GetConfigName() const
{
	checkf(!ClassConfigName.IsNone(), TEXT("The class %s names no configuration"), *GetName());
	FString Filename;
	FConfigCacheIni::LoadGlobalIniFile(Filename, *ClassConfigName.ToString());
	return Filename;
}

void UObject::LoadConfig(UClass* ConfigClass, const TCHAR* Filename, uint32 PropagationFlags, FProperty* PropertyToLoad)
{
	const UClass* const Class = ConfigClass ? ConfigClass : GetClass();
	if (!Class->HasAnyClassFlags(CLASS_Config))
	{
		return;
	}
	// What a parent's section says holds for the children too, unless their own section says otherwise.
	if (Class->GetSuperClass() && Class->GetSuperClass()->HasAnyClassFlags(CLASS_Config) && !Filename)
	{
		LoadConfig(Class->GetSuperClass(), nullptr, PropagationFlags, PropertyToLoad);
	}
	const FString File = Filename ? FString(Filename) : Class->GetConfigName();
	ObjectConfig::ForEachProperty(Class, CPF_Config, [&](const FProperty& Property) {
		if (!PropertyToLoad || PropertyToLoad == &Property)
		{
			ObjectConfig::Load(Property, ObjectConfig::GetSection(Class, Property), File, this);
		}
	});
}

void UObject::ReloadConfig(
	UClass* ConfigClass, const TCHAR* Filename, uint32 PropagationFlags, FProperty* PropertyToLoad)
{
	if (!GetClass()->HasAnyClassFlags(CLASS_Config))
	{
		return;
	}
	LoadConfig(ConfigClass, Filename, PropagationFlags, PropertyToLoad);
	PostEditChange();
}

void UObject::SaveConfig(uint64 Flags, const TCHAR* Filename, FConfigCacheIni* Config, bool bAllowCopyToDefaultObject)
{
	const UClass* const Class = GetClass();
	if (!Class->HasAnyClassFlags(CLASS_Config) || !Config)
	{
		return;
	}
	const FString File = Filename ? FString(Filename) : Class->GetConfigName();
	ObjectConfig::ForEachProperty(Class, Flags, [&](const FProperty& Property) {
		const FString Section = ObjectConfig::GetSection(Class, Property);
		ObjectConfig::ForEachKey(Property, this,
			[&](const FString& Key, const TArray<FString>& Values) { Config->SetArray(*Section, *Key, Values, File); });
	});
	Config->Flush(false, File);
	if (bAllowCopyToDefaultObject)
	{
		ObjectConfig::CopyToDefaultObject(this, Flags);
	}
}

FString UObject::GetDefaultConfigFilename() const
{
	return FPaths::ProjectConfigDir() / TEXT("Default") + GetClass()->ClassConfigName.ToString() + TEXT(".ini");
}

bool UObject::TryUpdateDefaultConfigFile(const FString& SpecificFileLocation)
{
	const FString File = SpecificFileLocation.IsEmpty() ? GetDefaultConfigFilename() : SpecificFileLocation;
	FConfigFile Ini;
	Ini.Read(File);
	ObjectConfig::ForEachProperty(GetClass(), CPF_Config, [&](const FProperty& Property) {
		FConfigSection& Section = Ini.FindOrAddSection(ObjectConfig::GetSection(GetClass(), Property));
		ObjectConfig::ForEachKey(Property, this,
			[&](const FString& Key, const TArray<FString>& Values) { Section.SetArray(FName(*Key), Values); });
	});
	if (!Ini.Write(File, FConfigFile()))
	{
		UE_LOG(LogObjectConfig, Warning, TEXT("The configuration file %s cannot be written"), *File);
		return false;
	}
	GConfig->Flush(true, GetClass()->GetConfigName());
	return true;
}
