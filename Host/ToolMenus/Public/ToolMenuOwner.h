#pragma once

#include "CoreMinimal.h"

/** Who added something to a menu: an object by its address, or a name. */
struct FToolMenuOwner
{
	/** Nobody. */
	FToolMenuOwner() = default;
	FToolMenuOwner(void* InPointer)
		: Pointer(InPointer)
	{
	}
	FToolMenuOwner(const WIDECHAR* InName)
		: Name(InName)
	{
	}
	FToolMenuOwner(const ANSICHAR* InName)
		: Name(InName)
	{
	}
	FToolMenuOwner(const FName InName)
		: Name(InName)
	{
	}

	bool IsSet() const { return Pointer != nullptr || !Name.IsNone(); }
	bool operator==(const FToolMenuOwner& Other) const = default;

private:
	void* Pointer = nullptr;
	FName Name;
};
