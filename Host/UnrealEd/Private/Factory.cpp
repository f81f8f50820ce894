#include "Factories/Factory.h"

#include "UObject/Class.h"

UClass* UFactory::GetSupportedClass() const
{
	return SupportedClass.Get();
}
