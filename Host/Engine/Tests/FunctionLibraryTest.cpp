#include "Engine/World.h"
#include "EngineTestTypes.h"
#include "GameFramework/PlayerController.h"
#include "Kismet/GameplayStatics.h"
#include "Kismet/KismetMathLibrary.h"
#include "Kismet/KismetStringLibrary.h"
#include "Kismet/KismetSystemLibrary.h"

#include <gtest/gtest.h>

TEST(FunctionLibraries, DoNotEndTheProcessAtTheEdgesOfNumbers)
{
	EXPECT_EQ(UKismetMathLibrary::Add_IntInt(MAX_int32, 1), MIN_int32);
	EXPECT_EQ(UKismetMathLibrary::Subtract_IntInt(MIN_int32, 1), MAX_int32);
	EXPECT_EQ(UKismetMathLibrary::Multiply_IntInt(65536, 65536), 0);
	EXPECT_EQ(UKismetMathLibrary::Divide_IntInt(7, 0), 0);
	EXPECT_EQ(UKismetMathLibrary::Divide_IntInt(MIN_int32, -1), MIN_int32);
	EXPECT_EQ(UKismetMathLibrary::Percent_IntInt(MIN_int32, -1), 0);
	EXPECT_EQ(UKismetMathLibrary::Percent_IntInt(7, 0), 0);
	EXPECT_EQ(UKismetMathLibrary::Divide_DoubleDouble(1.0, 0.0), 0.0);
	EXPECT_EQ(UKismetMathLibrary::FTrunc(-2.9), -2);
	EXPECT_EQ(UKismetMathLibrary::FTrunc(1e30), MAX_int32);
	EXPECT_EQ(UKismetMathLibrary::FTrunc(NAN), 0);
	EXPECT_TRUE(UKismetStringLibrary::EqualEqual_StriStri(TEXT("Moor"), TEXT("mOOR")));
	EXPECT_FALSE(UKismetStringLibrary::EqualEqual_StrStr(TEXT("Moor"), TEXT("mOOR")));
}

TEST(FunctionLibraries, FindPlayersAndActorsFromAnyObjectOfTheWorld)
{
	EXPECT_EQ(UGameplayStatics::GetPlayerController(nullptr, 0), nullptr);
	EXPECT_EQ(UGameplayStatics::GetPlayerController(GetDefault<ACharacter>(), 0), nullptr);

	UWorld* const World = UWorld::CreateWorld(EWorldType::Game, false);
	APlayerController* const First = World->SpawnActor<APlayerController>();
	APlayerController* const Second = World->SpawnActor<APlayerController>();
	ACharacter* const Character = World->SpawnActor<ACharacter>();
	Second->Possess(Character);
	World->Tick(LEVELTICK_All, 0.25f);
	const UObject* const Context = Character->GetCharacterMovement();
	EXPECT_EQ(UGameplayStatics::GetPlayerController(Context, 0), First);
	EXPECT_EQ(UGameplayStatics::GetPlayerController(Context, 2), nullptr);
	EXPECT_EQ(UGameplayStatics::GetPlayerPawn(Context, 0), nullptr);
	EXPECT_EQ(UGameplayStatics::GetPlayerCharacter(Context, 1), Character);
	EXPECT_EQ(UGameplayStatics::GetActorOfClass(Context, APawn::StaticClass()), Character);
	TArray<AActor*> Actors = { nullptr };
	UGameplayStatics::GetAllActorsOfClass(Context, AController::StaticClass(), Actors);
	EXPECT_EQ(Actors.Num(), 2);
	EXPECT_EQ(UKismetSystemLibrary::GetGameTimeInSeconds(Context), 0.25);
	World->DestroyWorld(false);
	CollectGarbage(RF_NoFlags);
}
