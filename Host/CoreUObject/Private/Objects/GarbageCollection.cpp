#include "Objects/GarbageCollection.h"

#include "CoreGlobals.h"
#include "Objects/ObjectMemory.h"
#include "Objects/ObjectTable.h"
#include "UObject/Class.h"
#include "UObject/GCObject.h"

namespace GarbageCollection
{
bool bCollecting = false;

TArray<FGCObject*>& GetReferencers()
{
	static TArray<FGCObject*>* Referencers = new TArray<FGCObject*>;
	return *Referencers;
}

/** Marks what is reached. Objects wait in a list until their own references are looked at. */
class FMarker final : public FReferenceCollector
{
public:
	void Mark(const UObjectBase* Object)
	{
		if (!Object)
		{
			return;
		}
		FObjectTable::FEntry& Entry = FObjectTable::Get().GetEntry(*Object);
		if (!Entry.bReachable)
		{
			Entry.bReachable = true;
			Pending.Add(Entry.Object);
		}
	}

	void MarkReferences()
	{
		while (!Pending.IsEmpty())
		{
			UObject* Object = Pending.Pop(EAllowShrinking::No);
			Mark(Object->GetClass());
			Mark(Object->GetOuter());
			Object->GetClass()->ClassAddReferencedObjects(Object, *this);
			Object->GetClass()->CollectReferences(Object, *this);
		}
	}

protected:
	void HandleObjectReference(const UObjectBase* Object) override { Mark(Object); }

private:
	TArray<UObject*> Pending;
};

void MarkReachable(EObjectFlags KeepFlags)
{
	FMarker Marker;
	for (FObjectTable::FEntry& Entry : FObjectTable::Get().GetEntries())
	{
		Entry.bReachable = false;
	}
	for (FObjectTable::FEntry& Entry : FObjectTable::Get().GetEntries())
	{
		if (Entry.Object && (Entry.bRoot || (!Entry.bGarbage && Entry.Object->HasAnyFlags(KeepFlags))))
		{
			Marker.Mark(Entry.Object);
		}
	}
	VisitReferencers(Marker);
	Marker.MarkReferences();
}

/** In steps, so that an object can still look at others, and at its class, while it goes. */
void Sweep()
{
	TArray<UObject*> Unreachable;
	for (FObjectTable::FEntry& Entry : FObjectTable::Get().GetEntries())
	{
		if (Entry.Object && !Entry.bReachable)
		{
			Unreachable.Add(Entry.Object);
		}
	}
	for (UObject* Object : Unreachable)
	{
		Object->ConditionalBeginDestroy();
	}
	for (UObject* Object : Unreachable)
	{
		Object->ConditionalFinishDestroy();
	}
	for (UObject* Object : Unreachable)
	{
		DestroyRuntimeProperties(Object);
	}
	for (UObject* Object : Unreachable)
	{
		Object->~UObject();
		FreeObjectMemory(Object);
	}
}
}

void VisitReferencers(FReferenceCollector& Collector)
{
	for (FGCObject* Referencer : GarbageCollection::GetReferencers())
	{
		Referencer->AddReferencedObjects(Collector);
	}
}

bool IsGarbageCollecting()
{
	return GarbageCollection::bCollecting;
}

void CollectGarbage(EObjectFlags KeepFlags, bool bPerformFullPurge)
{
	checkf(IsInGameThread() && !IsGarbageCollecting() && !FObjectInitializer::IsInConstructor(),
		TEXT("Garbage is collected on the game thread, and neither inside a collection nor inside a constructor"));
	FCoreUObjectDelegates::GetPreGarbageCollectDelegate().Broadcast();
	GarbageCollection::bCollecting = true;
	GarbageCollection::MarkReachable(KeepFlags);
	GarbageCollection::Sweep();
	GarbageCollection::bCollecting = false;
	FCoreUObjectDelegates::GetPostGarbageCollect().Broadcast();
}

FGCObject::FGCObject()
{
	GarbageCollection::GetReferencers().Add(this);
}

FGCObject::~FGCObject()
{
	GarbageCollection::GetReferencers().Remove(this);
}
