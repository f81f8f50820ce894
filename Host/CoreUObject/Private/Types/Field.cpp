#include "UObject/EnumProperty.h"
#include "UObject/TextProperty.h"
#include "UObject/UnrealType.h"

#define IMPLEMENT_ABSTRACT_FIELD(TClass)                                                                               \
	FFieldClass* TClass::StaticClass()                                                                                 \
	{                                                                                                                  \
		static FFieldClass Class(&TEXT(#TClass)[1], Super::StaticClass(), nullptr);                                    \
		return &Class;                                                                                                 \
	}

#define IMPLEMENT_FIELD(TClass)                                                                                        \
	FFieldClass* TClass::StaticClass()                                                                                 \
	{                                                                                                                  \
		static FFieldClass Class(&TEXT(#TClass)[1], Super::StaticClass(),                                              \
			[](const FFieldVariant& Owner, const FName& Name, EObjectFlags Flags) -> FField* {                         \
				return new TClass(Owner, Name, Flags);                                                                 \
			});                                                                                                        \
		return &Class;                                                                                                 \
	}

FFieldClass* FField::StaticClass()
{
	static FFieldClass Class(TEXT("Field"), nullptr, nullptr);
	return &Class;
}

IMPLEMENT_ABSTRACT_FIELD(FProperty)
IMPLEMENT_ABSTRACT_FIELD(FNumericProperty)
IMPLEMENT_ABSTRACT_FIELD(FObjectPropertyBase)
IMPLEMENT_FIELD(FInt8Property)
IMPLEMENT_FIELD(FInt16Property)
IMPLEMENT_FIELD(FIntProperty)
IMPLEMENT_FIELD(FInt64Property)
IMPLEMENT_FIELD(FUInt16Property)
IMPLEMENT_FIELD(FUInt32Property)
IMPLEMENT_FIELD(FUInt64Property)
IMPLEMENT_FIELD(FFloatProperty)
IMPLEMENT_FIELD(FDoubleProperty)
IMPLEMENT_FIELD(FByteProperty)
IMPLEMENT_FIELD(FBoolProperty)
IMPLEMENT_FIELD(FStrProperty)
IMPLEMENT_FIELD(FNameProperty)
IMPLEMENT_FIELD(FTextProperty)
IMPLEMENT_FIELD(FEnumProperty)
IMPLEMENT_FIELD(FObjectProperty)
IMPLEMENT_FIELD(FClassProperty)
IMPLEMENT_FIELD(FWeakObjectProperty)
IMPLEMENT_FIELD(FSoftObjectProperty)
IMPLEMENT_FIELD(FSoftClassProperty)
IMPLEMENT_FIELD(FInterfaceProperty)
IMPLEMENT_FIELD(FStructProperty)
IMPLEMENT_FIELD(FDelegateProperty)
IMPLEMENT_ABSTRACT_FIELD(FMulticastDelegateProperty)
IMPLEMENT_FIELD(FMulticastInlineDelegateProperty)
IMPLEMENT_FIELD(FArrayProperty)
IMPLEMENT_FIELD(FSetProperty)
IMPLEMENT_FIELD(FMapProperty)

FString FField::GetPathName(const UObject* StopOuter) const
{
	const UObject* Object = Owner.ToUObject();
	const FString OwnerPath = Object            ? Object->GetPathName(StopOuter)
							  : Owner.ToField() ? Owner.ToField()->GetPathName(StopOuter)
												: FString();
	const bool bTopLevel = Object && Object->GetOuter() && !Object->GetOuter()->GetOuter();
	return OwnerPath.IsEmpty() ? GetName() : OwnerPath + (bTopLevel ? TEXT(":") : TEXT(".")) + GetName();
}

FString FField::GetFullName() const
{
	return GetClass()->GetName() + TEXT(" ") + GetPathName();
}

UClass* FField::GetOwnerClass() const
{
	return GetOwner<UClass>();
}

UStruct* FField::GetOwnerStruct() const
{
	return GetOwner<UStruct>();
}

const FString& FField::GetMetaData(const FName& Key) const
{
	static const FString Empty;
	const FString* Found = FindMetaData(Key);
	return Found ? *Found : Empty;
}

bool FField::GetBoolMetaData(const FName& Key) const
{
	const FString* Found = FindMetaData(Key);
	return Found && (Found->IsEmpty() || Found->ToBool());
}

FText FField::GetDisplayNameText() const
{
	static const FName DisplayName(TEXT("DisplayName"));
	const FString& Text = GetMetaData(DisplayName);
	return FText::FromString(
		Text.IsEmpty() ? FName::NameToDisplayString(GetName(), IsA(FBoolProperty::StaticClass())) : Text);
}

FText FField::GetToolTipText(bool bShortTooltip) const
{
	static const FName ToolTip(TEXT("ToolTip"));
	const FString& Text = GetMetaData(ToolTip);
	return Text.IsEmpty() ? GetDisplayNameText() : FText::FromString(Text);
}
