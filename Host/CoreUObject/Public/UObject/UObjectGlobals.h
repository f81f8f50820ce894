#pragma once

#include "Containers/Map.h"
#include "Delegates/Delegate.h"
#include "Logging/LogVerbosity.h"
#include "UObject/UObjectBaseUtility.h"

#include <type_traits>

class FObjectInitializer;
class UObject;
class UPackage;
struct FPropertyChangedEvent;

enum class EFindFirstObjectOptions
{
	None = 0,
	ExactClass = 1 << 1,       // no children of the class
	NativeFirst = 1 << 2,      // native types before those of Blueprints
	EnsureIfAmbiguous = 1 << 3 // tell when there are several
};
ENUM_CLASS_FLAGS(EFindFirstObjectOptions)

/**
 * The object under construction, and what it is to be made from.
 *
 * A child's constructor passes it on to its parent's after having said which class a part of the parent shall have, or
 * that it shall not be made: Super(ObjectInitializer.SetDefaultSubobjectClass<UMyMovement>(TEXT("CharMoveComp"))).
 */
class FObjectInitializer
{
public:
	FObjectInitializer(UObject* InObj, UObject* InTemplate);
	~FObjectInitializer();
	UE_NONCOPYABLE(FObjectInitializer)

	/** The innermost construction that is running; asserts when there is none. */
	static FObjectInitializer& Get();
	static bool IsInConstructor();

	UObject* GetObj() const { return Obj; }
	UObject* GetArchetype() const { return Template; }
	template <typename ReturnType>
	ReturnType* CreateDefaultSubobject(UObject* Outer, FName SubobjectName, bool bTransient = false) const
	{
		return static_cast<ReturnType*>(
			CreateDefaultSubobject(Outer, SubobjectName, ReturnType::StaticClass(), bTransient));
	}
	/** Null for a part that a child's constructor does not want. */
	template <typename ReturnType>
	ReturnType* CreateOptionalDefaultSubobject(UObject* Outer, FName SubobjectName, bool bTransient = false) const
	{
		return static_cast<ReturnType*>(
			CreateDefaultSubobject(Outer, SubobjectName, ReturnType::StaticClass(), bTransient, EPart::Optional));
	}
	enum class EPart
	{
		Required,
		Optional,
	};
	UObject* CreateDefaultSubobject(
		UObject* Outer, FName SubobjectName, const UClass* Class, bool bTransient, EPart Part = EPart::Required) const;

	/** The word of the most derived class counts, which is the first. */
	const FObjectInitializer& SetDefaultSubobjectClass(FName SubobjectName, const UClass* Class) const;
	template <typename T>
	const FObjectInitializer& SetDefaultSubobjectClass(FName SubobjectName) const
	{
		return SetDefaultSubobjectClass(SubobjectName, T::StaticClass());
	}
	const FObjectInitializer& DoNotCreateDefaultSubobject(FName SubobjectName) const
	{
		return SetDefaultSubobjectClass(SubobjectName, nullptr);
	}

	/** Gives the parts the values that they have in what the object is made from; constructors have run. */
	void InitializeSubobjects() const;

private:
	UObject* const Obj;
	UObject* const Template;
	FObjectInitializer* const Enclosing;
	mutable TMap<FName, const UClass*> SubobjectClasses; // null: not wanted
	mutable TArray<UObject*> Subobjects;
};

/** The package of objects that are never saved: /Engine/Transient. */
UPackage* GetTransientPackage();
UObject* GetTransientPackageAsObject();

/** The package in memory. Null when there is none. */
UPackage* FindPackage(UObject* InOuter, const TCHAR* PackageName);
/**
 * The package with all that its file holds. One that has been loaded, or that has its asset in memory, is returned as
 * it is.
 * @return null, with a warning unless LoadFlags say otherwise, when there is no file that can be read
 */
UPackage* LoadPackage(UPackage* InOuter, const TCHAR* InLongPackageName, uint32 LoadFlags);
/** For what is about to write or remove the packages' files. The host keeps no file open. */
void ResetLoaders(UObject* InOuter);

/** Finds or creates a package. PackageName is "/Root/Path/Name" and does not end in a slash. */
UPackage* CreatePackage(const TCHAR* PackageName);

/**
 * Makes an object. With no name it is called after its class, with a number.
 *
 * A name that an object of the same class has in Outer already is taken over: that object is destroyed and the new one
 * made in its place. One of another class ends the process, as do an abstract class and, while a constructor runs, a
 * missing name.
 */
UObject* StaticConstructObject(
	const UClass* Class, UObject* Outer, FName Name, EObjectFlags SetFlags, UObject* Template = nullptr);
void CheckIsClassChildOf(const UClass* Parent, const UClass* Child);
FName MakeUniqueObjectName(UObject* Outer, const UClass* Class, FName BaseName = NAME_None);

template <typename T>
T* NewObject(UObject* Outer, const UClass* Class, FName Name = NAME_None, EObjectFlags Flags = RF_NoFlags,
	UObject* Template = nullptr)
{
	CheckIsClassChildOf(T::StaticClass(), Class);
	return static_cast<T*>(StaticConstructObject(Class, Outer, Name, Flags, Template));
}

template <typename T>
T* NewObject(UObject* Outer = GetTransientPackageAsObject())
{
	return static_cast<T*>(StaticConstructObject(T::StaticClass(), Outer, NAME_None, RF_NoFlags));
}

template <typename T>
T* NewObject(UObject* Outer, FName Name, EObjectFlags Flags = RF_NoFlags, UObject* Template = nullptr)
{
	return static_cast<T*>(StaticConstructObject(T::StaticClass(), Outer, Name, Flags, Template));
}

/** Looks only at what is in memory. With no Outer, Name is a full path: a short name finds nothing. */
UObject* StaticFindObject(UClass* Class, UObject* Outer, const TCHAR* Name, bool ExactClass = false);
/** The object of this very name directly in Outer. */
UObject* StaticFindObjectFast(UClass* Class, UObject* Outer, FName Name, bool ExactClass = false);
/** Finds an object by its short name, in whatever package. Which one, when there are several, is not defined. */
UObject* StaticFindFirstObject(UClass* Class, const TCHAR* Name,
	EFindFirstObjectOptions Options = EFindFirstObjectOptions::None,
	ELogVerbosity::Type AmbiguousMessageVerbosity = ELogVerbosity::NoLogging, const TCHAR* CurrentOperation = nullptr);
/** The same; null while a package is saved or garbage is collected. */
UObject* StaticFindFirstObjectSafe(UClass* Class, const TCHAR* Name,
	EFindFirstObjectOptions Options = EFindFirstObjectOptions::None,
	ELogVerbosity::Type AmbiguousMessageVerbosity = ELogVerbosity::NoLogging, const TCHAR* CurrentOperation = nullptr);

template <typename T>
T* FindObject(UObject* Outer, const TCHAR* Name, bool ExactClass = false)
{
	return static_cast<T*>(StaticFindObject(T::StaticClass(), Outer, Name, ExactClass));
}

template <typename T>
T* FindObjectChecked(UObject* Outer, const TCHAR* Name, bool ExactClass = false)
{
	T* Result = FindObject<T>(Outer, Name, ExactClass);
	checkf(Result, TEXT("Failed to find object '%s'"), Name);
	return Result;
}

template <typename T>
T* FindObjectFast(UObject* Outer, FName Name, bool ExactClass = false)
{
	return static_cast<T*>(StaticFindObjectFast(T::StaticClass(), Outer, Name, ExactClass));
}

template <typename T>
T* FindFirstObject(const TCHAR* Name, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None,
	ELogVerbosity::Type AmbiguousMessageVerbosity = ELogVerbosity::NoLogging, const TCHAR* CurrentOperation = nullptr)
{
	return static_cast<T*>(
		StaticFindFirstObject(T::StaticClass(), Name, Options, AmbiguousMessageVerbosity, CurrentOperation));
}

template <typename T>
T* FindFirstObjectSafe(const TCHAR* Name, EFindFirstObjectOptions Options = EFindFirstObjectOptions::None,
	ELogVerbosity::Type AmbiguousMessageVerbosity = ELogVerbosity::NoLogging, const TCHAR* CurrentOperation = nullptr)
{
	return static_cast<T*>(
		StaticFindFirstObjectSafe(T::StaticClass(), Name, Options, AmbiguousMessageVerbosity, CurrentOperation));
}

/**
 * The object of a path, whose package is loaded if need be. "/Game/Folder/Asset" stands for "/Game/Folder/Asset.Asset".
 *
 * @return null, with a warning unless LoadFlags say otherwise, when there is no such object; a short name is none
 */
UObject* StaticLoadObject(
	UClass* Class, UObject* InOuter, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = LOAD_None);
/** The same for a class that is BaseClass or a child of it. */
UClass* StaticLoadClass(UClass* BaseClass, UObject* InOuter, const TCHAR* Name, const TCHAR* Filename = nullptr,
	uint32 LoadFlags = LOAD_None);

template <typename T>
T* LoadObject(UObject* Outer, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = LOAD_None)
{
	return static_cast<T*>(StaticLoadObject(T::StaticClass(), Outer, Name, Filename, LoadFlags));
}

template <typename T>
UClass* LoadClass(UObject* Outer, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = LOAD_None)
{
	return StaticLoadClass(T::StaticClass(), Outer, Name, Filename, LoadFlags);
}

/**
 * A copy of an object with all that lies in it; references inside it lead to the copies. PostLoad and then
 * PostDuplicate are called of each.
 *
 * @param DestName   none: a unique name
 * @param FlagMask   which of the original's flags the copies get
 */
UObject* StaticDuplicateObject(
	const UObject* SourceObject, UObject* DestOuter, FName DestName = NAME_None, EObjectFlags FlagMask = RF_AllFlags);

template <typename T>
T* DuplicateObject(const T* SourceObject, UObject* Outer, FName Name = NAME_None)
{
	return SourceObject ? static_cast<T*>(
							  StaticDuplicateObject(SourceObject, Outer ? Outer : GetTransientPackageAsObject(), Name))
						: nullptr;
}

/** While a package is being written. */
bool IsSavingPackage();

/**
 * Frees every object that is not reached from the root set, from an object with one of the flags, or from a native
 * class. What is reached through a reflected variable, an outer, a class or AddReferencedObjects stays.
 */
void CollectGarbage(EObjectFlags KeepFlags, bool bPerformFullPurge = true);
bool IsGarbageCollecting();

enum class EReloadCompleteReason
{
	None,
	HotReloadAutomatic, // the code was compiled outside of the editor
	HotReloadManual,
};

/** Events of the object system. */
struct FCoreUObjectDelegates
{
	/** New code of game modules is in place, with its types and objects. */
	DECLARE_MULTICAST_DELEGATE_OneParam(FReloadCompleteDelegate, EReloadCompleteReason);
	static FReloadCompleteDelegate ReloadCompleteDelegate;

	DECLARE_MULTICAST_DELEGATE_TwoParams(FOnObjectPropertyChanged, UObject*, FPropertyChangedEvent&);
	static FOnObjectPropertyChanged OnObjectPropertyChanged;

	static FSimpleMulticastDelegate& GetPreGarbageCollectDelegate();
	static FSimpleMulticastDelegate& GetPostGarbageCollect();
};

/** Told of each reference of an object while garbage is collected. */
class FReferenceCollector
{
public:
	virtual ~FReferenceCollector() = default;

	template <typename T>
	void AddReferencedObject(T*& Object)
	{
		HandleReplaceableReference(*reinterpret_cast<UObject**>(const_cast<std::remove_const_t<T>**>(&Object)));
	}
	template <typename T>
	void AddReferencedObject(T* const& Object)
	{
		HandleObjectReference(Object);
	}
	template <typename PointerType>
	void AddReferencedObject(const PointerType& Pointer) requires requires
	{
		Pointer.Get();
	}
	{
		HandleObjectReference(Pointer.Get());
	}
	template <typename RangeType>
	void AddReferencedObjects(RangeType& Objects)
	{
		for (auto& Object : Objects)
		{
			AddReferencedObject(Object);
		}
	}

	/** Whether references may be changed: a set of them must be rehashed then. */
	virtual bool ReplacesReferences() const { return false; }

protected:
	virtual void HandleObjectReference(const UObjectBase* Object) = 0;
	/** The reference may be made to lead elsewhere. */
	virtual void HandleReplaceableReference(UObject*& Object)
	{
		HandleObjectReference(reinterpret_cast<const UObjectBase*>(Object));
	}
};
