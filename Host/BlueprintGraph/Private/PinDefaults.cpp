#include "EdGraphSchema_K2.h"
#include "K2Node.h"
#include "UObject/UnrealType.h"

#define LOCTEXT_NAMESPACE "KismetSchema"

namespace PinDefaults
{
using FSchema = UEdGraphSchema_K2;

bool IsObjectPin(const FEdGraphPinType& Type)
{
	return Type.PinCategory == FSchema::PC_Object || Type.PinCategory == FSchema::PC_Class ||
		   Type.PinCategory == FSchema::PC_Interface;
}

bool IsInteger(const FString& Text, int64 Smallest, int64 Greatest)
{
	if (!Text.IsNumeric() || Text.Contains(TEXT(".")))
	{
		return false;
	}
	int32 FirstDigit = Text[0] == TEXT('-') || Text[0] == TEXT('+') ? 1 : 0;
	while (Text[FirstDigit] == TEXT('0') && FirstDigit < Text.Len() - 1)
	{
		++FirstDigit;
	}
	// A number that does not fit into 64 bits is read as another one.
	const int64 Value = FCString::Atoi64(*Text);
	const uint64 Magnitude = Value < 0 ? 0 - static_cast<uint64>(Value) : static_cast<uint64>(Value);
	const bool bReadWhole = FString::Printf(TEXT("%llu"), Magnitude).Equals(Text.RightChop(FirstDigit));
	return bReadWhole && Value >= Smallest && Value <= Greatest;
}

bool IsBoolean(const FString& Text)
{
	return Text == TEXT("true") || Text == TEXT("false");
}

/** Three numbers with commas, as pins of vectors and rotators hold them. */
bool IsThreeNumbers(const FString& Text)
{
	TArray<FString> Parts;
	Text.ParseIntoArray(Parts, TEXT(","), false);
	for (FString& Part : Parts)
	{
		Part.TrimStartAndEndInline();
		if (!Part.IsNumeric())
		{
			return false;
		}
	}
	return Parts.Num() == 3;
}

bool IsThreeNumberStruct(const UObject* Struct)
{
	return Struct == TBaseStructure<FVector>::Get() || Struct == TBaseStructure<FRotator>::Get();
}

bool IsStructValue(const UScriptStruct& Struct, const FString& Text)
{
	if (IsThreeNumberStruct(&Struct) && IsThreeNumbers(Text))
	{
		return true;
	}
	TArray<uint8> Memory;
	Memory.SetNumZeroed(Struct.GetStructureSize());
	Struct.InitializeStruct(Memory.GetData());
	const bool bValid =
		Struct.ImportText(*Text, Memory.GetData(), nullptr, PPF_None, nullptr, Struct.GetName()) != nullptr;
	Struct.DestroyStruct(Memory.GetData());
	return bValid;
}

bool IsByteValue(const UObject* EnumObject, const FString& Text)
{
	const UEnum* const Enum = Cast<UEnum>(EnumObject);
	return Enum ? Enum->GetIndexByNameString(Text) != INDEX_NONE : IsInteger(Text, 0, 255);
}

FString GetError(const FEdGraphPinType& Type, const FString& Text)
{
	const FName Category = Type.PinCategory;
	const UObject* const Object = Type.PinSubCategoryObject.Get();
	const UScriptStruct* const Struct = Cast<UScriptStruct>(Object);
	if (Category == FSchema::PC_Boolean && !IsBoolean(Text))
	{
		return TEXT("it is neither true nor false");
	}
	if (Category == FSchema::PC_Byte && !IsByteValue(Object, Text))
	{
		return Object ? TEXT("the enum has no such entry") : TEXT("it is no number from 0 to 255");
	}
	if ((Category == FSchema::PC_Int && !IsInteger(Text, MIN_int32, MAX_int32)) ||
		(Category == FSchema::PC_Int64 && !IsInteger(Text, MIN_int64, MAX_int64)))
	{
		return TEXT("it is no integer that fits");
	}
	if (Category == FSchema::PC_Real && !Text.IsNumeric())
	{
		return TEXT("it is no number");
	}
	if (Category == FSchema::PC_Struct && Struct && !IsStructValue(*Struct, Text))
	{
		return TEXT("it is no value of the struct ") + Struct->GetName();
	}
	return FString();
}

/** Empty for an object that a link could bring to the pin, and for none. */
FString GetObjectError(const UEdGraphPin& Pin, UObject* Object)
{
	if (!Object)
	{
		return FString();
	}
	const bool bClassPin = Pin.PinType.PinCategory == FSchema::PC_Class;
	UClass* const Class = bClassPin ? Cast<UClass>(Object) : Object->GetClass();
	const FEdGraphPinType Given(bClassPin ? FSchema::PC_Class : FSchema::PC_Object, NAME_None, Class,
		EPinContainerType::None, false, FEdGraphTerminalType());
	const UK2Node* const Node = Cast<UK2Node>(Pin.GetOwningNodeUnchecked());
	const UClass* const Context = Node ? Node->GetBlueprintClassFromNode() : nullptr;
	return Class && GetDefault<FSchema>()->ArePinTypesCompatible(Given, Pin.PinType, Context)
			   ? FString()
			   : FString::Printf(TEXT("%s is not of the type %s"), *Object->GetName(),
					 *FSchema::TypeToText(Pin.PinType).ToString());
}

/** What the types have as a value when nothing is said. Null: no text. */
const TCHAR* GetPlainDefault(const FEdGraphPinType& Type)
{
	struct FEntry
	{
		FName Category;
		const TCHAR* Value;
	};
	static const FEntry Entries[] = {
		{ FSchema::PC_Int, TEXT("0") },
		{ FSchema::PC_Int64, TEXT("0") },
		{ FSchema::PC_Byte, TEXT("0") },
		{ FSchema::PC_Real, TEXT("0.0") },
		{ FSchema::PC_Boolean, TEXT("false") },
		{ FSchema::PC_Name, TEXT("None") },
	};
	for (const FEntry& Entry : Entries)
	{
		if (Entry.Category == Type.PinCategory)
		{
			return Entry.Value;
		}
	}
	const bool bThreeNumbers =
		Type.PinCategory == FSchema::PC_Struct && IsThreeNumberStruct(Type.PinSubCategoryObject.Get());
	return bThreeNumbers ? TEXT("0, 0, 0") : nullptr;
}
}

FString UEdGraphSchema_K2::IsDefaultTextValid(const UEdGraphPin& Pin, const FString& Text) const
{
	if (!PinDefaults::IsObjectPin(Pin.PinType) || Pin.PinType.IsContainer())
	{
		return IsPinDefaultValid(&Pin, Text, nullptr, FText::FromString(Text));
	}
	if (Text.IsEmpty() || Text == TEXT("None"))
	{
		return FString();
	}
	UObject* const Object = FindObject<UObject>(nullptr, *Text);
	return Object ? IsPinDefaultValid(&Pin, FString(), Object, FText()) : FString(TEXT("there is no such object"));
}

FString UEdGraphSchema_K2::IsPinDefaultValid(
	const UEdGraphPin* Pin, const FString& NewDefaultValue, UObject* NewDefaultObject, const FText&) const
{
	const FEdGraphPinType& Type = Pin->PinType;
	if (Type.PinCategory == PC_Exec)
	{
		return TEXT("execution has no value");
	}
	if (Type.IsContainer())
	{
		return NewDefaultValue.IsEmpty() ? FString() : FString(TEXT("containers have no value on a pin"));
	}
	if (PinDefaults::IsObjectPin(Type))
	{
		return NewDefaultValue.IsEmpty() ? PinDefaults::GetObjectError(*Pin, NewDefaultObject)
										 : FString(TEXT("its value is an object, not a string"));
	}
	return NewDefaultValue.IsEmpty() ? FString() : PinDefaults::GetError(Type, NewDefaultValue);
}

void UEdGraphSchema_K2::SetPinDefaultValueAtConstruction(UEdGraphPin* Pin, const FString& DefaultValueString) const
{
	Pin->DefaultValue.Empty();
	Pin->DefaultObject = nullptr;
	Pin->DefaultTextValue = FText();
	if (PinDefaults::IsObjectPin(Pin->PinType))
	{
		Pin->DefaultObject = FindObject<UObject>(nullptr, *DefaultValueString);
	}
	else if (Pin->PinType.PinCategory == PC_Text)
	{
		Pin->DefaultTextValue = FText::FromString(DefaultValueString);
	}
	else
	{
		Pin->DefaultValue = DefaultValueString;
	}
}

void UEdGraphSchema_K2::SetPinAutogeneratedDefaultValue(UEdGraphPin* Pin, const FString& NewValue) const
{
	Pin->AutogeneratedDefaultValue = NewValue;
	SetPinDefaultValueAtConstruction(Pin, NewValue);
}

void UEdGraphSchema_K2::SetPinAutogeneratedDefaultValueBasedOnType(UEdGraphPin* Pin) const
{
	if (Pin->PinType.IsContainer())
	{
		return;
	}
	const UEnum* const Enum = Cast<UEnum>(Pin->PinType.PinSubCategoryObject.Get());
	if (Pin->PinType.PinCategory == PC_Byte && Enum && Enum->NumEnums() > 0)
	{
		SetPinAutogeneratedDefaultValue(Pin, Enum->GetNameStringByIndex(0));
		return;
	}
	if (const TCHAR* const Value = PinDefaults::GetPlainDefault(Pin->PinType))
	{
		SetPinAutogeneratedDefaultValue(Pin, Value);
	}
}

#undef LOCTEXT_NAMESPACE
