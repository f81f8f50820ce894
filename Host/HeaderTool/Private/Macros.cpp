#include "Macros.h"

bool IsTypeMacro(const FToken& Token)
{
	return Token.Is("UCLASS") || Token.Is("USTRUCT") || Token.Is("UENUM") || Token.Is("UINTERFACE");
}

bool IsMemberMacro(const FToken& Token)
{
	return Token.Is("UPROPERTY") || Token.Is("UFUNCTION");
}

std::string GetConditionError(const FSourceToken& Macro)
{
	return Macro.Condition == ECondition::None ? std::string()
											   : "'" + Macro.Text + "' must not be inside preprocessor blocks";
}
