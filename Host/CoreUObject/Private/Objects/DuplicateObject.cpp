#include "CoreGlobals.h"
#include "ObjectText/ObjectTextImport.h"
#include "ObjectText/ObjectTextWriter.h"
#include "UObject/Class.h"
#include "UObject/GCObject.h"
#include "UObject/Package.h"
#include "UObject/UObjectHash.h"

namespace DuplicateObjectImpl
{
/** References as numbers: to copies where there is one, to the original object elsewhere. */
class FCopyReferences final : public FObjectReferences
{
public:
	FString Describe(const UObject* Object) override
	{
		if (!Object)
		{
			return TEXT("None");
		}
		const int32* const Known = Numbers.Find(Object);
		const int32 Number = Known ? *Known : Numbers.Add(Object, Objects.Add(const_cast<UObject*>(Object)));
		return FString::Printf(TEXT("#%d"), Number);
	}
	UObject* Find(const FString& Text) override
	{
		const int32 Number = FCString::Atoi(*Text.RightChop(1));
		UObject* const Object = Text.StartsWith(TEXT("#")) && Objects.IsValidIndex(Number) ? Objects[Number] : nullptr;
		UObject* const* const Copy = Copies.Find(Object);
		return Copy ? *Copy : Object;
	}

	TMap<const UObject*, UObject*> Copies;

private:
	TMap<const UObject*, int32> Numbers;
	TArray<UObject*> Objects;
};

/** Keeps the copies while nothing refers to them. */
class FKeeper final : public FGCObject
{
public:
	explicit FKeeper(TArray<UObject*>& InObjects)
		: Objects(InObjects)
	{
	}
	void AddReferencedObjects(FReferenceCollector& Collector) override { Collector.AddReferencedObjects(Objects); }
	FString GetReferencerName() const override { return TEXT("DuplicateObject"); }

private:
	TArray<UObject*>& Objects;
};

TSet<const UObject*> GetWanted(const UObject& Source)
{
	TArray<UObject*> Parts;
	GetObjectsWithOuter(&Source, Parts, true, RF_DuplicateTransient | RF_Transient);
	TSet<const UObject*> Wanted = { &Source };
	for (const UObject* Part : Parts)
	{
		if (!IsMadeByCompiler(*Part) && Wanted.Contains(Part->GetOuter()))
		{
			Wanted.Add(Part);
		}
	}
	return Wanted;
}
}

UObject* StaticDuplicateObject(const UObject* SourceObject, UObject* DestOuter, FName DestName, EObjectFlags FlagMask)
{
	checkf(SourceObject && DestOuter, TEXT("DuplicateObject needs an object and an outer"));
	const TSet<const UObject*> Wanted = DuplicateObjectImpl::GetWanted(*SourceObject);
	DuplicateObjectImpl::FCopyReferences References;
	FObjectTextWriter Writer(Wanted, ObjectText::EExtent::CopiedDifferences);
	Writer.Write(*SourceObject);

	FObjectTextImport Import(MoveTemp(Writer.Text), DestOuter, SourceObject->GetPathName(), 1);
	Import.SetFirstName(DestName.IsNone() ? MakeUniqueObjectName(DestOuter, SourceObject->GetClass()) : DestName);
	Import.CreateObjects(FlagMask & RF_Load, RF_NeedLoad | RF_NeedPostLoad);
	TArray<UObject*>& Copies = Import.GetObjects();
	for (int32 Index = 0; Index < Copies.Num(); ++Index)
	{
		if (Copies[Index])
		{
			References.Copies.Add(Writer.Written[Index], Copies[Index]);
		}
	}
	const DuplicateObjectImpl::FKeeper Keeper(Copies);
	Import.ReadValues();
	Import.PostLoad();
	for (int32 Index = 0; Index < Copies.Num(); ++Index)
	{
		if (IsValid(Copies[Index]))
		{
			Copies[Index]->PostDuplicate(false);
		}
	}
	return Copies[0];
}
