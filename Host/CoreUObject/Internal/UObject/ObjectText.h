#pragma once

#include "Containers/Array.h"
#include "Containers/UnrealString.h"

class UObject;

/**
 * How references between objects become text, and text objects, while objects are written and read. The one made last
 * counts, for as long as it lives.
 */
class FObjectReferences
{
public:
	FObjectReferences();
	virtual ~FObjectReferences();
	UE_NONCOPYABLE(FObjectReferences)

	/** Null when no objects are being written or read. */
	static FObjectReferences* GetCurrent();

	/** Without spaces, commas and brackets outside quotes; "None" for null and for what must not be referred to. */
	virtual FString Describe(const UObject* Object) = 0;
	/** Null when there is no such object. */
	virtual UObject* Find(const FString& Text) = 0;
	/** Told of an object that was found and cannot stand where it is referred to. */
	virtual void Reject(const UObject& Object, const FString& Text) {}

private:
	FObjectReferences* const Enclosing;
};

/**
 * The state of an object as text: a line "Name=Value" for each property, in order of declaration ("Name(1)=Value" for
 * an element of a C array), then what ExportCustomProperties writes. Saving, loading, copying and undo all use it.
 */
namespace ObjectText
{
/** Added to the PPF_ flags of a value that has to come back bit by bit: as many digits as that takes. */
constexpr int32 PPF_RoundTrip = 0x40000000;
/** Spaces by which each level is indented. */
constexpr int32 IndentWidth = 3;

enum class EExtent
{
	/** What is saved and differs from the object's archetype. */
	SavedDifferences,
	/** The same for a copy of the object, which leaves out what is not to be copied. */
	CopiedDifferences,
	/** All that a transaction restores, whether or not it has its default. */
	Transaction,
};

/** Appends the lines. Parts of the object are not written, only references to them. */
void WriteState(const UObject& Object, EExtent Extent, int32 Indent, FString& Out);
/**
 * Reads the lines into the object. A line that cannot be read leaves its property alone.
 *
 * @param OutProblems  one text for each such line; null if nobody wants to know
 */
void ReadState(UObject& Object, const FString& Text, TArray<FString>* OutProblems = nullptr);
/** Reads one line. @return what is wrong with it; empty when nothing is */
FString ReadLine(UObject& Object, const FString& Line);

/** "Class'Path'", or what the present references say; for custom properties. */
FString DescribeReference(const UObject* Object);
/** The object of such a text, if it is there. */
UObject* FindReference(const FString& Text);
}
