#pragma once

#include "GameFramework/Pawn.h"
#include "Character.generated.h"

class UCapsuleComponent;
class UCharacterMovementComponent;
class USkeletalMeshComponent;

/** A pawn that walks: a capsule with a mesh in it and a movement component. */
UCLASS(Config = Game, BlueprintType, meta = (ShortTooltip = "A character is a type of Pawn that can walk around."))
class ENGINE_API ACharacter : public APawn
{
	GENERATED_BODY()

public:
	ACharacter(const FObjectInitializer& ObjectInitializer = FObjectInitializer::Get());

	// The names of the parts, for FObjectInitializer::SetDefaultSubobjectClass.
	static const FName MeshComponentName;
	static const FName CharacterMovementComponentName;
	static const FName CapsuleComponentName;

	USkeletalMeshComponent* GetMesh() const { return Mesh; }
	UCharacterMovementComponent* GetCharacterMovement() const { return CharacterMovement; }
	template <class T>
	T* GetCharacterMovement() const
	{
		return CastChecked<T>(GetCharacterMovement());
	}
	UCapsuleComponent* GetCapsuleComponent() const { return CapsuleComponent; }
	UPawnMovementComponent* GetMovementComponent() const override;

private:
	UPROPERTY(Category = "Character", VisibleAnywhere, BlueprintReadOnly, meta = (AllowPrivateAccess = "true"))
	TObjectPtr<USkeletalMeshComponent> Mesh;

	UPROPERTY(Category = "Character", VisibleAnywhere, BlueprintReadOnly, meta = (AllowPrivateAccess = "true"))
	TObjectPtr<UCharacterMovementComponent> CharacterMovement;

	UPROPERTY(Category = "Character", VisibleAnywhere, BlueprintReadOnly, meta = (AllowPrivateAccess = "true"))
	TObjectPtr<UCapsuleComponent> CapsuleComponent;
};
