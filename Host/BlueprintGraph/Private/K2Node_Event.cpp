#include "K2Node_Event.h"

#include "EdGraph/EdGraph.h"
#include "EdGraphSchema_K2.h"
#include "K2Node_CustomEvent.h"
#include "ParameterDirection.h"

#define LOCTEXT_NAMESPACE "K2Node"

const FName UK2Node_Event::DelegateOutputName(TEXT("OutputDelegate"));

UK2Node_Event::UK2Node_Event(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
	, bOverrideFunction(false)
	, bInternalEvent(false)
{
}

FName UK2Node_Event::GetFunctionName() const
{
	return bOverrideFunction ? EventReference.GetMemberName() : CustomFunctionName;
}

UFunction* UK2Node_Event::FindEventSignatureFunction() const
{
	return EventReference.ResolveMember<UFunction>(GetBlueprintClassFromNode());
}

bool UK2Node_Event::IsInterfaceEventNode() const
{
	const UClass* const Parent = EventReference.GetMemberParentClass(GetBlueprintClassFromNode());
	return Parent && Parent->HasAnyClassFlags(CLASS_Interface);
}

void UK2Node_Event::AllocateDefaultPins()
{
	CreatePin(EGPD_Output, UEdGraphSchema_K2::PC_Delegate, DelegateOutputName);
	CreatePin(EGPD_Output, UEdGraphSchema_K2::PC_Exec, UEdGraphSchema_K2::PN_Then);
	if (const UFunction* const Function = FindEventSignatureFunction())
	{
		const UEdGraphSchema_K2* const Schema = GetDefault<UEdGraphSchema_K2>();
		for (TFieldIterator<FProperty> It(Function, EFieldIterationFlags::None); It; ++It)
		{
			if (It->HasAnyPropertyFlags(CPF_Parm) && !IsOutputParameter(**It))
			{
				UEdGraphPin* const Pin = CreatePin(EGPD_Output, NAME_None, It->GetFName());
				Schema->ConvertPropertyToPinType(*It, Pin->PinType);
			}
		}
	}
	Super::AllocateDefaultPins();
}

FText UK2Node_Event::GetNodeTitle(ENodeTitleType::Type TitleType) const
{
	if (!bOverrideFunction && !CustomFunctionName.IsNone())
	{
		return FText::FromName(CustomFunctionName);
	}
	const UFunction* const Function = FindEventSignatureFunction();
	const FText Name = Function ? UEdGraphSchema_K2::GetFriendlySignatureName(Function)
								: FText::FromName(EventReference.GetMemberName());
	const FText Title = FText::Format(LOCTEXT("Event_Name", "Event {0}"), Name);
	if (TitleType != ENodeTitleType::FullTitle || !Function || !IsInterfaceEventNode())
	{
		return Title;
	}
	return FText::Format(
		LOCTEXT("EventFromInterface", "{0}\nFrom {1}"), Title, Function->GetOwnerClass()->GetDisplayNameText());
}

UK2Node_CustomEvent::UK2Node_CustomEvent(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer)
{
	FunctionFlags = FUNC_BlueprintCallable | FUNC_BlueprintEvent | FUNC_Public;
	bIsEditable = true;
}

void UK2Node_CustomEvent::PostPlacedNewNode()
{
	Super::PostPlacedNewNode();
	if (CustomFunctionName.IsNone())
	{
		CustomFunctionName = MakeUniqueObjectName(GetGraph(), GetClass(), TEXT("CustomEvent"));
	}
}

FText UK2Node_CustomEvent::GetNodeTitle(ENodeTitleType::Type TitleType) const
{
	const FText Name = FText::FromName(CustomFunctionName);
	return TitleType == ENodeTitleType::FullTitle
			   ? FText::Format(LOCTEXT("CustomEvent_Name", "{0}\nCustom Event"), Name)
			   : Name;
}

#undef LOCTEXT_NAMESPACE
