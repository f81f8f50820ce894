#pragma once

#include "UObject/GCObject.h"

/** Keeps an object from being collected for as long as the pointer lives. */
template <typename ObjectType>
class TStrongObjectPtr
{
public:
	using ElementType = ObjectType;

	TStrongObjectPtr() = default;
	TStrongObjectPtr(decltype(nullptr)) {}
	explicit TStrongObjectPtr(ObjectType* InObject) { Referencer.Object = InObject; }

	ObjectType* Get() const { return Referencer.Object; }
	ObjectType* operator->() const { return &**this; }
	ObjectType& operator*() const
	{
		check(IsValid());
		return *Referencer.Object;
	}
	bool IsValid() const { return Referencer.Object != nullptr; }
	explicit operator bool() const { return IsValid(); }
	void Reset(ObjectType* NewObject = nullptr) { Referencer.Object = NewObject; }
	bool operator==(const TStrongObjectPtr& Other) const { return Get() == Other.Get(); }
	friend uint32 GetTypeHash(const TStrongObjectPtr& Pointer)
	{
		return ::GetTypeHash(static_cast<const void*>(Pointer.Get()));
	}

private:
	struct FReferencer : FGCObject
	{
		void AddReferencedObjects(FReferenceCollector& Collector) override { Collector.AddReferencedObject(Object); }
		FString GetReferencerName() const override { return TEXT("TStrongObjectPtr"); }
		ObjectType* Object = nullptr;
	};

	FReferencer Referencer;
};
