#pragma once

#include "Containers/Map.h"
#include "ObjectText/ObjectTextParser.h"
#include "UObject/UObjectGlobals.h"

/**
 * The objects of one text on their way into memory, step by step: made, given their values, told. Those of a class that
 * only comes to be meanwhile, as the class of a Blueprint does, are deferred: made and given their values at the end.
 */
class FObjectTextImport
{
public:
	/**
	 * @param InRoot        the outer of the objects that lie in no other
	 * @param InSourceName  what messages call the text: the name of its file
	 */
	FObjectTextImport(FString&& InText, UObject* InRoot, const FString& InSourceName, int32 FirstLineNumber);
	UE_NONCOPYABLE(FObjectTextImport)

	/** The first object is made under this name instead of its own; before CreateObjects. */
	void SetFirstName(FName Name) { Parser.Objects[0].Name = Name.ToString(); }
	/** Makes another name and class of each record's: Rename gets the record; before CreateObjects. */
	void RenameRecords(TFunctionRef<void(FObjectRecord&)> Rename)
	{
		for (FObjectRecord& Record : Parser.Objects)
		{
			Rename(Record);
		}
	}
	/** FlagMask and ExtraFlags: of the flags in the text, and in addition to them. */
	void CreateObjects(EObjectFlags FlagMask, EObjectFlags ExtraFlags);
	/** To be called while references are in scope. */
	void ReadValues();
	/** PostLoad of each object that has not had it: the parts of an object before it, else in the order of the text. */
	void PostLoad();
	/**
	 * Makes what was deferred, and reads again the lines that referred to it. What has no class even now is given up.
	 * @param Prepare  called with each class before an object of it is made, so that it can be completed
	 */
	void CreateDeferred(TFunctionRef<void(UClass&)> Prepare);
	void ReadDeferredValues();

	/** The present line refers to something that is not there yet: it is read once more at the end. */
	void ReadLineAgain() { bReadLineAgain = true; }
	/** Whether an object of the path below the root ("A:B.C") is still to come. */
	bool IsDeferred(const FString& PathInRoot) const;
	void Warn(int32 LineNumber, const FString& Message) const;
	/** About the line that is being read. */
	void WarnHere(const FString& Message) const { Warn(LineNumberHere, Message); }

	TArray<UObject*>& GetObjects() { return Objects; }
	int32 GetNumRecords() const { return Parser.Objects.Num(); }
	const FObjectRecord& GetRecord(int32 Index) const { return Parser.Objects[Index]; }

private:
	enum class EState : uint8
	{
		Deferred,
		Made,
		GivenUp,
	};

	void CreateObject(int32 Index, UClass* Class);
	UObject* FindOrMake(const FObjectRecord& Record, UClass& Class, UObject& Outer);
	UObject* GetOuterOf(const FObjectRecord& Record) const;
	void GiveUp(int32 Index, const FString& Reason);
	void ReadLines(int32 Index);
	TArray<int32> GetPartsFirst() const;
	void ReadLine(int32 Index, const FObjectRecord::FLine& Line);
	EObjectFlags GetFlags(const FObjectRecord& Record) const;
	FString GetPathInRoot(int32 Index) const;

	FString Source;
	UObject* const Root;
	const FString SourceName;
	FObjectTextParser Parser;
	TArray<UObject*> Objects; // as the records; null for one that is not there
	TArray<EState> States;
	TSet<FString> DeferredPaths;
	TArray<TPair<int32, int32>> LinesAgain; // record and line
	TArray<int32> MadeLate;
	EObjectFlags FlagMask = RF_NoFlags;
	EObjectFlags ExtraFlags = RF_NoFlags;
	int32 LineNumberHere = 0;
	bool bReadLineAgain = false;
};

/** "Public,Standalone" and back; only flags that are kept in files. */
FString DescribeObjectFlags(EObjectFlags Flags);
EObjectFlags ReadObjectFlags(const FString& Text);
