#pragma once

#include "CoreMinimal.h"
#include "PathFollowingComponent.generated.h"

/** How a request to move began. */
UENUM(BlueprintType)
namespace EPathFollowingRequestResult
{
enum Type : int
{
	Failed,
	AlreadyAtGoal,
	RequestSuccessful,
};
}

/** How a move ended. */
UENUM(BlueprintType)
namespace EPathFollowingResult
{
enum Type : int
{
	Success,
	Blocked,
	OffPath,
	Aborted,
	Skipped_DEPRECATED,
	Invalid,
};
}

/** What is going on. */
UENUM(BlueprintType)
namespace EPathFollowingStatus
{
enum Type : int
{
	Idle,
	Waiting,
	Paused,
	Moving,
};
}
