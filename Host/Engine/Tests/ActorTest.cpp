#include "Components/CapsuleComponent.h"
#include "Components/InputComponent.h"
#include "Components/SkeletalMeshComponent.h"
#include "Components/SphereComponent.h"
#include "Engine/Level.h"
#include "EngineTestTypes.h"
#include "EngineUtils.h"
#include "GameFramework/PlayerController.h"
#include "GameFramework/SpringArmComponent.h"
#include "UObject/StrongObjectPtr.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>
#include <string>

ADiaryActor::ADiaryActor()
{
	PrimaryActorTick.bCanEverTick = true;
	Root = CreateDefaultSubobject<USceneComponent>(TEXT("Root"));
	RootComponent = Root;
	Diary = CreateDefaultSubobject<UDiaryComponent>(TEXT("Diary"));
	Diary->SetupAttachment(Root);
	Diary->SetRelativeLocation(FVector(100, 0, 0));
	Further.Add(Root);
}

ABareCharacter::ABareCharacter(const FObjectInitializer& ObjectInitializer)
	: Super(ObjectInitializer.SetDefaultSubobjectClass<USlowMovementComponent>(CharacterMovementComponentName)
				.DoNotCreateDefaultSubobject(MeshComponentName))
{
}

void ABareCharacter::SetupPlayerInputComponent(UInputComponent* PlayerInputComponent)
{
	PlayerInputComponent->BindAxis(TEXT("Forward"), this, &ABareCharacter::MoveForward);
	PlayerInputComponent->BindAxis(TEXT("Turn"), this, &APawn::AddControllerYawInput);
	PlayerInputComponent->BindAction(TEXT("Jump"), IE_Pressed, this, &ABareCharacter::Jump);
}

namespace
{
std::string ToStd(const FString& Text)
{
	return TCHAR_TO_UTF8(*Text);
}

class FActorTest : public testing::Test
{
protected:
	UWorld* const World = UWorld::CreateWorld(EWorldType::Game, false);

	~FActorTest() override
	{
		World->DestroyWorld(false);
		CollectGarbage(RF_NoFlags);
	}

	void Play()
	{
		World->InitializeActorsForPlay(FURL());
		World->BeginPlay();
	}
	void Tick(float Seconds) { World->Tick(LEVELTICK_All, Seconds); }
	static void ExpectAt(const FVector& Place, const FVector& Expected)
	{
		EXPECT_TRUE(Place.Equals(Expected, 1e-3)) << ToStd(Place.ToString());
	}
	static std::string TakeDiary(ADiaryActor* Actor)
	{
		const std::string Text = ToStd(Actor->Diary->Diary);
		Actor->Diary->Diary.Empty();
		return Text;
	}
};
}

TEST_F(FActorTest, LifeGoesThroughItsStepsInOrder)
{
	ADiaryActor* const Early = World->SpawnActor<ADiaryActor>();
	EXPECT_EQ(TakeDiary(Early), "construct;");
	Tick(0.1f);
	EXPECT_EQ(TakeDiary(Early), "") << "nothing ticks before play";
	World->InitializeActorsForPlay(FURL());
	EXPECT_EQ(TakeDiary(Early), "init;actor init;");
	World->BeginPlay();
	EXPECT_EQ(TakeDiary(Early), "actor begin;begin;");

	// Late comers catch up; the actor ticks before physics, its component with it.
	ADiaryActor* const Late = World->SpawnActor<ADiaryActor>(FVector(1, 2, 3), FRotator::ZeroRotator);
	EXPECT_EQ(TakeDiary(Late), "construct;init;actor init;actor begin;begin;");
	Tick(0.5f);
	EXPECT_EQ(TakeDiary(Late), "actor tick;tick 0.5;");
	Late->Diary->SetComponentTickInterval(1.0f);
	Late->SetActorTickEnabled(false);
	Tick(0.5f);
	EXPECT_EQ(TakeDiary(Late), "");
	Tick(0.7f);
	EXPECT_EQ(TakeDiary(Late), "tick 1.2;");

	const TWeakObjectPtr<ADiaryActor> WeakLate(Late);
	const TWeakObjectPtr<UActorComponent> WeakDiary(Late->Diary.Get());
	EXPECT_TRUE(Late->Destroy());
	EXPECT_TRUE(Late->Destroy()) << "twice is once";
	EXPECT_EQ(TakeDiary(Late), "Destroyed;out;");
	EXPECT_FALSE(IsValid(Late));
	EXPECT_FALSE(WeakDiary.IsValid());
	Tick(2.0f);
	EXPECT_EQ(TakeDiary(Late), "");
	CollectGarbage(RF_NoFlags);
	EXPECT_EQ(WeakLate.GetEvenIfUnreachable(), nullptr);

	TStrongObjectPtr<ADiaryActor> Kept(Early);
	World->DestroyWorld(false);
	EXPECT_TRUE(TakeDiary(Early).ends_with("LevelTransition;out;"));
	EXPECT_EQ(World->SpawnActor<ADiaryActor>(), nullptr);
}

TEST_F(FActorTest, EachActorHasItsOwnPartsWithTheDefaultObjectsValues)
{
	ADiaryActor* const Defaults = GetMutableDefault<ADiaryActor>();
	EXPECT_EQ(ToStd(Defaults->Diary->GetPathName()), "/Script/EngineTests.Default__DiaryActor:Diary");
	EXPECT_TRUE(Defaults->Diary->IsTemplate());
	EXPECT_EQ(Defaults->GetComponents().Num(), 2);
	Defaults->Diary->Pages = 77;
	ADiaryActor* const Actor = World->SpawnActor<ADiaryActor>();
	Defaults->Diary->Pages = 10;
	EXPECT_NE(Actor->Diary, Defaults->Diary);
	EXPECT_EQ(Actor->Diary->Pages, 77);
	EXPECT_EQ(Actor->Diary->GetArchetype(), Defaults->Diary.Get());
	EXPECT_EQ(Actor->Diary->GetAttachParent(), Actor->Root.Get()) << "references between parts stay inside the actor";
	EXPECT_EQ(Actor->Further[0], Actor->Root.Get());
	EXPECT_EQ(ToStd(Actor->Diary->GetPathName(Actor->GetLevel())), ToStd(Actor->GetName()) + ".Diary");

	ADiaryActor* const Copy = World->SpawnActor<ADiaryActor>(ADiaryActor::StaticClass(), { .Template = Actor });
	EXPECT_EQ(Copy->Diary->Pages, 77);
	EXPECT_EQ(Copy->Diary->GetOwner(), Copy);

	TArray<UActorComponent*> Components;
	Actor->GetComponents(Components);
	EXPECT_EQ(Components.Num(), 2);
	TArray<UDiaryComponent*> Diaries;
	Actor->GetComponents(Diaries);
	EXPECT_EQ(Diaries.Num(), 1);
	EXPECT_EQ(Actor->FindComponentByClass<USphereComponent>(), nullptr);
	USphereComponent* const Sphere = NewObject<USphereComponent>(Actor, TEXT("Sphere"));
	Sphere->RegisterComponent();
	EXPECT_EQ(Actor->FindComponentByClass<USphereComponent>(), Sphere);
	Sphere->DestroyComponent();
	EXPECT_EQ(Actor->GetComponents().Num(), 2);
}

TEST_F(FActorTest, ACharacterHasTheEnginesParts)
{
	const ACharacter* const Character = GetDefault<ACharacter>();
	EXPECT_EQ(ToStd(Character->GetCapsuleComponent()->GetName()), "CollisionCylinder");
	EXPECT_EQ(ToStd(Character->GetCharacterMovement()->GetName()), "CharMoveComp");
	EXPECT_EQ(ToStd(Character->GetMesh()->GetName()), "CharacterMesh0");
	EXPECT_EQ(Character->GetMesh()->GetAttachParent(), Character->GetCapsuleComponent());
	EXPECT_EQ(Character->GetRootComponent(), Character->GetCapsuleComponent());

	const ABareCharacter* const Bare = World->SpawnActor<ABareCharacter>();
	EXPECT_EQ(Bare->GetMesh(), nullptr);
	EXPECT_TRUE(Bare->GetCharacterMovement()->IsA<USlowMovementComponent>());
	EXPECT_EQ(Bare->GetCharacterMovement()->UpdatedComponent, Bare->GetCapsuleComponent());

	const FProperty* const Capsule = ACharacter::StaticClass()->FindPropertyByName(TEXT("CapsuleComponent"));
	EXPECT_TRUE(Capsule->HasAllPropertyFlags(CPF_InstancedReference | CPF_ExportObject | CPF_BlueprintReadOnly));
	const FProperty* const Further = ADiaryActor::StaticClass()->FindPropertyByName(TEXT("Further"));
	EXPECT_TRUE(Further->HasAnyPropertyFlags(CPF_ContainsInstancedReference));
	EXPECT_FALSE(AActor::StaticClass()->FindPropertyByName(TEXT("Owner"))->HasAnyPropertyFlags(CPF_InstancedReference));
}

TEST_F(FActorTest, PartsMoveWithWhatTheyAreAttachedTo)
{
	ADiaryActor* const A = World->SpawnActor<ADiaryActor>(FVector(0, 0, 50), FRotator(0, 90, 0));
	ADiaryActor* const B = World->SpawnActor<ADiaryActor>(FVector(1000, 0, 0), FRotator::ZeroRotator);
	ExpectAt(A->Diary->GetComponentLocation(), FVector(0, 100, 50));
	EXPECT_EQ(A->Root->GetNumChildrenComponents(), 1);

	EXPECT_TRUE(B->AttachToActor(A, FAttachmentTransformRules::KeepWorldTransform));
	ExpectAt(B->GetActorLocation(), FVector(1000, 0, 0));
	EXPECT_EQ(B->GetAttachParentActor(), A);
	A->SetActorLocation(FVector(0, 10, 50));
	ExpectAt(B->GetActorLocation(), FVector(1000, 10, 0));
	EXPECT_FALSE(A->AttachToActor(B, FAttachmentTransformRules::KeepWorldTransform)) << "a ring";
	B->SetActorLocationAndRotation(FVector(7, 8, 9), FRotator(0, 30, 0));
	ExpectAt(B->GetActorLocation(), FVector(7, 8, 9));
	EXPECT_TRUE(B->GetActorRotation().Equals(FRotator(0, 30, 0)));
	EXPECT_TRUE(B->AttachToComponent(A->Diary, FAttachmentTransformRules::SnapToTargetIncludingScale));
	ExpectAt(B->GetActorLocation(), A->Diary->GetComponentLocation());
	B->DetachFromActor(FDetachmentTransformRules::KeepWorldTransform);
	ExpectAt(B->GetActorLocation(), A->Diary->GetComponentLocation());
	EXPECT_EQ(A->Diary->GetNumChildrenComponents(), 0);

	const int32 Failures = FDebug::GetNumEnsureFailures();
	B->Diary->SetupAttachment(A->Root);
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), Failures + 1) << "it is for constructors";
	EXPECT_EQ(B->Diary->GetAttachParent(), B->Root.Get());
}

TEST_F(FActorTest, ASpringArmHoldsItsChildrenBehindAndTurnsWithTheController)
{
	Play();
	ABareCharacter* const Pawn = World->SpawnActor<ABareCharacter>();
	USpringArmComponent* const Arm = NewObject<USpringArmComponent>(Pawn, TEXT("Arm"));
	Arm->SetupAttachment(Pawn->GetRootComponent());
	Arm->TargetArmLength = 400.0f;
	Arm->bUsePawnControlRotation = true;
	Arm->RegisterComponent();
	USceneComponent* const Camera = NewObject<USceneComponent>(Pawn, TEXT("Camera"));
	Camera->SetupAttachment(Arm);
	Camera->RegisterComponent();
	ExpectAt(Camera->GetComponentLocation(), FVector(-400, 0, 0));
	APlayerController* const Player = World->SpawnActor<APlayerController>();
	Player->Possess(Pawn);
	Player->SetControlRotation(FRotator(0, 90, 0));
	ExpectAt(Camera->GetComponentLocation(), FVector(0, -400, 0));
}

TEST_F(FActorTest, InputOfAPlayerMovesAndTurnsThePawn)
{
	FURL Url;
	Url.AddOption(*(TEXT("Game=") + ATestGameMode::StaticClass()->GetPathName()));
	ASSERT_TRUE(World->SetGameMode(Url));
	Play();
	ATestGameMode* const Mode = World->GetAuthGameMode<ATestGameMode>();
	ASSERT_TRUE(Mode);
	EXPECT_TRUE(Mode->HasActorBegunPlay());
	APlayerController* const Player = Mode->SpawnPlayerController();
	EXPECT_EQ(World->GetFirstPlayerController(), Player);
	Mode->RestartPlayerAtTransform(Player, FTransform(FVector(0, 0, 100)));
	ABareCharacter* const Pawn = Player->GetPawn<ABareCharacter>();
	ASSERT_TRUE(Pawn && Pawn->InputComponent);
	EXPECT_TRUE(Pawn->IsPlayerControlled());

	UInputComponent* const Input = Pawn->InputComponent;
	ASSERT_EQ(Input->AxisBindings.Num(), 2);
	Pawn->GetCharacterMovement()->MaxWalkSpeed = 200.0f;
	Input->AxisBindings[0].AxisDelegate.Execute(3.0f); // no faster than at full input
	Input->AxisBindings[1].AxisDelegate.Execute(4.0f);
	Tick(0.5f);
	ExpectAt(Pawn->GetActorLocation(), FVector(100, 0, 100));
	ExpectAt(Pawn->GetVelocity(), FVector(200, 0, 0));
	EXPECT_TRUE(Player->GetControlRotation().Equals(FRotator(0, 10, 0)));
	EXPECT_TRUE(Pawn->GetActorRotation().Equals(FRotator(0, 10, 0))) << "by default a pawn turns with its controller";
	Tick(0.5f);
	ExpectAt(Pawn->GetActorLocation(), FVector(100, 0, 100));
	ASSERT_EQ(Input->GetNumActionBindings(), 1);
	EXPECT_EQ(Input->GetActionBinding(0).GetActionName(), FName("Jump"));
	Input->GetActionBinding(0).ActionDelegate.Execute();
	EXPECT_EQ(Pawn->Jumps, 1);

	APlayerController* const Other = World->SpawnActor<APlayerController>();
	Other->Possess(Pawn);
	EXPECT_EQ(Player->GetPawn(), nullptr) << "a pawn has one controller";
	Pawn->Destroy();
	EXPECT_EQ(Other->GetPawn(), nullptr);
}

TEST_F(FActorTest, SpawningRefusesWhatCannotBeAndKeepsNamesApart)
{
	EXPECT_EQ(World->SpawnActor<AActor>(static_cast<UClass*>(nullptr)), nullptr);
	EXPECT_EQ(World->SpawnActor(UDiaryComponent::StaticClass()), nullptr);
	EXPECT_EQ(World->SpawnActor(AController::StaticClass()), nullptr) << "abstract";

	FActorSpawnParameters Parameters;
	Parameters.Name = TEXT("Tree");
	AActor* const Tree = World->SpawnActor<AActor>(Parameters);
	EXPECT_EQ(ToStd(Tree->GetPathName(World)), "PersistentLevel.Tree");
	EXPECT_EQ(Tree->GetWorld(), World);
	EXPECT_DEATH(World->SpawnActor<AActor>(Parameters), "Cannot generate unique name for 'Tree'");
	Parameters.NameMode = FActorSpawnParameters::ESpawnActorNameMode::Required_ReturnNull;
	EXPECT_EQ(World->SpawnActor<AActor>(Parameters), nullptr);
	Parameters.NameMode = FActorSpawnParameters::ESpawnActorNameMode::Requested;
	Parameters.Owner = Tree;
	AActor* const Second = World->SpawnActor<AActor>(Parameters);
	EXPECT_TRUE(Second->GetName().StartsWith(TEXT("Tree_")));
	EXPECT_EQ(Second->GetOwner(), Tree);

	int32 Count = 0;
	for (TActorIterator<AActor> It(World); It; ++It)
	{
		Count += It->GetName().StartsWith(TEXT("Tree")) ? 1 : 0;
	}
	EXPECT_EQ(Count, 2);

	Play();
	Second->SetLifeSpan(1.0f);
	Tick(0.6f);
	EXPECT_TRUE(IsValid(Second));
	Tick(0.6f);
	EXPECT_FALSE(IsValid(Second));
}
