#include "Game/HarrierGameMode.h"

#include "Harrier.h"
#include "Player/HarrierCharacter.h"

AHarrierGameMode::AHarrierGameMode()
{
	DefaultPawnClass = AHarrierCharacter::StaticClass();
}

void AHarrierGameMode::AddGathered(int32 Count)
{
	const bool bWasWon = IsWon();
	Gathered += Count;
	UE_CLOG(IsWon() && !bWasWon, LogHarrier, Log, TEXT("All %d feathers are home"), FeathersToWin);
}
