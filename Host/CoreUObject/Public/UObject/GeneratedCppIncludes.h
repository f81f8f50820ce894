#pragma once

// What each source that HeaderTool writes needs.
#include "../../Internal/UObject/ReflectedTypes.h"
#include "Containers/EnumAsByte.h"
#include "CoreMinimal.h"
#include "UObject/Class.h"
#include "UObject/Object.h"
