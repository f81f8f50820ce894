#pragma once

#include "UObject/UObjectGlobals.h"

/** For classes that are no objects but keep some: they report their references while garbage is collected. */
class FGCObject
{
public:
	FGCObject();
	virtual ~FGCObject();
	FGCObject(const FGCObject&)
		: FGCObject()
	{
	}
	FGCObject& operator=(const FGCObject&) { return *this; }

	virtual void AddReferencedObjects(FReferenceCollector& Collector) = 0;
	/** Who it is, for whoever wonders why an object is not collected. */
	virtual FString GetReferencerName() const = 0;
};
