#pragma once

#include "UObject/Object.h"
#include "UObject/ScriptInterface.h"

/**
 * The parent of all interfaces' classes. An interface is two classes: "UINTERFACE() class UName : public UInterface",
 * of which there are no objects, and "class IName", which classes inherit and in which the functions are declared.
 */
class UInterface : public UObject
{
public:
	DECLARE_REFLECTED_CLASS(UInterface, UObject)
	UInterface() = default;
	UInterface(const FObjectInitializer& ObjectInitializer)
		: Super(ObjectInitializer)
	{
	}
};

class IInterface
{
protected:
	virtual ~IInterface() = default;

public:
	using UClassType = UInterface;
};
