#pragma once

#include "Engine/DataAsset.h"
#include "BlackboardData.generated.h"

class UBlackboardKeyType;

namespace FBlackboard
{
/** The key that holds the pawn. */
AIMODULE_API extern const FName KeySelf;
}

USTRUCT()
struct FBlackboardEntry
{
	GENERATED_BODY()

	UPROPERTY(EditAnywhere, Category = Blackboard)
	FName EntryName;

	UPROPERTY(EditAnywhere, Category = Blackboard)
	FString EntryDescription;

	UPROPERTY(EditAnywhere, Category = Blackboard)
	FName EntryCategory;

	/** What values it has; null when the class is gone. */
	UPROPERTY(EditAnywhere, Instanced, Category = Blackboard)
	TObjectPtr<UBlackboardKeyType> KeyType;

	/** Whether all controllers that use the blackboard share the value. */
	UPROPERTY(EditAnywhere, Category = Blackboard)
	uint8 bInstanceSynced : 1;

	FBlackboardEntry()
		: bInstanceSynced(false)
	{
	}
};

/**
 * An asset: the keys under which the nodes of a behavior tree find what they have to know.
 *
 * A blackboard without parent has the key FBlackboard::KeySelf from the start.
 */
UCLASS(BlueprintType)
class AIMODULE_API UBlackboardData : public UDataAsset
{
	GENERATED_BODY()

public:
	UPROPERTY(EditAnywhere, Category = Parent)
	TObjectPtr<UBlackboardData> Parent;

	/** All that come from Parent; see UpdateParentKeys. */
	UPROPERTY(VisibleDefaultsOnly, Transient, Category = Parent)
	TArray<FBlackboardEntry> ParentKeys;

	/** Its own, without those of Parent. */
	UPROPERTY(EditAnywhere, Category = Blackboard)
	TArray<FBlackboardEntry> Keys;

	/** Rebuilds ParentKeys, the nearest parent's keys last, and removes what a parent has of one's own keys. */
	void UpdateParentKeys();
	/** Own keys and the parents'. */
	int32 GetNumKeys() const;
	/** True for itself. */
	bool IsRelatedTo(const UBlackboardData& OtherAsset) const;

	void PostInitProperties() override;
	void PostLoad() override;
#if WITH_EDITOR
	void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent) override;
#endif

private:
	/** A parent that leads back to this asset is let go. */
	void BreakCycle();
	void AddKeySelf();
};
