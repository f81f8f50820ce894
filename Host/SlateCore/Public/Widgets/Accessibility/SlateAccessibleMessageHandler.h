#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/Accessibility/GenericAccessibleInterfaces.h"

/** The application's. */
class FSlateAccessibleMessageHandler : public FGenericAccessibleMessageHandler
{
};
