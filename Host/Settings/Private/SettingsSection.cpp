#include "SettingsSection.h"

#include "CoreGlobals.h"
#include "Misc/ConfigCacheIni.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"

FSettingsSection::FSettingsSection(const TWeakPtr<ISettingsCategory>& InCategory, const FName& InName,
	const FText& InDisplayName, const FText& InDescription, const TWeakObjectPtr<UObject>& InSettingsObject)
	: Category(InCategory)
	, Name(InName)
	, DisplayName(InDisplayName)
	, Description(InDescription)
	, SettingsObject(InSettingsObject)
{
}

bool FSettingsSection::CanSave() const
{
	return SettingsObject.IsValid() && SettingsObject->GetClass()->HasAnyClassFlags(CLASS_Config);
}

bool FSettingsSection::NotifySectionOnPropertyModified()
{
	return !ModifiedDelegate.IsBound() || ModifiedDelegate.Execute();
}

bool FSettingsSection::Save()
{
	if ((SaveDelegate.IsBound() && !SaveDelegate.Execute()) || !CanSave())
	{
		return false;
	}
	if (SettingsObject->GetClass()->HasAnyClassFlags(CLASS_DefaultConfig))
	{
		return SettingsObject->TryUpdateDefaultConfigFile();
	}
	SettingsObject->SaveConfig();
	return true;
}

bool FSettingsSection::ResetDefaults()
{
	if (ResetDefaultsDelegate.IsBound())
	{
		return ResetDefaultsDelegate.Execute();
	}
	if (!CanSave() || !GConfig)
	{
		return false;
	}
	// A new object takes its configuration from the default object, which may be the very one that is reset: the
	// section is emptied, and the values are those of an object for which only the constructor has run.
	UClass* const Class = SettingsObject->GetClass();
	const FString File = Class->GetConfigName();
	GConfig->EmptySection(*Class->GetPathName(), File);
	GConfig->Flush(true, File);
	const UObject* const Fresh =
		NewObject<UObject>(GetTransientPackage(), Class, NAME_None, RF_Transient | RF_ClassDefaultObject);
	for (TFieldIterator<FProperty> It(Class); It; ++It)
	{
		if (It->HasAnyPropertyFlags(CPF_Config))
		{
			It->CopyCompleteValue_InContainer(SettingsObject.Get(), Fresh);
		}
	}
	SettingsObject->PostEditChange();
	return true;
}
