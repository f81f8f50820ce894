#include "Packages/PackageLoader.h"
#include "Properties/PropertyText.h"
#include "UObject/ObjectText.h"
#include "UObject/UnrealType.h"

namespace ReferenceProperties
{
/** A class or object by its path, or by its short name. */
UObject* FindReferenced(const FString& Text)
{
	return StaticFindFirstObject(nullptr, *PropertyText::StripExportPath(Text));
}

void ExportReference(FString& ValueStr, const UObject* Object, int32 PortFlags)
{
	if (FObjectReferences* const References = FObjectReferences::GetCurrent())
	{
		const FString Text = References->Describe(Object);
		const bool bQuoted = (PortFlags & PPF_Delimited) && !Text.Equals(TEXT("None"));
		// A path's single quotes need no escape inside of double ones; names with anything else to escape are rare.
		const bool bPlain = !Text.Contains(TEXT("\"")) && !Text.Contains(TEXT("\\"));
		ValueStr += !bQuoted ? Text : bPlain ? TEXT("\"") + Text + TEXT("\"") : PropertyText::Quote(Text);
	}
	else if (!Object)
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

/** Null for what is no reference, is not there or is not allowed; of an object that is loaded, the latter become null.
 */
const TCHAR* ImportReference(const TCHAR* Buffer, UObject*& OutObject, TFunctionRef<bool(const UObject*)> IsAllowed)
{
	FString Text;
	const TCHAR* const End = PropertyText::ReadPath(Buffer, Text);
	if (!End || Text == TEXT("None"))
	{
		return End;
	}
	FObjectReferences* const References = FObjectReferences::GetCurrent();
	UObject* const Object = References ? References->Find(Text) : FindReferenced(Text);
	if (Object && IsAllowed(Object))
	{
		OutObject = Object;
		return End;
	}
	if (Object && References)
	{
		References->Reject(*Object, Text);
	}
	return References ? End : nullptr;
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
	ReferenceProperties::ExportReference(ValueStr, GetObjectPropertyValue(PropertyValue), PortFlags);
}

const TCHAR* FObjectPropertyBase::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject*, int32, FOutputDevice*) const
{
	UObject* Object = nullptr;
	const TCHAR* const End = ReferenceProperties::ImportReference(
		Buffer, Object, [this](const UObject* Found) { return AllowsObject(Found); });
	if (End)
	{
		SetObjectPropertyValue(Value, Object);
	}
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
	if (!Super::AllowsObject(Object))
	{
		return false;
	}
	// A class that comes from a file has no parent before it is compiled, and may be referred to before.
	const UClass* const Class = static_cast<const UClass*>(Object);
	const bool bNotCompiled = FPackageLoader::IsLoading() && !Class->IsNative() && !Class->GetSuperClass();
	return bNotCompiled || Class->IsChildOf(MetaClass);
}

FString FInterfaceProperty::GetCPPType(FString* ExtendedTypeText, uint32) const
{
	if (ExtendedTypeText)
	{
		*ExtendedTypeText = TEXT("<I") + InterfaceClass->GetName() + TEXT(">");
	}
	return TEXT("TScriptInterface");
}

void FInterfaceProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(InterfaceClass);
}

bool FInterfaceProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) && static_cast<const FInterfaceProperty*>(Other)->InterfaceClass == InterfaceClass;
}

void FInterfaceProperty::CollectReferences(void* Value, FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(GetPropertyValuePtr(Value)->GetObjectRef());
}

void FInterfaceProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32 PortFlags, UObject*) const
{
	ReferenceProperties::ExportReference(ValueStr, GetPropertyValue(PropertyValue).GetObject(), PortFlags);
}

const TCHAR* FInterfaceProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject*, int32, FOutputDevice*) const
{
	UObject* Object = nullptr;
	const TCHAR* const End = ReferenceProperties::ImportReference(Buffer, Object,
		[this](const UObject* Found) { return Found->GetClass()->ImplementsInterface(InterfaceClass); });
	if (End)
	{
		SetPropertyValue(
			Value, FScriptInterface(Object, Object ? Object->GetNativeInterfaceAddress(InterfaceClass) : nullptr));
	}
	return End;
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
