#pragma once

#include "EdGraph/EdGraphPin.h"

class FProperty;
class UStruct;

/**
 * Makes the property that holds values of the type, owned by the scope and not yet added to it.
 * @return null when there can be no such property
 */
FProperty* CreatePropertyFromPinType(UStruct& Scope, FName Name, const FEdGraphPinType& Type);
