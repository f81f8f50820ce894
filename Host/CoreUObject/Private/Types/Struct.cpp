#include "Templates/Casts.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"

namespace StructImpl
{
/** One list holds the metadata of a field; an absent key reads as an empty text. */
const FString& GetMetaData(const TMap<FName, FString>& MetaData, const FName& Key)
{
	static const FString Empty;
	const FString* Found = MetaData.Find(Key);
	return Found ? *Found : Empty;
}

int32 AlignUp(int32 Value, int32 Alignment)
{
	return (Value + Alignment - 1) / Alignment * Alignment;
}
}

const FString& UField::GetMetaData(const FName& Key) const
{
	return StructImpl::GetMetaData(MetaData, Key);
}

bool UField::GetBoolMetaData(const FName& Key) const
{
	const FString* Found = FindMetaData(Key);
	return Found && (Found->IsEmpty() || Found->ToBool());
}

FText UField::GetDisplayNameText() const
{
	static const FName DisplayName(TEXT("DisplayName"));
	const FString& Text = GetMetaData(DisplayName);
	return FText::FromString(Text.IsEmpty() ? FName::NameToDisplayString(GetName(), false) : Text);
}

FText UField::GetToolTipText(bool bShortTooltip) const
{
	static const FName ToolTip(TEXT("ToolTip"));
	static const FName ShortToolTip(TEXT("ShortToolTip"));
	const bool bShort = bShortTooltip && HasMetaData(ShortToolTip);
	const FString& Text = GetMetaData(bShort ? ShortToolTip : ToolTip);
	return Text.IsEmpty() ? GetDisplayNameText() : FText::FromString(Text);
}

UClass* UField::GetOwnerClass() const
{
	UObject* Object = const_cast<UField*>(this);
	while (Object && !Object->IsA(UClass::StaticClass()))
	{
		Object = Object->GetOuter();
	}
	return static_cast<UClass*>(Object);
}

UStruct* UField::GetOwnerStruct() const
{
	UObject* Object = const_cast<UField*>(this);
	while (Object && !Object->IsA(UStruct::StaticClass()))
	{
		Object = Object->GetOuter();
	}
	return static_cast<UStruct*>(Object);
}

UStruct::~UStruct()
{
	DestroyChildProperties();
}

bool UStruct::IsChildOf(const UStruct* SomeBase) const
{
	if (!SomeBase)
	{
		return false;
	}
	const UStruct* Struct = this;
	while (Struct && Struct != SomeBase)
	{
		Struct = Struct->GetSuperStruct();
	}
	return Struct != nullptr;
}

int32 UStruct::GetStructureSize() const
{
	return StructImpl::AlignUp(PropertiesSize, MinAlignment);
}

FProperty* UStruct::FindPropertyByName(FName InName) const
{
	for (TFieldIterator<FProperty> It(this); It; ++It)
	{
		if (It->GetFName() == InName)
		{
			return *It;
		}
	}
	return nullptr;
}

void UStruct::AddCppProperty(FProperty* Property)
{
	FField** Last = &ChildProperties;
	while (*Last)
	{
		Last = &(*Last)->Next;
	}
	*Last = Property;
}

void UStruct::DestroyChildProperties()
{
	while (ChildProperties)
	{
		FField* const First = ChildProperties;
		ChildProperties = First->Next;
		delete First;
	}
	PropertyLink = nullptr;
}

void UStruct::StaticLink(bool bRelinkExistingProperties)
{
	const UStruct* const InheritanceSuper = GetInheritanceSuper();
	if (!bNativeLayout)
	{
		PropertiesSize = InheritanceSuper ? InheritanceSuper->PropertiesSize : 0;
		MinAlignment = InheritanceSuper ? InheritanceSuper->MinAlignment : 1;
	}
	FProperty** Link = &PropertyLink;
	for (TFieldIterator<FProperty> It(this, EFieldIterationFlags::None); It; ++It)
	{
		It->LinkInternal();
		if (!bNativeLayout)
		{
			It->SetOffset_Internal(StructImpl::AlignUp(PropertiesSize, It->GetMinAlignment()));
			PropertiesSize = It->GetOffset_ForInternal() + It->GetSize();
			MinAlignment = FMath::Max(MinAlignment, It->GetMinAlignment());
		}
		*Link = *It;
		Link = &It->PropertyLinkNext;
	}
	*Link = InheritanceSuper ? InheritanceSuper->PropertyLink : nullptr;
}

void UStruct::InitializeStruct(void* Dest, int32 Count) const
{
	for (int32 Index = 0; Index < Count; ++Index)
	{
		uint8* const Value = static_cast<uint8*>(Dest) + static_cast<SIZE_T>(Index) * GetStructureSize();
		for (TFieldIterator<FProperty> It(this); It; ++It)
		{
			It->InitializeValue_InContainer(Value);
		}
	}
}

void UStruct::DestroyStruct(void* Dest, int32 Count) const
{
	for (int32 Index = 0; Index < Count; ++Index)
	{
		uint8* const Value = static_cast<uint8*>(Dest) + static_cast<SIZE_T>(Index) * GetStructureSize();
		for (TFieldIterator<FProperty> It(this); It; ++It)
		{
			It->DestroyValue_InContainer(Value);
		}
	}
}

bool UStruct::HasReferences() const
{
	for (TFieldIterator<FProperty> It(this); It; ++It)
	{
		if (It->ContainsObjectReference())
		{
			return true;
		}
	}
	return false;
}

void UStruct::CollectReferences(void* Value, FReferenceCollector& Collector) const
{
	for (TFieldIterator<FProperty> It(this); It; ++It)
	{
		if (!It->ContainsObjectReference())
		{
			continue;
		}
		for (int32 Index = 0; Index < It->ArrayDim; ++Index)
		{
			It->CollectReferences(It->ContainerPtrToValuePtr<void>(Value, Index), Collector);
		}
	}
}

void UStruct::AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector)
{
	Super::AddReferencedObjects(InThis, Collector);
	UStruct* const This = static_cast<UStruct*>(InThis);
	Collector.AddReferencedObject(This->SuperStruct);
	for (UField* Child = This->Children; Child; Child = Child->Next)
	{
		Collector.AddReferencedObject(Child);
	}
	for (TFieldIterator<FProperty> It(This, EFieldIterationFlags::None); It; ++It)
	{
		It->CollectTypes(Collector);
	}
}
