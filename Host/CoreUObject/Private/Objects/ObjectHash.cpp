#include "UObject/UObjectHash.h"

#include "CoreGlobals.h"
#include "Objects/ObjectTable.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"

DEFINE_LOG_CATEGORY_STATIC(LogUObjectHash, Log, All);

namespace ObjectHash
{
bool IsOfClass(const UObject* Object, const UClass* Class, bool bExactClass)
{
	return !Class || (bExactClass ? Object->GetClass() == Class : Object->IsA(Class));
}

/** The object of the name directly in Outer, if it is of the class. */
UObject* FindIn(const UClass* Class, const UObject* Outer, FName Name, bool bExactClass)
{
	UObject* Found = FObjectTable::Get().Find(Outer, Name);
	return IsValid(Found) && IsOfClass(Found, Class, bExactClass) ? Found : nullptr;
}

bool IsDelimiter(TCHAR C)
{
	return C == u'.' || C == u':';
}

/** Takes "A" off "A.B:C"; the last part leaves Path empty. */
FString TakeFirstPart(FString& Path)
{
	int32 End = 0;
	while (End < Path.Len() && !IsDelimiter(Path[End]))
	{
		++End;
	}
	const FString Part = Path.Left(End);
	Path = Path.RightChop(End + 1);
	return Part;
}

bool IsNative(const UObject* Object)
{
	const UPackage* Package = Object->GetPackage();
	return Package && Package->HasAnyPackageFlags(PKG_CompiledIn);
}
}

UObject* StaticFindObjectFast(UClass* Class, UObject* Outer, FName Name, bool ExactClass)
{
	return Name.IsNone() ? nullptr : ObjectHash::FindIn(Class, Outer, Name, ExactClass);
}

UObject* StaticFindObject(UClass* Class, UObject* Outer, const TCHAR* Name, bool ExactClass)
{
	checkf(!IsGarbageCollecting(), TEXT("Objects cannot be looked for while garbage is collected"));
	FString Path(Name);
	// "Class'Path'", as references are written.
	int32 Quote = INDEX_NONE;
	if (Path.FindChar(u'\'', Quote) && Path.EndsWith(TEXT("'")))
	{
		Path = Path.Mid(Quote + 1, Path.Len() - Quote - 2);
	}

	UObject* Current = Outer;
	while (!Path.IsEmpty())
	{
		const FString PartText = ObjectHash::TakeFirstPart(Path);
		const FName Part = PartText.Len() < NAME_SIZE ? FName(*PartText, FNAME_Find) : FName();
		if (Part.IsNone())
		{
			return nullptr;
		}
		Current = ObjectHash::FindIn(Path.IsEmpty() ? Class : nullptr, Current, Part, ExactClass && Path.IsEmpty());
		if (!Current)
		{
			return nullptr;
		}
	}
	return Current == Outer ? nullptr : Current;
}

UObject* StaticFindFirstObject(UClass* Class, const TCHAR* Name, EFindFirstObjectOptions Options,
	ELogVerbosity::Type AmbiguousMessageVerbosity, const TCHAR* CurrentOperation)
{
	checkf(!IsGarbageCollecting(), TEXT("Objects cannot be looked for while garbage is collected"));
	const FString Text(Name);
	int32 Delimiter = INDEX_NONE;
	if (Text.FindChar(u'.', Delimiter) || Text.FindChar(u'/', Delimiter))
	{
		return StaticFindObject(Class, nullptr, Name, EnumHasAnyFlags(Options, EFindFirstObjectOptions::ExactClass));
	}
	const FName ObjectName = Text.Len() < NAME_SIZE ? FName(Name, FNAME_Find) : FName();
	UObject* First = nullptr;
	int32 NumFound = 0;
	for (UObject* Object : FObjectTable::Get().FindByName(ObjectName))
	{
		if (ObjectName.IsNone() || !IsValid(Object) ||
			!ObjectHash::IsOfClass(Object, Class, EnumHasAnyFlags(Options, EFindFirstObjectOptions::ExactClass)))
		{
			continue;
		}
		++NumFound;
		const bool bPreferred = EnumHasAnyFlags(Options, EFindFirstObjectOptions::NativeFirst) && First &&
								!ObjectHash::IsNative(First) && ObjectHash::IsNative(Object);
		First = First && !bPreferred ? First : Object;
	}
	if (NumFound > 1)
	{
		ensureMsgf(!EnumHasAnyFlags(Options, EFindFirstObjectOptions::EnsureIfAmbiguous),
			TEXT("The name %s is ambiguous"), Name);
		UE_CLOG(AmbiguousMessageVerbosity != ELogVerbosity::NoLogging, LogUObjectHash, Warning,
			TEXT("The name %s is ambiguous, %s is used"), Name, *First->GetPathName());
	}
	return First;
}

UObject* StaticFindFirstObjectSafe(UClass* Class, const TCHAR* Name, EFindFirstObjectOptions Options,
	ELogVerbosity::Type AmbiguousMessageVerbosity, const TCHAR* CurrentOperation)
{
	return IsGarbageCollecting() || IsSavingPackage()
			   ? nullptr
			   : StaticFindFirstObject(Class, Name, Options, AmbiguousMessageVerbosity, CurrentOperation);
}

void ForEachObjectWithOuter(
	const UObjectBase* Outer, TFunctionRef<void(UObject*)> Operation, bool bIncludeNestedObjects)
{
	TArray<UObject*> Objects;
	GetObjectsWithOuter(Outer, Objects, bIncludeNestedObjects);
	for (UObject* Object : Objects)
	{
		Operation(Object);
	}
}

void GetObjectsWithOuter(
	const UObjectBase* Outer, TArray<UObject*>& OutResults, bool bIncludeNestedObjects, EObjectFlags ExclusionFlags)
{
	TArray<UObject*> Pending = FObjectTable::Get().GetChildren(*Outer);
	for (int32 Index = 0; Index < Pending.Num(); ++Index)
	{
		UObject* const Object = Pending[Index];
		if (!Object->HasAnyFlags(ExclusionFlags) && IsValid(Object))
		{
			OutResults.Add(Object);
		}
		if (bIncludeNestedObjects)
		{
			Pending.Append(FObjectTable::Get().GetChildren(*Object));
		}
	}
}

void GetObjectsOfClass(const UClass* ClassToLookFor, TArray<UObject*>& OutResults, bool bIncludeDerivedClasses,
	EObjectFlags ExclusionFlags)
{
	const auto AddUnlessExcluded = [&OutResults, ExclusionFlags](const FObjectTable::FEntry& Entry) {
		if (Entry.Object && !Entry.bGarbage && !Entry.Object->HasAnyFlags(ExclusionFlags))
		{
			OutResults.Add(Entry.Object);
		}
	};
	if (ClassToLookFor)
	{
		FObjectTable::Get().ForEachOfClass(ClassToLookFor, bIncludeDerivedClasses, AddUnlessExcluded);
		return;
	}
	for (const FObjectTable::FEntry& Entry : FObjectTable::Get().GetEntries())
	{
		AddUnlessExcluded(Entry);
	}
}

void GetDerivedClasses(const UClass* ClassToLookFor, TArray<UClass*>& OutResults, bool bRecursive)
{
	TArray<UObject*> Classes;
	GetObjectsOfClass(UClass::StaticClass(), Classes);
	for (UObject* Object : Classes)
	{
		UClass* const Class = static_cast<UClass*>(Object);
		const bool bDerived = bRecursive ? Class != ClassToLookFor && Class->IsChildOf(ClassToLookFor)
										 : Class->GetSuperClass() == ClassToLookFor;
		if (bDerived)
		{
			OutResults.Add(Class);
		}
	}
}
