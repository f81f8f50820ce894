#pragma once

#include "CoreGlobals.h"
#include "UObject/ObjectPtr.h"
#include "UObject/UObjectBaseUtility.h"
#include "UObject/UObjectGlobals.h"

class FAssetRegistryTagsContext;
class FConfigCacheIni;
class FFeedbackContext;
class FObjectPreSaveContext;
class FOutputDevice;
class FProperty;
class FReferenceCollector;
class UFunction;
class UWorld;
struct FPropertyChangedEvent;

/** The base of all reflected objects. */
class UObject : public UObjectBaseUtility
{
public:
	DECLARE_REFLECTED_CLASS(UObject, UObjectBaseUtility)

	UObject() = default;
	UObject(const FObjectInitializer& ObjectInitializer) {}

	/** Makes a part of this object while its constructor runs. The name is unique within the object. */
	template <typename ReturnType>
	ReturnType* CreateDefaultSubobject(FName SubobjectName, bool bTransient = false)
	{
		return static_cast<ReturnType*>(CreateDefaultSubobject(SubobjectName, ReturnType::StaticClass(), bTransient));
	}
	UObject* CreateDefaultSubobject(FName SubobjectName, const UClass* SubobjectClass, bool bTransient);

	/** After the constructor, with properties copied from the template and, for a default object, the configuration
	 * read. */
	virtual void PostInitProperties() {}
	/**
	 * After the object was read from a package, when all objects of the package and of those that it refers to have
	 * their values, and its parts have had theirs; also after it was made as a copy. RF_WasLoaded tells the two apart.
	 */
	virtual void PostLoad();
	/** PostLoad, unless it has run. Of an object that is being loaded, the whole package is completed first. */
	void ConditionalPostLoad();
	/** Before the object is written to a package. */
	virtual void PreSave(FObjectPreSaveContext SaveContext);
	/** After the object was made as a copy, with all that lies in it. */
	virtual void PostDuplicate(bool bDuplicateForPIE) {}
	/** After the object has got another name or another outer. */
	virtual void PostRename(UObject* OldOuter, const FName OldName) {}
	/** Called once when the object is about to be freed. Objects it refers to still exist. */
	virtual void BeginDestroy();
	virtual void FinishDestroy();
	bool ConditionalBeginDestroy();
	bool ConditionalFinishDestroy();

#if WITH_EDITOR
	/** Before a property is changed from outside; null when it is not known which. */
	virtual void PreEditChange(FProperty* PropertyAboutToChange)
	{
	}
	/** After a property was changed from outside, be it in a details panel. The event's property can be null. */
	virtual void PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent);
	/** PostEditChangeProperty with an event that names no property. */
	void PostEditChange();
#endif

	/**
	 * To be called before the object is changed.
	 *
	 * @return whether the object was recorded in a running transaction
	 */
	virtual bool Modify(bool bAlwaysMarkDirty = true);

	/** Before and after a transaction has put the object's state back. All objects of it are restored in between. */
	virtual void PreEditUndo()
	{
	}
	virtual void PostEditUndo()
	{
	}

	/** What the asset registry can tell of an asset without loading it. */
	struct FAssetRegistryTag
	{
		enum ETagType
		{
			TT_Hidden,
			TT_Alphabetical,
			TT_Numerical,
			TT_Dimensional,
			TT_Chronological,
		};

		FAssetRegistryTag() = default;
		FAssetRegistryTag(FName InName, const FString& InValue, ETagType InType)
			: Name(InName)
			, Type(InType)
			, Value(InValue)
		{
		}
		bool IsValid() const { return !Name.IsNone() && !Value.IsEmpty(); }

		FName Name;
		ETagType Type = TT_Hidden;
		FString Value;
	};

	/** Whether the object is one that a content browser lists: public, in a package, not transient. */
	virtual bool IsAsset() const;
	/** Adds the tags that are written to the head of the package: by default, searchable properties. */
	virtual void GetAssetRegistryTags(FAssetRegistryTagsContext Context) const;
	/**
	 * Gives the object another name or another outer. False when the name is taken there. With REN_Test, it is only
	 * asked whether it would be possible.
	 */
	virtual bool Rename(const TCHAR* NewName = nullptr, UObject* NewOuter = nullptr, ERenameFlags Flags = REN_None);

	/**
	 * Writes what is not in properties, in lines "CustomProperties <anything>", indented by as many spaces. References
	 * are written and read with ObjectText::DescribeReference and ObjectText::FindReference.
	 */
	virtual void ExportCustomProperties(FOutputDevice& Out, uint32 Indent)
	{
	}
	/** Reads one of these lines, without the word CustomProperties. The properties have been read. */
	virtual void ImportCustomProperties(const TCHAR* SourceText, FFeedbackContext* Warn)
	{
	}

	/**
	 * Reads the properties of kind Config from the class's configuration file.
	 *
	 * A key that is there replaces the value; for an array the lines of the key replace all elements.
	 * @param ConfigClass  the class whose section is read, by default the object's own
	 * @param Filename     by default the file of the class's configuration name
	 */
	void LoadConfig(UClass* ConfigClass = nullptr, const TCHAR* Filename = nullptr, uint32 PropagationFlags = 0,
		FProperty* PropertyToLoad = nullptr);
	void ReloadConfig(UClass* ConfigClass = nullptr, const TCHAR* Filename = nullptr, uint32 PropagationFlags = 0,
		FProperty* PropertyToLoad = nullptr);
	/**
	 * Writes the properties with one of the flags to the section "[/Script/<Module>.<Class>]" and the file to disk.
	 *
	 * An object that is not the default object of its class hands its values to that one first, unless told not to.
	 */
	void SaveConfig(uint64 Flags = CPF_Config, const TCHAR* Filename = nullptr, FConfigCacheIni* Config = GConfig,
		bool bAllowCopyToDefaultObject = true);
	/** Config/Default<Name>.ini of the project. */
	FString GetDefaultConfigFilename() const;
	/** Writes the values into the project's default configuration, or into another file. False when it cannot. */
	bool TryUpdateDefaultConfigFile(const FString& SpecificFileLocation = FString());

	/** The world that the object is part of: by default, the one that its outer is part of. Null for none. */
	virtual UWorld* GetWorld() const;
	/** The part of the object that a constructor has made under this name; null when there is none. */
	UObject* GetDefaultSubobjectByName(FName ToFind);
	/** What the object took its defaults from: its class's default object, or for a part of it the same part there. */
	UObject* GetArchetype() const;
	/** For a class default object all others of the class and its children; for other objects none. */
	void GetArchetypeInstances(TArray<UObject*>& Instances);

	UFunction* FindFunction(FName InName) const;
	UFunction* FindFunctionChecked(FName InName) const;
	/** Calls the function. Parms is a block of its parameters, laid out as its properties say. */
	virtual void ProcessEvent(UFunction* Function, void* Parms);

	/** For references that are not reflected: report them to the collector. Call Super's first. */
	static void AddReferencedObjects(UObject* InThis, FReferenceCollector& Collector)
	{
	}
};

/** Whether the object is there and not marked as garbage. */
bool IsValid(const UObject* Test);

inline bool IsValidChecked(const UObject* Test)
{
	check(Test);
	return IsValid(Test);
}
