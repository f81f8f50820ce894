#pragma once

#include "Engine/Level.h"
#include "Engine/World.h"
#include "GameFramework/Actor.h"

/** Walks the actors of a class, and of its children, that are in a world when it starts. */
template <typename ActorType>
class TActorIterator
{
public:
	explicit TActorIterator(const UWorld* InWorld, TSubclassOf<ActorType> InClass = ActorType::StaticClass())
	{
		for (AActor* Actor : InWorld->PersistentLevel->Actors)
		{
			if (IsValid(Actor) && Actor->IsA(InClass))
			{
				Actors.Add(static_cast<ActorType*>(Actor));
			}
		}
	}

	explicit operator bool() const { return Index < Actors.Num(); }
	ActorType* operator*() const { return Actors[Index]; }
	ActorType* operator->() const { return **this; }
	TActorIterator& operator++()
	{
		++Index;
		return *this;
	}

private:
	TArray<ActorType*> Actors;
	int32 Index = 0;
};
