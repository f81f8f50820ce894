#include "Factories/Factory.h"

#include "UObject/Class.h"

bool UFactory::DoesSupportClass(UClass* Class)
{
	return Class && SupportedClass && Class->IsChildOf(SupportedClass.Get());
}

UClass* UFactory::GetSupportedClass() const
{
	return SupportedClass.Get();
}
