#include "BehaviorTree/BlackboardData.h"

#include "BehaviorTree/Blackboard/BlackboardKeyType_Enum.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_NativeEnum.h"
#include "BehaviorTree/Blackboard/BlackboardKeyType_Object.h"
#include "GameFramework/Actor.h"

const FName FBlackboard::KeySelf(TEXT("SelfActor"));

namespace BlackboardDataImpl
{
bool HasKey(const TArray<FBlackboardEntry>& Keys, FName Name)
{
	return Keys.ContainsByPredicate([Name](const FBlackboardEntry& Entry) { return Entry.EntryName == Name; });
}

/** The enum key that takes the place of the older kind. */
UBlackboardKeyType_Enum* Convert(UBlackboardData* Outer, const UBlackboardKeyType_NativeEnum& Old)
{
	UBlackboardKeyType_Enum* const New = NewObject<UBlackboardKeyType_Enum>(Outer);
	New->EnumType = Old.EnumType;
	New->EnumName = Old.EnumName;
	New->PostEditChange();
	return New;
}
}

void UBlackboardData::PostInitProperties()
{
	Super::PostInitProperties();
	// Keys of a loaded blackboard or of a copy come from its text.
	if (!HasAnyFlags(RF_ClassDefaultObject | RF_NeedLoad))
	{
		AddKeySelf();
	}
}

void UBlackboardData::AddKeySelf()
{
	if (Parent || BlackboardDataImpl::HasKey(Keys, FBlackboard::KeySelf))
	{
		return;
	}
	UBlackboardKeyType_Object* const KeyType = NewObject<UBlackboardKeyType_Object>(this);
	KeyType->BaseClass = AActor::StaticClass();
	FBlackboardEntry& Entry = Keys.AddDefaulted_GetRef();
	Entry.EntryName = FBlackboard::KeySelf;
	Entry.KeyType = KeyType;
}

void UBlackboardData::PostLoad()
{
	Super::PostLoad();
	for (FBlackboardEntry& Entry : Keys)
	{
		if (const UBlackboardKeyType_NativeEnum* const Old = Cast<UBlackboardKeyType_NativeEnum>(Entry.KeyType.Get()))
		{
			Entry.KeyType = BlackboardDataImpl::Convert(this, *Old);
		}
	}
	BreakCycle();
	if (Parent)
	{
		Parent->ConditionalPostLoad();
	}
	UpdateParentKeys();
}

void UBlackboardData::BreakCycle()
{
	TArray<const UBlackboardData*> Seen = { this };
	for (const UBlackboardData* Ancestor = Parent; Ancestor; Ancestor = Ancestor->Parent)
	{
		if (Ancestor == this)
		{
			Parent = nullptr;
			return;
		}
		if (Seen.Contains(Ancestor)) // a cycle that this asset only leads to; it is theirs to break
		{
			return;
		}
		Seen.Add(Ancestor);
	}
}

void UBlackboardData::UpdateParentKeys()
{
	BreakCycle();
	ParentKeys.Empty();
	TArray<const UBlackboardData*> Seen;
	for (const UBlackboardData* Ancestor = Parent; Ancestor && !Seen.Contains(Ancestor); Ancestor = Ancestor->Parent)
	{
		Seen.Add(Ancestor);
		ParentKeys.Insert(Ancestor->Keys, 0);
	}
	Keys.RemoveAll(
		[this](const FBlackboardEntry& Entry) { return BlackboardDataImpl::HasKey(ParentKeys, Entry.EntryName); });
	AddKeySelf();
}

int32 UBlackboardData::GetNumKeys() const
{
	return ParentKeys.Num() + Keys.Num();
}

bool UBlackboardData::IsRelatedTo(const UBlackboardData& OtherAsset) const
{
	const auto LeadsTo = [](const UBlackboardData* From, const UBlackboardData* To) {
		for (int32 Steps = 0; From && From != To && Steps < 1000; ++Steps)
		{
			From = From->Parent;
		}
		return From == To;
	};
	return LeadsTo(this, &OtherAsset) || LeadsTo(&OtherAsset, this);
}

#if WITH_EDITOR
void UBlackboardData::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);
	UpdateParentKeys();
}
#endif
