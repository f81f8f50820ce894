#include "Properties/PropertyText.h"
#include "UObject/UnrealType.h"

namespace DelegateProperties
{
/** "FOnDied" of the signature "OnDied__DelegateSignature". */
FString GetDelegateName(const UFunction* Signature)
{
	FString Name = Signature->GetName();
	Name.RemoveFromEnd(TEXT("__DelegateSignature"));
	return TEXT("F") + Name;
}

FString ToText(const FScriptDelegate& Delegate)
{
	const UObject* const Object = Delegate.GetUObject();
	return (Object ? Object->GetPathName() : FString(TEXT("(null)"))) + TEXT(".") +
		   Delegate.GetFunctionName().ToString();
}

/** Reads "Path.Function", or the name of a function of Owner. Null when there is no such object or function. */
const TCHAR* Read(const TCHAR* Buffer, UObject* Owner, FScriptDelegate& OutDelegate)
{
	static const FStringView NullText = TEXT("(null).None");
	if (FStringView(Buffer).StartsWith(NullText))
	{
		OutDelegate.Unbind();
		return Buffer + NullText.Len();
	}
	FString Text;
	const TCHAR* const End = PropertyText::ReadPath(Buffer, Text);
	if (!End)
	{
		return nullptr;
	}
	int32 Dot = INDEX_NONE;
	Text.FindLastChar(u'.', Dot);
	UObject* const Object = Dot == INDEX_NONE ? Owner : StaticFindObject(nullptr, nullptr, *Text.Left(Dot));
	const FName Function(*Text.Mid(Dot + 1), FNAME_Find);
	if (!Object || !Object->FindFunction(Function))
	{
		return nullptr;
	}
	OutDelegate.BindUFunction(Object, Function);
	return End;
}
}

FString FDelegateProperty::GetCPPType(FString*, uint32) const
{
	return DelegateProperties::GetDelegateName(SignatureFunction);
}

void FDelegateProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(SignatureFunction);
}

bool FDelegateProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) &&
		   static_cast<const FDelegateProperty*>(Other)->SignatureFunction == SignatureFunction;
}

void FDelegateProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32, UObject*) const
{
	ValueStr += DelegateProperties::ToText(GetPropertyValue(PropertyValue));
}

const TCHAR* FDelegateProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32, FOutputDevice*) const
{
	return DelegateProperties::Read(Buffer, OwnerObject, *GetPropertyValuePtr(Value));
}

void FMulticastDelegateProperty::CollectTypes(FReferenceCollector& Collector) const
{
	Collector.AddReferencedObject(SignatureFunction);
}

bool FMulticastDelegateProperty::SameType(const FProperty* Other) const
{
	return Super::SameType(Other) &&
		   static_cast<const FMulticastDelegateProperty*>(Other)->SignatureFunction == SignatureFunction;
}

void FMulticastDelegateProperty::ExportText_Internal(
	FString& ValueStr, const void* PropertyValue, const void*, UObject*, int32, UObject*) const
{
	const FMulticastScriptDelegate* const Delegate = GetMulticastDelegate(PropertyValue);
	ValueStr += TEXT("(");
	const TCHAR* Separator = TEXT("");
	for (const FScriptDelegate& Each : Delegate ? GetInvocationList(*Delegate) : TArray<FScriptDelegate>())
	{
		if (Each.IsBound())
		{
			ValueStr += Separator + DelegateProperties::ToText(Each);
			Separator = TEXT(",");
		}
	}
	ValueStr += TEXT(")");
}

const TCHAR* FMulticastDelegateProperty::ImportText_Internal(
	const TCHAR* Buffer, void* Value, UObject* OwnerObject, int32, FOutputDevice*) const
{
	FMulticastScriptDelegate Delegates;
	const TCHAR* const End = PropertyText::ReadList(Buffer, [&](const TCHAR* Text) -> const TCHAR* {
		FScriptDelegate Delegate;
		const TCHAR* const Rest = DelegateProperties::Read(Text, OwnerObject, Delegate);
		if (Rest)
		{
			Delegates.AddUnique(Delegate);
		}
		return Rest;
	});
	if (End)
	{
		SetMulticastDelegate(Value, Delegates);
	}
	return End;
}

FString FMulticastInlineDelegateProperty::GetCPPType(FString*, uint32) const
{
	return DelegateProperties::GetDelegateName(SignatureFunction);
}

FMulticastScriptDelegate& FMulticastInlineDelegateProperty::GetValue(UObject* Parent, void* PropertyValue) const
{
	checkf(Parent || PropertyValue, TEXT("%s: neither an object nor a value is given"), *GetName());
	return PropertyValue ? *GetPropertyValuePtr(PropertyValue)
						 : *ContainerPtrToValuePtr<FMulticastScriptDelegate>(Parent);
}
