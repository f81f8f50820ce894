#include "Agent/Blueprints/KestrelBlueprintUtils.h"
#include "UObject/EnumProperty.h"
#include "UObject/TextProperty.h"
#include "UObject/UnrealType.h"

// Newer engines declare it in a header of its own.
#if __has_include("UObject/StrProperty.h")
#include "UObject/Field.h"
#include "UObject/PropertyPortFlags.h"
#include "UObject/StrProperty.h"
#endif

namespace PropertyValueText
{
struct FFallback
{
	const FFieldClass* Class;
	const TCHAR* Text;
};

/** What stands for a value that the engine's export leaves out, since it is the type's empty one. */
const TCHAR* GetEmptyText(const FProperty& Property)
{
	static const FFallback Fallbacks[] = {
		{ FNumericProperty::StaticClass(), TEXT("0") },
		{ FBoolProperty::StaticClass(), TEXT("False") },
		{ FObjectPropertyBase::StaticClass(), TEXT("None") },
		{ FInterfaceProperty::StaticClass(), TEXT("None") },
		{ FStrProperty::StaticClass(), TEXT("") },
		{ FNameProperty::StaticClass(), TEXT("") },
		{ FTextProperty::StaticClass(), TEXT("") },
		{ FStructProperty::StaticClass(), TEXT("") },
		{ FArrayProperty::StaticClass(), TEXT("") },
		{ FSetProperty::StaticClass(), TEXT("") },
		{ FMapProperty::StaticClass(), TEXT("") },
		{ FDelegateProperty::StaticClass(), TEXT("") },
		{ FMulticastDelegateProperty::StaticClass(), TEXT("") },
	};
	for (const FFallback& Fallback : Fallbacks)
	{
		if (Property.IsA(Fallback.Class))
		{
			return Fallback.Text;
		}
	}
	return TEXT("Error");
}

bool IsEnum(const FProperty& Property)
{
	const FByteProperty* Byte = CastField<FByteProperty>(&Property);
	return CastField<FEnumProperty>(&Property) || (Byte && Byte->Enum);
}
}

FString FKestrelBlueprintUtils::GetPropertyValueAsString(const void* Container, const FProperty* Property)
{
	if (!Container || !Property)
	{
		return TEXT("Invalid");
	}
	FString Text;
	const void* Value = Property->ContainerPtrToValuePtr<void>(Container);
	if (PropertyValueText::IsEnum(*Property))
	{
		Property->ExportTextItem_Direct(Text, Value, nullptr, nullptr, PPF_None); // the first value has a name, too
		return Text;
	}
	const bool bWritten = Property->ExportText_Direct(Text, Value, nullptr, nullptr, PPF_None);
	return bWritten ? Text : FString(PropertyValueText::GetEmptyText(*Property));
}
