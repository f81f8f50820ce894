#pragma once

#include "Containers/Set.h"
#include "UObject/ObjectText.h"

/** Writes objects with what lies in them, an outer around what it holds, in the order in which they came there. */
class FObjectTextWriter
{
public:
	/** @param InWanted  nothing else is written */
	FObjectTextWriter(const TSet<const UObject*>& InWanted, ObjectText::EExtent InExtent)
		: Wanted(InWanted)
		, Extent(InExtent)
	{
	}

	void Write(const UObject& Object, int32 Indent = 0);

	FString Text;
	TArray<const UObject*> Written; // in the order of the text

private:
	const TSet<const UObject*>& Wanted;
	const ObjectText::EExtent Extent;
};

/** Whether it is a function or another part of a class that comes to be when the class is compiled. */
bool IsMadeByCompiler(const UObject& Object);
