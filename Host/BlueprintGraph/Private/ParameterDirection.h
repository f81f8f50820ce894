#pragma once

#include "UObject/UnrealType.h"

/** Whether the parameter leaves the function: one that is passed by reference goes in, whatever else its flags say. */
inline bool IsOutputParameter(const FProperty& Parameter)
{
	return Parameter.HasAnyPropertyFlags(CPF_OutParm) && !Parameter.HasAnyPropertyFlags(CPF_ReferenceParm);
}
