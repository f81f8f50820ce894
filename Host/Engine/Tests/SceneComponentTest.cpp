#include "Camera/CameraComponent.h"
#include "Components/CapsuleComponent.h"
#include "Engine/World.h"
#include "EngineTestTypes.h"
#include "GameFramework/PlayerController.h"

#include <gtest/gtest.h>

namespace SceneComponentTest
{
/** An actor at (10, 0, 0), turned to the right and twice as large, with a component 100 cm in front of its root. */
class FSceneComponentTest : public testing::Test
{
protected:
	FSceneComponentTest()
		: Actor(*World->SpawnActor<ADiaryActor>())
		, Root(*Actor.Root)
		, Part(*Actor.Diary)
	{
		Actor.SetActorTransform(FTransform(FRotator(0, 90, 0), FVector(10, 0, 0), FVector(2, 2, 2)));
	}
	~FSceneComponentTest() override
	{
		World->DestroyWorld(false);
		CollectGarbage(RF_NoFlags);
	}
	void ExpectPartAt(const FVector& Place, const FVector& Relative) const
	{
		EXPECT_TRUE(Part.K2_GetComponentLocation().Equals(Place))
			<< TCHAR_TO_UTF8(*Part.GetComponentLocation().ToString());
		EXPECT_TRUE(Part.GetRelativeLocation().Equals(Relative))
			<< TCHAR_TO_UTF8(*Part.GetRelativeLocation().ToString());
	}

	UWorld* const World = UWorld::CreateWorld(EWorldType::Game, false);
	ADiaryActor& Actor;
	USceneComponent& Root;
	USceneComponent& Part;
};

TEST_F(FSceneComponentTest, RelativePlacesCountFromTheParent)
{
	ExpectPartAt(FVector(10, 200, 0), FVector(100, 0, 0));
	Part.AddRelativeLocation(FVector(0, 10, 0));
	ExpectPartAt(FVector(-10, 200, 0), FVector(100, 10, 0));
	Part.SetRelativeLocationAndRotation(FVector(50, 0, 0), FRotator(0, 90, 0));
	ExpectPartAt(FVector(10, 100, 0), FVector(50, 0, 0));
	EXPECT_TRUE(Part.K2_GetComponentRotation().Equals(FRotator(0, 180, 0)));
	EXPECT_TRUE(Part.GetForwardVector().Equals(-FVector::ForwardVector));
	EXPECT_TRUE(Part.GetRightVector().Equals(-FVector::RightVector));
	EXPECT_TRUE(Part.GetUpVector().Equals(FVector::UpVector));
	Part.AddRelativeRotation(FRotator(0, -90, 0));
	EXPECT_TRUE(Part.GetRelativeRotation().Equals(FRotator::ZeroRotator));
	Part.SetRelativeScale3D(FVector(3, 1, 1));
	EXPECT_TRUE(Part.GetRelativeScale3D().Equals(FVector(3, 1, 1)));
	EXPECT_TRUE(Part.GetComponentScale().Equals(FVector(6, 2, 2)));
	EXPECT_TRUE(Part.GetComponentToWorld().Equals(Part.GetRelativeTransform() * Root.GetComponentTransform()));
}

TEST_F(FSceneComponentTest, WorldPlacesMoveThePartAndNotItsParent)
{
	Part.SetWorldLocation(FVector(10, 20, 0));
	ExpectPartAt(FVector(10, 20, 0), FVector(10, 0, 0));
	Part.AddWorldOffset(FVector(0, 0, 4));
	ExpectPartAt(FVector(10, 20, 4), FVector(10, 0, 2));
	Part.AddLocalOffset(FVector(5, 0, 0));
	ExpectPartAt(FVector(10, 25, 4), FVector(12.5, 0, 2));
	Part.SetWorldRotation(FRotator::ZeroRotator);
	EXPECT_TRUE(Part.GetRelativeRotation().Equals(FRotator(0, -90, 0)));
	Part.SetWorldScale3D(FVector(2, 4, 6));
	EXPECT_TRUE(Part.GetRelativeScale3D().Equals(FVector(1, 2, 3)));
	Part.SetWorldTransform(FTransform(FRotator(0, 90, 0), FVector(10, 2, 0), FVector(2, 2, 2)));
	EXPECT_TRUE(Part.GetRelativeTransform().Equals(FTransform(FVector(1, 0, 0))));
	EXPECT_TRUE(Actor.GetActorLocation().Equals(FVector(10, 0, 0)));

	FHitResult Hit(0.5f);
	Part.K2_SetWorldLocation(FVector(10, 0, 0), true, Hit, false);
	ExpectPartAt(FVector(10, 0, 0), FVector::ZeroVector);
	EXPECT_EQ(Hit.Time, 1.0f) << "nothing is hit";
	Part.K2_SetRelativeLocation(FVector(1, 0, 0), true, Hit, false);
	Part.K2_SetRelativeRotation(FRotator(0, 30, 0), true, Hit, false);
	ExpectPartAt(FVector(10, 2, 0), FVector(1, 0, 0));
	EXPECT_TRUE(Part.GetRelativeRotation().Equals(FRotator(0, 30, 0)));
}

TEST_F(FSceneComponentTest, TreeIsWalkedFromEitherEnd)
{
	USceneComponent* const Leaf = NewObject<USceneComponent>(&Actor);
	Leaf->SetupAttachment(&Part, TEXT("Tip"));
	Leaf->RegisterComponent();
	EXPECT_EQ(Leaf->GetAttachParent(), &Part);
	EXPECT_EQ(Leaf->GetAttachSocketName(), FName(TEXT("Tip")));
	EXPECT_EQ(Leaf->GetAttachmentRoot(), &Root);
	EXPECT_EQ(Root.GetAttachmentRoot(), &Root);
	EXPECT_TRUE(Leaf->IsAttachedTo(&Root));
	EXPECT_FALSE(Root.IsAttachedTo(Leaf));
	EXPECT_FALSE(Leaf->IsAttachedTo(nullptr));
	EXPECT_EQ(Root.GetChildComponent(0), &Part);
	EXPECT_EQ(Root.GetChildComponent(1), nullptr);
	EXPECT_EQ(Root.GetChildComponent(-1), nullptr);
	TArray<USceneComponent*> Children = { nullptr };
	Root.GetChildrenComponents(false, Children);
	EXPECT_EQ(Children, (TArray<USceneComponent*>{ &Part }));
	Root.GetChildrenComponents(true, Children);
	EXPECT_EQ(Children, (TArray<USceneComponent*>{ &Part, Leaf }));
	EXPECT_FALSE(Root.AttachToComponent(Leaf, FAttachmentTransformRules::KeepWorldTransform)) << "a circle";
	EXPECT_FALSE(Root.AttachToComponent(&Root, FAttachmentTransformRules::KeepWorldTransform));
	Leaf->DestroyComponent();
	EXPECT_EQ(Part.GetNumChildrenComponents(), 0);
}

TEST_F(FSceneComponentTest, VisibilityGoesDownTheTreeWhenAsked)
{
	Root.SetVisibility(false);
	EXPECT_FALSE(Root.IsVisible());
	EXPECT_TRUE(Part.IsVisible());
	Root.SetVisibility(false, true);
	EXPECT_FALSE(Part.IsVisible());
	Root.SetVisibility(true, true);
	Root.SetHiddenInGame(true, true);
	EXPECT_FALSE(Root.IsVisible() || Part.IsVisible());
	Root.SetHiddenInGame(false);
	EXPECT_TRUE(Root.IsVisible());
	EXPECT_FALSE(Part.IsVisible());
}

TEST_F(FSceneComponentTest, PawnsCollectInputUntilItIsConsumed)
{
	ACharacter* const Character = World->SpawnActor<ACharacter>();
	UPawnMovementComponent* const Movement = Character->GetMovementComponent();
	ASSERT_TRUE(Movement);
	Movement->AddInputVector(FVector(1, 0, 0), false);
	Movement->AddInputVector(FVector(0, 2, 0), false);
	EXPECT_EQ(Movement->GetPendingInputVector(), FVector(1, 2, 0));
	EXPECT_EQ(Movement->ConsumeInputVector(), FVector(1, 2, 0));
	EXPECT_EQ(Character->GetLastMovementInputVector(), FVector(1, 2, 0));
	EXPECT_TRUE(Movement->GetPendingInputVector().IsZero());
	EXPECT_EQ(Character->GetCharacterMovement()->GetCharacterOwner(), Character);
	EXPECT_EQ(
		NewObject<UPawnMovementComponent>(&Actor, UCharacterMovementComponent::StaticClass())->GetPawnOwner(), nullptr)
		<< "of an actor that is no pawn";
}

TEST_F(FSceneComponentTest, TagsAndSettingsAreRemembered)
{
	Part.ComponentTags.Add(TEXT("Lamp"));
	EXPECT_TRUE(Part.ComponentHasTag(TEXT("lamp")));
	EXPECT_FALSE(Part.ComponentHasTag(TEXT("Door")));
	UCameraComponent* const Camera = NewObject<UCameraComponent>(&Actor);
	Camera->SetFieldOfView(60.0f);
	Camera->SetAspectRatio(2.0f);
	EXPECT_EQ(Camera->FieldOfView, 60.0f);
	EXPECT_EQ(Camera->AspectRatio, 2.0f);
	UCapsuleComponent* const Capsule = NewObject<UCapsuleComponent>(&Actor);
	Capsule->SetCapsuleSize(40.0f, 10.0f);
	EXPECT_EQ(Capsule->GetUnscaledCapsuleRadius(), 40.0f);
	EXPECT_EQ(Capsule->GetUnscaledCapsuleHalfHeight(), 40.0f) << "never flatter than it is wide";
	Capsule->SetCapsuleSize(-1.0f, 10.0f);
	EXPECT_EQ(Capsule->GetUnscaledCapsuleRadius(), 0.0f);
}
}
