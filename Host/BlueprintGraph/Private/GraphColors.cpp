#include "EdGraphSchema_K2.h"
#include "K2Node_CallFunction.h"
#include "K2Node_Event.h"
#include "K2Node_ExecutionSequence.h"
#include "K2Node_FunctionResult.h"
#include "K2Node_IfThenElse.h"
#include "K2Node_Self.h"
#include "K2Node_Variable.h"

namespace GraphColors
{
const FColor Event(160, 24, 24);
const FColor Call(44, 100, 156);
const FColor PureCall(78, 136, 72);
const FColor Terminator(112, 72, 160);
const FColor Flow(112, 112, 112);

/** Of values of a struct that has a colour of its own. */
struct FStructColor
{
	const TCHAR* Struct;
	FColor Color;
};

const FStructColor StructColors[] = {
	{ TEXT("Vector"), FColor(255, 202, 35) },
	{ TEXT("Rotator"), FColor(159, 178, 255) },
	{ TEXT("Transform"), FColor(255, 115, 0) },
};

struct FCategoryColor
{
	FName Category;
	FColor Color;
};

const TArray<FCategoryColor>& GetCategoryColors()
{
	using K2 = UEdGraphSchema_K2;
	static const TArray<FCategoryColor> Colors = { { K2::PC_Exec, FColor(255, 255, 255) },
		{ K2::PC_Boolean, FColor(170, 20, 20) }, { K2::PC_Byte, FColor(0, 128, 112) },
		{ K2::PC_Enum, FColor(0, 128, 112) }, { K2::PC_Int, FColor(31, 227, 174) },
		{ K2::PC_Int64, FColor(172, 227, 175) }, { K2::PC_Real, FColor(161, 255, 69) },
		{ K2::PC_Name, FColor(203, 130, 255) }, { K2::PC_String, FColor(255, 0, 212) },
		{ K2::PC_Text, FColor(231, 124, 168) }, { K2::PC_Struct, FColor(0, 96, 220) },
		{ K2::PC_Object, FColor(0, 168, 242) }, { K2::PC_SoftObject, FColor(149, 255, 255) },
		{ K2::PC_Class, FColor(116, 52, 214) }, { K2::PC_SoftClass, FColor(255, 149, 255) },
		{ K2::PC_Interface, FColor(241, 255, 170) }, { K2::PC_Delegate, FColor(255, 56, 56) },
		{ K2::PC_MCDelegate, FColor(255, 56, 56) } };
	return Colors;
}

const FColor Wildcard(128, 120, 120);
}

FLinearColor UEdGraphSchema_K2::GetPinTypeColor(const FEdGraphPinType& PinType) const
{
	const UObject* const Struct = PinType.PinCategory == PC_Struct ? PinType.PinSubCategoryObject.Get() : nullptr;
	for (const GraphColors::FStructColor& Each : GraphColors::StructColors)
	{
		if (Struct && Struct->GetName() == Each.Struct)
		{
			return Each.Color;
		}
	}
	for (const GraphColors::FCategoryColor& Each : GraphColors::GetCategoryColors())
	{
		if (Each.Category == PinType.PinCategory)
		{
			return Each.Color;
		}
	}
	return GraphColors::Wildcard;
}

FLinearColor UK2Node_Event::GetNodeTitleColor() const
{
	return GraphColors::Event;
}

FLinearColor UK2Node_CallFunction::GetNodeTitleColor() const
{
	return IsNodePure() ? GraphColors::PureCall : GraphColors::Call;
}

FLinearColor UK2Node_FunctionTerminator::GetNodeTitleColor() const
{
	return GraphColors::Terminator;
}

FLinearColor UK2Node_IfThenElse::GetNodeTitleColor() const
{
	return GraphColors::Flow;
}

FLinearColor UK2Node_ExecutionSequence::GetNodeTitleColor() const
{
	return GraphColors::Flow;
}

FLinearColor UK2Node_Self::GetNodeTitleColor() const
{
	return GetDefault<UEdGraphSchema_K2>()->GetPinTypeColor(Pins.IsEmpty() ? FEdGraphPinType() : Pins[0]->PinType);
}

FLinearColor UK2Node_Variable::GetNodeTitleColor() const
{
	const UEdGraphPin* const Value = GetValuePin();
	return GetDefault<UEdGraphSchema_K2>()->GetPinTypeColor(Value ? Value->PinType : FEdGraphPinType());
}
