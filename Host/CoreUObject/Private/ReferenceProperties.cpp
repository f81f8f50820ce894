#include "PropertyText.h"
#include "UObject/UnrealType.h"

namespace ReferenceProperties
{
/** A class or object by its path, or by its short name. */
UObject* FindReferenced(const FString& Text)
{
	return StaticFindFirstObject(nullptr, *PropertyText::StripExportPath(Text));
}

FString GetPrefixedName(const UClass* Class)
{
	return Class->GetPrefixCPP() + Class->GetName();
}
}

bool FObjectPropertyBase::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && static_cast<const FObjectPropertyBase*>(Other)->PropertyClass == PropertyClass;
}

void FObjectPropertyBase::CollectTypes(FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(PropertyClass);
}

bool FObjectPropertyBase::AllowsObject(const UObject* Object) const
{
	return Object->IsA(PropertyClass);
}

void FObjectPropertyBase::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	const UObject* const Object = GetObjectPropertyValue(PropertyValue);
	if (!Object)
	{
		ValueStr += TEXT("None");
	}
	else if (PortFlags & PPF_SimpleObjectText)
	{
		ValueStr += Object->GetPathName();
	}
	else if (PortFlags & PPF_ExportsNotFullyQualified)
	{
		ValueStr += Object->GetName();
	}
	else
	{
		const TCHAR* const Quote = (PortFlags & PPF_Delimited) ? TEXT("\"") : TEXT("");
		ValueStr += Object->GetClass()->GetPathName() + TEXT("'") + Quote + Object->GetPathName() + Quote + TEXT("'");
	}
}

const TCHAR* FObjectPropertyBase::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject*, int32, FOutputDevice*) const
{
	FString Text;
	const TCHAR* const End = PropertyText::ReadPath(Buffer, Text);
	if (!End)
	{
		return nullptr;
	}
	if (Text == TEXT("None"))
	{
		SetObjectPropertyValue(Value, nullptr);
		return End;
	}
	UObject* const Object = ReferenceProperties::FindReferenced(Text);
	if (!Object || !AllowsObject(Object))
	{
		return nullptr;
	}
	SetObjectPropertyValue(Value, Object);
	return End;
}

FString FObjectProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	const FString Name = ReferenceProperties::GetPrefixedName(PropertyClass);
	if (!HasAnyPropertyFlags(CPF_UObjectWrapper))
	{
		return Name + TEXT("*");
	}
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + Name + TEXT(">");
	}
	return TEXT("TObjectPtr");
}

void FObjectProperty::CollectReferences(void* Value, FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(*GetPropertyValuePtr(Value));
}

FClassProperty::FClassProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
	: FObjectProperty(InOwner, InName, InFlags)
{
	PropertyClass = UClass::StaticClass();
}

FString FClassProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (!HasAnyPropertyFlags(CPF_UObjectWrapper))
	{
		return TEXT("UClass*");
	}
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + ReferenceProperties::GetPrefixedName(MetaClass) + TEXT(">");
	}
	return TEXT("TSubclassOf");
}

bool FClassProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && static_cast<const FClassProperty*>(Other)->MetaClass == MetaClass;
}

void FClassProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Super::CollectTypes(Collector);
	Collector.AddReferencedObject(MetaClass);
}

bool FClassProperty::AllowsObject(const UObject* Object) const
{
	return Super::AllowsObject(Object) && static_cast<const UClass*>(Object)->IsChildOf(MetaClass);
}

FString FWeakObjectProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + ReferenceProperties::GetPrefixedName(PropertyClass) + TEXT(">");
	}
	return TEXT("TWeakObjectPtr");
}

FString FSoftObjectProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + ReferenceProperties::GetPrefixedName(PropertyClass) + TEXT(">");
	}
	return TEXT("TSoftObjectPtr");
}

void FSoftObjectProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject* Parent, int32 PortFlags, UObject*) const
{
	const FSoftObjectPath& Path = GetPropertyValue(PropertyValue).ToSoftObjectPath();
	Path.ExportTextItem(ValueStr, FSoftObjectPath(), Parent, PortFlags, nullptr);
}

const TCHAR* FSoftObjectProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	FSoftObjectPath Path;
	if (!Path.ImportTextItem(Buffer, PortFlags, OwnerObject, ErrorText))
	{
		return nullptr;
	}
	SetPropertyValue(Value, FSoftObjectPtr(Path));
	return Buffer;
}

FSoftClassProperty::FSoftClassProperty(FFieldVariant InOwner, const FName& InName, EObjectFlags InFlags)
	: FSoftObjectProperty(InOwner, InName, InFlags)
{
	PropertyClass = UClass::StaticClass();
}

FString FSoftClassProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<") + ReferenceProperties::GetPrefixedName(MetaClass) + TEXT(">");
	}
	return TEXT("TSoftClassPtr");
}

bool FSoftClassProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && static_cast<const FSoftClassProperty*>(Other)->MetaClass == MetaClass;
}

void FSoftClassProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Super::CollectTypes(Collector);
	Collector.AddReferencedObject(MetaClass);
}

FString FStructProperty::GetCPPType(FString*, uint32) const
{
	return Struct->GetStructCPPName();
}

bool FStructProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && static_cast<const FStructProperty*>(Other)->Struct == Struct;
}

void FStructProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(Struct);
}

void FStructProperty::LinkInternal()
{
	ElementSize = Struct->GetStructureSize();
	if (Struct->CanHash())
	{
		PropertyFlags |= CPF_HasGetValueTypeHash;
	}
}

bool FStructProperty::Identical(const void* A, const void* B, uint32 PortFlags) const
{
	return B && Struct->CompareScriptStruct(A, B, PortFlags);
}

void FStructProperty::CollectReferences(void* Value, FReferenceCollector& Collector) const
{
	Struct->CollectReferences(Value, Collector);
}

void FStructProperty::ExportText_Internal(FString& ValueStr, const void* PropertyValue, const void* DefaultValue,
	UObject* Parent, int32 PortFlags, UObject* ExportRootScope) const
{
	Struct->ExportText(ValueStr, PropertyValue, DefaultValue, Parent, PortFlags, ExportRootScope);
}

const TCHAR* FStructProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32 PortFlags, FOutputDevice* ErrorText) const
{
	return Struct->ImportText(Buffer, Value, OwnerObject, PortFlags, ErrorText, Struct->GetName());
}
