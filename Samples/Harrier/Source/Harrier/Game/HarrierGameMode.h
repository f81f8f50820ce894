#pragma once

#include "CoreMinimal.h"
#include "GameFramework/GameModeBase.h"
#include "HarrierGameMode.generated.h"

/** Counts what is gathered, and knows when the night is won. */
UCLASS(Config = Game)
class HARRIER_API AHarrierGameMode : public AGameModeBase
{
	GENERATED_BODY()

public:
	AHarrierGameMode();

	void AddGathered(int32 Count);

	UFUNCTION(BlueprintPure, Category = "Rules")
	bool IsWon() const { return Gathered >= FeathersToWin; }

protected:
	/** See Config/DefaultGame.ini. */
	UPROPERTY(Config, EditDefaultsOnly, BlueprintReadOnly, Category = "Rules")
	int32 FeathersToWin = 12;

private:
	int32 Gathered = 0;
};
