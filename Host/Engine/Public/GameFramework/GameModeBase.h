#pragma once

#include "GameFramework/Info.h"
#include "GameModeBase.generated.h"

class AController;
class APawn;
class APlayerController;

/** The rules of a game: which pawn a player gets, among others. */
UCLASS(Config = Game, NotPlaceable, BlueprintType, Blueprintable,
	HideCategories = (Info, Rendering, MovementReplication),
	meta = (ShortTooltip = "Game Mode Base defines the game being played."))
class ENGINE_API AGameModeBase : public AInfo
{
	GENERATED_BODY()

public:
	AGameModeBase();

	UPROPERTY(EditAnywhere, NoClear, BlueprintReadOnly, Category = "Classes")
	TSubclassOf<APlayerController> PlayerControllerClass;

	/** Null by default: there is no pawn that would do for any game. */
	UPROPERTY(EditAnywhere, NoClear, BlueprintReadOnly, Category = "Classes")
	TSubclassOf<APawn> DefaultPawnClass;

	/** Has all actors of the world begin their play. */
	virtual void StartPlay();
	virtual UClass* GetDefaultPawnClassForController(AController* InController);
	virtual APawn* SpawnDefaultPawnAtTransform(AController* NewPlayer, const FTransform& SpawnTransform);
	virtual APlayerController* SpawnPlayerController();
	/** Gives the controller a pawn at the place; the one that it has is only put there. */
	UFUNCTION(BlueprintCallable, Category = "Game")
	virtual void RestartPlayerAtTransform(AController* NewPlayer, const FTransform& SpawnTransform);
};
