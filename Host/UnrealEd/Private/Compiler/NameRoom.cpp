#include "Compiler/NameRoom.h"

#include "UObject/Class.h"
#include "UObject/Package.h"

void MakeRoomForName(UObject& Outer, FName Name, const UClass& Class)
{
	UObject* const Existing = FindObjectFast<UObject>(&Outer, Name);
	if (Existing && Existing->GetClass() != &Class)
	{
		Existing->Rename(nullptr, GetTransientPackage());
	}
}
