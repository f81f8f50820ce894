#include "CoreGlobals.h"
#include "Misc/ITransaction.h"
#include "Objects/ObjectMemory.h"
#include "Objects/ObjectTable.h"
#include "Packages/PackageLoader.h"
#include "UObject/Class.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"
#include "UObject/UnrealType.h"

#include <cstdlib>
#include <cstring>

namespace NewObjectImpl
{
FObjectInitializer* Innermost = nullptr;

void CheckArguments(const UClass* Class, const UObject* Outer, FName Name, EObjectFlags Flags)
{
	checkf(IsInGameThread(), TEXT("Objects are made on the game thread"));
	checkf(!IsGarbageCollecting(), TEXT("Objects cannot be made while garbage is collected"));
	checkf(Class, TEXT("NewObject called with a null class"));
	checkf(!Class->HasAnyClassFlags(CLASS_Abstract) || (Flags & RF_ClassDefaultObject),
		TEXT("Unable to create an object of the abstract class %s"), *Class->GetPathName());
	checkf(Outer || Class->IsChildOf(UPackage::StaticClass()), TEXT("An object of the class %s needs an outer"),
		*Class->GetName());
	checkf(!Name.IsNone() || !FObjectInitializer::IsInConstructor(),
		TEXT("NewObject with empty name can't be used to create default subobjects (inside of UObject derived class "
			 "constructor) as it produces inconsistent object names. Use CreateDefaultSubobject instead."));
}

UClass* GetNativeClass(const UClass* Class)
{
	while (!Class->IsNative())
	{
		Class = Class->GetSuperClass();
	}
	return const_cast<UClass*>(Class);
}

/** The properties that no constructor knows: those of classes that were made at run time. */
template <typename FunctionType>
void ForEachRuntimeProperty(const UClass* Class, FunctionType Function)
{
	for (const UStruct* Struct = Class; !static_cast<const UClass*>(Struct)->IsNative();
		 Struct = Struct->GetSuperStruct())
	{
		for (TFieldIterator<FProperty> It(Struct, EFieldIterationFlags::None); It; ++It)
		{
			Function(**It);
		}
	}
}

/** References to parts are left alone: the object has its own. */
bool CanBeCopied(const FProperty& Property)
{
	return !Property.HasAnyPropertyFlags(CPF_InstancedReference | CPF_ContainsInstancedReference);
}

/**
 * Gives a new object what its constructor has not: everything from a template; from the default object the
 * configuration, and for a class that was made at run time all defaults.
 */
void CopyDefaults(UObject* Object, const UObject* Template)
{
	const UClass* Class = Object->GetClass();
	const bool bIsDefaultObject = Object->HasAnyFlags(RF_ClassDefaultObject);
	if (bIsDefaultObject && Class->IsNative())
	{
		return;
	}
	const UObject* Source =
		Template ? Template : (bIsDefaultObject ? Class->GetSuperClass() : Class)->GetDefaultObject();
	const bool bCopyAll = Template || !Class->IsNative();
	for (TFieldIterator<FProperty> It(Source->GetClass()); It; ++It)
	{
		const bool bWanted = bCopyAll || It->HasAnyPropertyFlags(CPF_Config);
		if (bWanted && Class->IsChildOf(It->GetOwnerStruct()) && CanBeCopied(**It))
		{
			It->CopyCompleteValue_InContainer(Object, Source);
		}
	}
}

/** Parts of assets alone: assets themselves are not undone, and types are what compilers make. */
void Record(UObject& Object)
{
	const bool bWanted = GUndo && Object.HasAnyFlags(RF_Transactional) && Object.GetOuter() &&
						 !Object.GetOuter()->IsA(UPackage::StaticClass()) && !Object.IsA(UField::StaticClass()) &&
						 !Object.IsTemplate() && !FPackageLoader::IsLoading();
	if (bWanted)
	{
		GUndo->SaveNewObject(&Object);
	}
}

/** Makes room for an object of the name that is there already, and says where it was. */
void* DestroyForReuse(UObject* Existing, const UClass* Class)
{
	checkf(Existing->GetClass() == Class, TEXT("Cannot make a %s: %s exists with another class"), *Class->GetName(),
		*Existing->GetFullName());
	Existing->ConditionalBeginDestroy();
	Existing->ConditionalFinishDestroy();
	DestroyRuntimeProperties(Existing);
	Existing->~UObject();
	return Existing;
}
}

void* AllocateObjectMemory(const UClass* Class)
{
	const SIZE_T Alignment = FMath::Max<SIZE_T>(16, static_cast<SIZE_T>(Class->GetMinAlignment()));
	const SIZE_T Size = (static_cast<SIZE_T>(Class->GetPropertiesSize()) + Alignment - 1) / Alignment * Alignment;
	return std::aligned_alloc(Alignment, Size);
}

void FreeObjectMemory(void* Memory)
{
	std::free(Memory);
}

void DestroyRuntimeProperties(UObject* Object)
{
	NewObjectImpl::ForEachRuntimeProperty(
		Object->GetClass(), [Object](const FProperty& Property) { Property.DestroyValue_InContainer(Object); });
}

FObjectInitializer::FObjectInitializer(UObject* InObj, UObject* InTemplate)
	: Obj(InObj)
	, Template(InTemplate)
	, Enclosing(NewObjectImpl::Innermost)
{
	NewObjectImpl::Innermost = this;
}

FObjectInitializer::~FObjectInitializer()
{
	NewObjectImpl::Innermost = Enclosing;
}

FObjectInitializer& FObjectInitializer::Get()
{
	checkf(NewObjectImpl::Innermost, TEXT("There is no object under construction: objects are made by NewObject"));
	return *NewObjectImpl::Innermost;
}

bool FObjectInitializer::IsInConstructor()
{
	return NewObjectImpl::Innermost != nullptr;
}

void CheckIsClassChildOf(const UClass* Parent, const UClass* Child)
{
	checkf(Child, TEXT("NewObject called with a null class"));
	checkf(Child->IsChildOf(Parent), TEXT("NewObject called with %s, which is not a child of %s"), *Child->GetName(),
		*Parent->GetName());
}

FName MakeUniqueObjectName(UObject* Outer, const UClass* Class, FName BaseName)
{
	static TMap<FName, int32> LastNumbers;
	const FName Base = BaseName.IsNone() ? Class->GetFName() : BaseName;
	const FName Plain(Base, NAME_NO_NUMBER_INTERNAL);
	int32& LastNumber = LastNumbers.FindOrAdd(Plain);
	FName Result;
	do
	{
		Result = FName(Plain, ++LastNumber);
	}
	while (FObjectTable::Get().Find(Outer, Result));
	return Result;
}

UObject* StaticConstructObject(
	const UClass* Class, UObject* Outer, FName Name, EObjectFlags SetFlags, UObject* Template)
{
	NewObjectImpl::CheckArguments(Class, Outer, Name, SetFlags);
	const bool bIsDefaultObject = (SetFlags & RF_ClassDefaultObject) != 0;
	if (!bIsDefaultObject)
	{
		Class->GetDefaultObject();
	}
	if (Name.IsNone())
	{
		Name = MakeUniqueObjectName(Outer, Class);
	}

	UObject* const Existing = FObjectTable::Get().Find(Outer, Name);
	const TArray<UObject*> Parts = Existing ? FObjectTable::Get().GetChildren(*Existing) : TArray<UObject*>();
	void* const Memory = Existing ? NewObjectImpl::DestroyForReuse(Existing, Class) : AllocateObjectMemory(Class);
	std::memset(Memory, 0, static_cast<SIZE_T>(Class->GetPropertiesSize()));
	UObject* const Object = static_cast<UObject*>(Memory);
	{
		const FObjectInitializer Initializer(Object, Template);
		FObjectTable::Get().PrepareIdentity(Memory, { const_cast<UClass*>(Class), Outer, Name, SetFlags });
		NewObjectImpl::GetNativeClass(Class)->ClassConstructor(Initializer);
		for (UObject* Part : Parts)
		{
			FObjectTable::Get().Relink(*Part);
		}
		Initializer.InitializeSubobjects();
	}
	NewObjectImpl::ForEachRuntimeProperty(
		Class, [Object](const FProperty& Property) { Property.InitializeValue_InContainer(Object); });
	NewObjectImpl::CopyDefaults(Object, Template);
	if (bIsDefaultObject && Class->HasAnyClassFlags(CLASS_Config) && GConfig)
	{
		Object->LoadConfig();
	}
	Object->PostInitProperties();
	NewObjectImpl::Record(*Object);
	return Object;
}

UObject* UObject::CreateDefaultSubobject(FName SubobjectName, const UClass* SubobjectClass, bool bTransient)
{
	checkf(FObjectInitializer::IsInConstructor(), TEXT("CreateDefaultSubobject is for constructors"));
	return FObjectInitializer::Get().CreateDefaultSubobject(this, SubobjectName, SubobjectClass, bTransient);
}

UObject* FObjectInitializer::CreateDefaultSubobject(
	UObject* Outer, FName SubobjectName, const UClass* Class, bool bTransient, EPart Part) const
{
	checkf(!SubobjectName.IsNone(), TEXT("A default subobject needs a name"));
	checkf(!FObjectTable::Get().Find(Outer, SubobjectName), TEXT("Default subobject %s already exists for %s."),
		*SubobjectName.ToString(), *Outer->GetFullName());
	const UClass* const* const Override = SubobjectClasses.Find(SubobjectName);
	if (Override && !*Override && Part == EPart::Optional)
	{
		return nullptr;
	}
	const UClass* const Wanted = Override && *Override && (*Override)->IsChildOf(Class) ? *Override : Class;
	const EObjectFlags Inherited = Outer->GetMaskedFlags(RF_Public | RF_ArchetypeObject | RF_Transactional);
	UObject* const Subobject = StaticConstructObject(
		Wanted, Outer, SubobjectName, Inherited | RF_DefaultSubObject | (bTransient ? RF_Transient : RF_NoFlags));
	Subobjects.Add(Subobject);
	return Subobject;
}

const FObjectInitializer& FObjectInitializer::SetDefaultSubobjectClass(FName SubobjectName, const UClass* Class) const
{
	if (!SubobjectClasses.Contains(SubobjectName))
	{
		SubobjectClasses.Add(SubobjectName, Class);
	}
	return *this;
}

void FObjectInitializer::InitializeSubobjects() const
{
	// The default object of a native class is what its constructor makes of it.
	const bool bIsDefaultObject = Obj->HasAnyFlags(RF_ClassDefaultObject);
	if (bIsDefaultObject && Obj->GetClass()->IsNative())
	{
		return;
	}
	UObject* const Source = Template ? Template : Obj->GetArchetype();
	for (UObject* Subobject : Subobjects)
	{
		const UObject* const Part = Source->GetDefaultSubobjectByName(Subobject->GetFName());
		if (Part && Part != Subobject && Subobject->IsA(Part->GetClass()))
		{
			NewObjectImpl::CopyDefaults(Subobject, Part);
		}
	}
}
