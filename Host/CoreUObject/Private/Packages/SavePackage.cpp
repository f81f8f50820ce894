#include "UObject/SavePackage.h"

#include "Containers/StringConv.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/OutputDevice.h"
#include "Misc/Paths.h"
#include "ObjectText/ObjectTextWriter.h"
#include "Objects/ObjectTable.h"
#include "Packages/PackageLoader.h"
#include "Templates/UniquePtr.h"
#include "UObject/Class.h"
#include "UObject/CopyPackage.h"
#include "UObject/ObjectSaveContext.h"
#include "UObject/Package.h"
#include "UObject/PackageHeader.h"
#include "UObject/UnrealType.h"

namespace SavePackage
{
bool bSaving = false;

bool IsTransient(const UObject* Object)
{
	for (; Object; Object = Object->GetOuter())
	{
		if (Object->HasAnyFlags(RF_Transient) || Object == GetTransientPackage())
		{
			return true;
		}
	}
	return false;
}

/** The objects of a package that are saved: the roots, and what saved properties lead to from there. */
class FSavedObjects final : public FReferenceCollector
{
public:
	FSavedObjects(UPackage& InPackage, UObject* Asset, EObjectFlags TopLevelFlags)
		: Package(InPackage)
	{
		for (UObject* Each : FObjectTable::Get().GetChildren(Package))
		{
			if (Each == Asset || Each->HasAnyFlags(TopLevelFlags & ~RF_ClassDefaultObject))
			{
				Add(Each);
			}
		}
		for (int32 Index = 0; Index < Pending.Num(); ++Index)
		{
			CollectFrom(*Pending[Index]);
		}
	}

	const TSet<const UObject*>& Get() const { return Objects; }
	/** Those directly in the package: default objects last, since their classes come to be while the others are read.
	 */
	TArray<UObject*> GetTopLevel() const
	{
		TArray<UObject*> TopLevel;
		for (const bool bDefaultObjects : { false, true })
		{
			for (UObject* Each : FObjectTable::Get().GetChildren(Package))
			{
				if (Objects.Contains(Each) && Each->HasAnyFlags(RF_ClassDefaultObject) == bDefaultObjects)
				{
					TopLevel.Add(Each);
				}
			}
		}
		return TopLevel;
	}
	/** The names of the packages that are referred to, in alphabetical order. */
	TArray<FString> GetNeeds() const
	{
		TArray<FString> Names;
		for (const UPackage* Each : Needs)
		{
			Names.Add(Each->GetName());
		}
		Names.Sort();
		return Names;
	}

protected:
	void HandleObjectReference(const UObjectBase* Object) override
	{
		Add(static_cast<UObject*>(const_cast<UObjectBase*>(Object)));
	}

private:
	void Add(UObject* Object)
	{
		if (!Object || Objects.Contains(Object) || !IsValid(Object) || Object == &Package || IsTransient(Object))
		{
			return;
		}
		UPackage* const Other = Object->GetPackage();
		if (Other != &Package)
		{
			if (Other && !Other->HasAnyPackageFlags(PKG_CompiledIn))
			{
				Needs.Add(Other);
			}
			return;
		}
		if (IsMadeByCompiler(*Object) || !IsClassSaved(*Object))
		{
			return;
		}
		Objects.Add(Object);
		Pending.Add(Object);
		Add(Object->GetOuter());
	}

	/** A default object of a class that is not saved would find no class when it is loaded. */
	static bool IsClassSaved(const UObject& Object)
	{
		return !IsTransient(Object.GetClass()) || Object.GetClass()->IsNative();
	}

	void CollectFrom(UObject& Object)
	{
		Add(Object.GetClass());
		for (TFieldIterator<FProperty> It(Object.GetClass()); It; ++It)
		{
			for (int32 Index = 0; Index < It->ArrayDim && !It->HasAnyPropertyFlags(CPF_Transient); ++Index)
			{
				if (It->ContainsObjectReference())
				{
					It->CollectReferences(It->ContainerPtrToValuePtr<void>(&Object, Index), *this);
				}
			}
		}
		Object.GetClass()->ClassAddReferencedObjects(&Object, *this);
	}

	UPackage& Package;
	TSet<const UObject*> Objects;
	TArray<UObject*> Pending;
	TSet<UPackage*> Needs;
};

/** What is not saved is referred to as None. */
class FSaveReferences final : public FObjectReferences
{
public:
	FSaveReferences(const UPackage& InPackage, const TSet<const UObject*>& InSaved)
		: Package(InPackage)
		, Saved(InSaved)
	{
	}

	FString Describe(const UObject* Object) override
	{
		const bool bInside = Object && Object->GetPackage() == &Package;
		const bool bWritten =
			bInside ? Saved.Contains(Object) || IsMadeByCompiler(*Object) : IsValid(Object) && !IsTransient(Object);
		const bool bNative = Object && Object->GetPackage() && Object->GetPackage()->HasAnyPackageFlags(PKG_CompiledIn);
		return bWritten || bNative ? Object->GetExportPath() : TEXT("None");
	}
	UObject* Find(const FString&) override { return nullptr; }

private:
	const UPackage& Package;
	const TSet<const UObject*>& Saved;
};

FPackageHeader MakeHeader(const UPackage& Package, const FSavedObjects& Saved)
{
	FPackageHeader Header;
	Header.PackageName = Package.GetName();
	Header.Needs = Saved.GetNeeds();
	for (const UObject* Object : Saved.GetTopLevel())
	{
		if (!Object->IsAsset())
		{
			continue;
		}
		FPackageHeader::FAsset& Asset = Header.Assets.AddDefaulted_GetRef();
		Asset.Name = Object->GetName();
		Asset.Class = Object->GetClass()->GetPathName();
		FAssetData(Object).TagsAndValues.ForEach([&Asset](const TPair<FName, FAssetTagValueRef>& Tag) {
			Asset.Tags.Emplace(Tag.Key.ToString(), Tag.Value.GetValue());
		});
	}
	return Header;
}

FString MakeText(UPackage& Package, UObject* Asset, EObjectFlags TopLevelFlags)
{
	const FSavedObjects Saved(Package, Asset, TopLevelFlags);
	if (Saved.Get().IsEmpty())
	{
		return FString();
	}
	const FSaveReferences References(Package, Saved.Get());
	FObjectTextWriter Writer(Saved.Get(), ObjectText::EExtent::SavedDifferences);
	for (const UObject* Object : Saved.GetTopLevel())
	{
		Writer.Write(*Object);
	}
	return MakeHeader(Package, Saved).ToText() + TEXT("\n") + Writer.Text;
}

/** Why the file cannot be written; empty when it can. */
FString GetReasonAgainst(const FString& FileName)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	if (!Files.FileExists(*FileName))
	{
		return FString();
	}
	if (Files.IsReadOnly(*FileName))
	{
		return FString::Printf(TEXT("%s is read-only"), *FileName);
	}
	FPackageHeader Header;
	const FPackageHeader::EResult Result = Header.Load(FileName);
	return Result == FPackageHeader::EResult::Binary ? FPackageHeader::GetMessage(Result, FileName) : FString();
}

bool WriteWhole(const FString& FileName, const char* Bytes, int64 NumBytes)
{
	const TUniquePtr<IFileHandle> File(FPlatformFileManager::Get().GetPlatformFile().OpenWrite(*FileName));
	return File && File->Write(reinterpret_cast<const uint8*>(Bytes), NumBytes) && File->Flush(true);
}

/** Beside the old file first: whoever reads meanwhile, and whoever ends the process, finds the one or the other. */
bool Replace(const FString& FileName, const char* Bytes, int64 NumBytes)
{
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	// A file's name may be as long as file systems allow; 60 characters take no more than 240 bytes.
	const FString Beside = FPaths::GetPath(FileName) / FPaths::GetCleanFilename(FileName).Left(60) + TEXT(".tmp");
	Files.CreateDirectoryTree(*FPaths::GetPath(FileName));
	if (WriteWhole(Beside, Bytes, NumBytes) && Files.MoveFile(*FileName, *Beside))
	{
		return true;
	}
	Files.DeleteFile(*Beside);
	return false;
}

FSavePackageResultStruct Fail(const FSavePackageArgs& Args, const FString& Message)
{
	if (!(Args.SaveFlags & SAVE_NoError) && Args.Error)
	{
		Args.Error->Logf(TEXT("%s"), *Message);
	}
	return FSavePackageResultStruct(ESavePackageResult::Error);
}

void CallPreSave(UPackage& Package, UObject* Asset, EObjectFlags TopLevelFlags, const FObjectPreSaveContext& Context)
{
	const FSavedObjects Saved(Package, Asset, TopLevelFlags);
	for (const UObject* Object : Saved.Get())
	{
		const_cast<UObject*>(Object)->PreSave(Context);
	}
}
}

UPackage* CopyPackage(UPackage& Source, const FString& NewPackageName)
{
	constexpr EObjectFlags Assets = RF_Public | RF_Standalone;
	SavePackage::CallPreSave(Source, nullptr, Assets, FObjectPreSaveContext(FString(), SAVE_None));
	const FString Text = SavePackage::MakeText(Source, nullptr, Assets);
	return Text.IsEmpty() ? nullptr : FPackageLoader::LoadCopy(Text, NewPackageName);
}

bool IsSavingPackage()
{
	return SavePackage::bSaving;
}

FSavePackageResultStruct UPackage::Save(
	UPackage* InOuter, UObject* InAsset, const TCHAR* Filename, const FSavePackageArgs& SaveArgs)
{
	checkf(IsInGameThread() && !IsGarbageCollecting() && !IsSavingPackage(),
		TEXT("Packages are saved on the game thread, one at a time, and not while garbage is collected"));
	const FString FileName(Filename);
	const FString Reason = SavePackage::GetReasonAgainst(FileName);
	if (!Reason.IsEmpty())
	{
		return SavePackage::Fail(SaveArgs, FString::Printf(TEXT("%s is not saved: %s"), *InOuter->GetName(), *Reason));
	}
	SavePackage::CallPreSave(
		*InOuter, InAsset, SaveArgs.TopLevelFlags, FObjectPreSaveContext(FileName, SaveArgs.SaveFlags));
	SavePackage::bSaving = true;
	const FString Text = SavePackage::MakeText(*InOuter, InAsset, SaveArgs.TopLevelFlags);
	SavePackage::bSaving = false;
	if (Text.IsEmpty())
	{
		return SavePackage::Fail(
			SaveArgs, FString::Printf(TEXT("%s is not saved: it holds nothing to save"), *InOuter->GetName()));
	}
	const FTCHARToUTF8 Bytes(*Text, Text.Len());
	if (!SavePackage::Replace(FileName, reinterpret_cast<const char*>(Bytes.Get()), Bytes.Length()))
	{
		return SavePackage::Fail(
			SaveArgs, FString::Printf(TEXT("%s is not saved: %s cannot be written"), *InOuter->GetName(), *FileName));
	}
	InOuter->MarkAsFullyLoaded();
	if (!(SaveArgs.SaveFlags & SAVE_KeepDirty))
	{
		InOuter->SetDirtyFlag(false);
	}
	PackageSavedWithContextEvent.Broadcast(FileName, InOuter, FObjectPostSaveContext(FileName, SaveArgs.SaveFlags));
	return FSavePackageResultStruct(ESavePackageResult::Success, Bytes.Length());
}

bool UPackage::SavePackage(UPackage* InOuter, UObject* InAsset, const TCHAR* Filename, const FSavePackageArgs& SaveArgs)
{
	return Save(InOuter, InAsset, Filename, SaveArgs).IsSuccessful();
}
