#include "Components/InputComponent.h"
#include "Components/SphereComponent.h"
#include "Engine/World.h"
#include "EngineTestTypes.h"
#include "GameFramework/PlayerController.h"

#include <gtest/gtest.h>

namespace ActorFunctionsTest
{
/** A world in which play has begun, with an actor that has a root and a component 100 cm in front of it. */
class FActorFunctionsTest : public testing::Test
{
protected:
	FActorFunctionsTest()
	{
		World->InitializeActorsForPlay(FURL());
		World->BeginPlay();
		Actor = World->SpawnActor<ADiaryActor>();
		Other = World->SpawnActor<ADiaryActor>();
	}
	~FActorFunctionsTest() override
	{
		World->DestroyWorld(false);
		CollectGarbage(RF_NoFlags);
	}
	static void ExpectAt(const AActor* Where, const FVector& Place)
	{
		EXPECT_TRUE(Where->GetActorLocation().Equals(Place)) << TCHAR_TO_UTF8(*Where->GetActorLocation().ToString());
	}

	UWorld* const World = UWorld::CreateWorld(EWorldType::Game, false);
	ADiaryActor* Actor = nullptr;
	ADiaryActor* Other = nullptr;
};

TEST_F(FActorFunctionsTest, PlaceIsThatOfTheRoot)
{
	EXPECT_TRUE(Actor->SetActorTransform(FTransform(FRotator(0, 90, 0), FVector(10, 20, 30), FVector(2, 2, 2))));
	ExpectAt(Actor, FVector(10, 20, 30));
	EXPECT_TRUE(Actor->GetActorTransform().Equals(Actor->Root->GetComponentTransform()));
	EXPECT_TRUE(Actor->GetActorForwardVector().Equals(FVector::RightVector));
	EXPECT_TRUE(Actor->GetActorRightVector().Equals(-FVector::ForwardVector));
	EXPECT_TRUE(Actor->GetActorUpVector().Equals(FVector::UpVector));
	EXPECT_TRUE(Actor->GetActorQuat().Rotator().Equals(FRotator(0, 90, 0)));
	EXPECT_TRUE(Actor->GetActorScale3D().Equals(FVector(2, 2, 2)));
	EXPECT_TRUE(Actor->Diary->GetComponentLocation().Equals(FVector(10, 220, 30))) << "turned and scaled with its root";
	Actor->SetActorScale3D(FVector(1, 1, 1));
	EXPECT_TRUE(Actor->Diary->GetComponentLocation().Equals(FVector(10, 120, 30)));
	Actor->AddActorWorldOffset(FVector(0, 0, -30));
	ExpectAt(Actor, FVector(10, 20, 0));

	FHitResult Hit(0.5f);
	EXPECT_TRUE(Actor->K2_SetActorLocation(FVector(3, 4, 0), true, Hit, false));
	EXPECT_EQ(Hit.Time, 1.0f) << "nothing is hit";
	EXPECT_TRUE(Actor->K2_SetActorRotation(FRotator(0, 45, 0), false));
	EXPECT_TRUE(Actor->K2_GetActorRotation().Equals(FRotator(0, 45, 0)));
	EXPECT_TRUE(Actor->K2_GetActorLocation().Equals(FVector(3, 4, 0)));
	EXPECT_EQ(Actor->GetDistanceTo(Other), 5.0f);
	EXPECT_EQ(Actor->GetDistanceTo(nullptr), 0.0f);
	EXPECT_TRUE(Actor->GetVelocity().IsZero());
}

TEST_F(FActorFunctionsTest, WithoutARootItIsAtTheOriginAndStaysThere)
{
	AActor* const Bare = World->SpawnActor<AActor>();
	EXPECT_FALSE(Bare->GetRootComponent());
	EXPECT_FALSE(Bare->SetActorLocation(FVector(1, 2, 3)));
	EXPECT_FALSE(Bare->SetActorRotation(FRotator(0, 90, 0)));
	EXPECT_FALSE(Bare->SetActorTransform(FTransform(FVector(1, 2, 3))));
	EXPECT_FALSE(Bare->SetActorLocationAndRotation(FVector(1, 2, 3), FRotator(0, 90, 0)));
	Bare->SetActorScale3D(FVector(2, 2, 2));
	Bare->AddActorWorldOffset(FVector(1, 2, 3));
	ExpectAt(Bare, FVector::ZeroVector);
	EXPECT_TRUE(Bare->GetActorScale3D().Equals(FVector(1, 1, 1)));
	EXPECT_FALSE(Bare->SetRootComponent(Actor->Root)) << "a component of another actor";
	EXPECT_FALSE(Bare->AttachToActor(Actor, FAttachmentTransformRules::KeepWorldTransform));
	EXPECT_FALSE(Actor->AttachToActor(nullptr, FAttachmentTransformRules::KeepWorldTransform));
	EXPECT_TRUE(Actor->SetRootComponent(Actor->Root));
}

TEST_F(FActorFunctionsTest, AttachmentRulesSayWhatMoves)
{
	const FTransform ParentPlace(FRotator(0, 90, 0), FVector(100, 0, 0), FVector(2, 2, 2));
	const struct
	{
		const char* What;
		FAttachmentTransformRules Rules;
		FVector Place;
		FVector Scale;
	} Cases[] = {
		{ "stays", FAttachmentTransformRules::KeepWorldTransform, FVector(10, 0, 0), FVector(1, 1, 1) },
		{ "is relative", FAttachmentTransformRules::KeepRelativeTransform, FVector(100, 20, 0), FVector(2, 2, 2) },
		{ "snaps", FAttachmentTransformRules::SnapToTargetIncludingScale, FVector(100, 0, 0), FVector(2, 2, 2) },
		{ "snaps but for its scale", FAttachmentTransformRules::SnapToTargetNotIncludingScale, FVector(100, 0, 0),
			FVector(1, 1, 1) },
	};
	for (const auto& Case : Cases)
	{
		Actor->SetActorTransform(FTransform(FVector(10, 0, 0)));
		Other->SetActorTransform(ParentPlace);
		EXPECT_TRUE(Actor->AttachToActor(Other, Case.Rules)) << Case.What;
		EXPECT_EQ(Actor->GetAttachParentActor(), Other) << Case.What;
		ExpectAt(Actor, Case.Place);
		EXPECT_TRUE(Actor->GetActorScale3D().Equals(Case.Scale)) << Case.What;
		Other->AddActorWorldOffset(FVector(0, 0, 7));
		ExpectAt(Actor, Case.Place + FVector(0, 0, 7));
		Actor->DetachFromActor(FDetachmentTransformRules::KeepWorldTransform);
		EXPECT_FALSE(Actor->GetAttachParentActor()) << Case.What;
		ExpectAt(Actor, Case.Place + FVector(0, 0, 7));
	}
	Actor->SetActorTransform(FTransform(FVector(10, 0, 0)));
	Other->SetActorTransform(ParentPlace);
	Actor->AttachToActor(Other, FAttachmentTransformRules::KeepRelativeTransform);
	Actor->DetachFromActor(FDetachmentTransformRules::KeepRelativeTransform);
	ExpectAt(Actor, FVector(10, 0, 0));
}

TEST_F(FActorFunctionsTest, TickStopsWhenItIsSwitchedOff)
{
	Actor->Diary->Diary.Empty();
	Actor->SetActorTickEnabled(false);
	EXPECT_FALSE(Actor->IsActorTickEnabled());
	World->Tick(LEVELTICK_All, 0.5f);
	EXPECT_STREQ(TCHAR_TO_UTF8(*Actor->Diary->Diary), "tick 0.5;") << "the component has a tick of its own";
	Actor->Diary->SetComponentTickEnabled(false);
	EXPECT_FALSE(Actor->Diary->IsComponentTickEnabled());
	Actor->SetActorTickEnabled(true);
	Actor->Diary->Diary.Empty();
	World->Tick(LEVELTICK_All, 0.5f);
	EXPECT_STREQ(TCHAR_TO_UTF8(*Actor->Diary->Diary), "actor tick;");
	EXPECT_FLOAT_EQ(Actor->GetGameTimeSinceCreation(), 1.0f);
}

TEST_F(FActorFunctionsTest, ComponentsAreSwitchedOnAndOff)
{
	UDiaryComponent& Component = *Actor->Diary;
	Component.SetActive(false);
	const bool bWasActive = Component.IsActive();
	EXPECT_FALSE(bWasActive);
	Component.Activate();
	EXPECT_TRUE(Component.IsActive());
	EXPECT_TRUE(Component.IsComponentTickEnabled()) << "what is active ticks";
	Component.Deactivate();
	EXPECT_FALSE(Component.IsActive());
	EXPECT_FALSE(Component.IsComponentTickEnabled());
	Component.SetActive(true);
	EXPECT_TRUE(Component.IsActive());
	EXPECT_EQ(Actor->GetComponentByClass(UDiaryComponent::StaticClass()), &Component);
	EXPECT_EQ(Actor->GetComponentByClass(USphereComponent::StaticClass()), nullptr);
}

TEST_F(FActorFunctionsTest, LabelsTagsAndVisibilityAreRemembered)
{
	EXPECT_EQ(Actor->GetActorLabel(), Actor->GetName());
	Actor->SetActorLabel(TEXT("The first"));
	EXPECT_STREQ(TCHAR_TO_UTF8(*Actor->GetActorLabel()), "The first");
	EXPECT_FALSE(Actor->ActorHasTag(TEXT("Door")));
	Actor->Tags.Add(TEXT("Door"));
	EXPECT_TRUE(Actor->ActorHasTag(TEXT("door")));
	EXPECT_FALSE(Actor->IsHidden());
	Actor->SetActorHiddenInGame(true);
	EXPECT_TRUE(Actor->IsHidden());
	EXPECT_TRUE(Actor->HasAuthority());
	Actor->SetLifeSpan(1.0f);
	World->Tick(LEVELTICK_All, 0.25f);
	EXPECT_FLOAT_EQ(Actor->GetLifeSpan(), 0.75f);
	Actor->K2_DestroyActor();
	EXPECT_TRUE(Actor->IsActorBeingDestroyed());
}

TEST_F(FActorFunctionsTest, HitsTellOfWhatIsStillThere)
{
	USphereComponent* const Sphere = NewObject<USphereComponent>(Other);
	FHitResult Hit(Other, Sphere, FVector(1, 2, 3), FVector::UpVector);
	EXPECT_EQ(Hit.GetActor(), Other);
	EXPECT_EQ(Hit.GetComponent(), Sphere);
	EXPECT_EQ(Hit.ImpactPoint, FVector(1, 2, 3));
	EXPECT_EQ(Hit.ImpactNormal, FVector::UpVector);
	EXPECT_FALSE(Hit.IsValidBlockingHit());
	Hit.bBlockingHit = true;
	EXPECT_TRUE(Hit.IsValidBlockingHit());
	Hit.bStartPenetrating = true;
	EXPECT_FALSE(Hit.IsValidBlockingHit());
	const FHitResult Trace(FVector(1, 0, 0), FVector(2, 0, 0));
	EXPECT_EQ(Trace.TraceEnd, FVector(2, 0, 0));
	EXPECT_EQ(Trace.GetActor(), nullptr);
	Other->Destroy();
	CollectGarbage(RF_NoFlags);
	EXPECT_EQ(Hit.GetActor(), nullptr) << "what was hit is gone";
}

TEST_F(FActorFunctionsTest, SpheresScaleWithTheirSmallestSide)
{
	USphereComponent* const Sphere = NewObject<USphereComponent>(Other);
	Sphere->SetSphereRadius(10.0f);
	Sphere->SetWorldScale3D(FVector(3, -2, 5));
	EXPECT_FLOAT_EQ(Sphere->GetScaledSphereRadius(), 20.0f);
}

TEST_F(FActorFunctionsTest, InputAddsUpTheBindingsOfAnAxis)
{
	ABareCharacter* const Character = World->SpawnActor<ABareCharacter>();
	UInputComponent* const Input = NewObject<UInputComponent>(Character);
	EXPECT_FALSE(Input->HasBindings());
	Input->BindAxis(TEXT("Forward"), Character, &ABareCharacter::MoveForward).AxisValue = 0.5f;
	Input->BindAxis(TEXT("Forward"), Character, &ABareCharacter::MoveForward).AxisValue = 0.25f;
	Input->BindAxis(TEXT("Turn"), Character, &ABareCharacter::MoveForward).AxisValue = 1.0f;
	EXPECT_FLOAT_EQ(Input->GetAxisValue(TEXT("Forward")), 0.75f);
	EXPECT_FLOAT_EQ(Input->GetAxisValue(TEXT("Nothing")), 0.0f);
	Input->BindAction(TEXT("Jump"), IE_Pressed, Character, &ABareCharacter::Jump);
	EXPECT_EQ(Input->GetActionBinding(0).GetActionName(), FName(TEXT("Jump")));
	Input->GetActionBinding(0).ActionDelegate.ExecuteIfBound();
	EXPECT_EQ(Character->Jumps, 1);
	Input->RemoveActionBinding(0);
	EXPECT_EQ(Input->GetNumActionBindings(), 0);
	Input->ClearActionBindings();
	EXPECT_TRUE(Input->HasBindings()) << "the axes are still bound";
}

TEST_F(FActorFunctionsTest, ControllerLetsGoOfItsPawnWhenItIsDestroyed)
{
	APlayerController* const Controller = World->SpawnActor<APlayerController>();
	ACharacter* const Character = World->SpawnActor<ACharacter>();
	Controller->Possess(Character);
	EXPECT_EQ(Controller->K2_GetPawn(), Character);
	EXPECT_TRUE(Character->IsLocallyControlled());
	Character->AddMovementInput(FVector::ForwardVector, 2.0f);
	EXPECT_EQ(Character->GetPendingMovementInputVector(), FVector(2, 0, 0));
	Character->GetCharacterMovement()->Velocity = FVector(5, 0, 0);
	Controller->StopMovement();
	EXPECT_TRUE(Character->GetCharacterMovement()->Velocity.IsZero());
	Controller->Destroy();
	EXPECT_FALSE(Character->IsPawnControlled());
}
}
