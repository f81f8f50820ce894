#include "Packages/PackageLoadSession.h"

#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "Packages/PackageLoader.h"
#include "Properties/PropertyText.h"
#include "UObject/Class.h"
#include "UObject/ObjectText.h"
#include "UObject/PackageHeader.h"

#include <algorithm>

DEFINE_LOG_CATEGORY(LogPackageLoader);

namespace
{
/** References in the values of one package. */
class FLoadReferences final : public FObjectReferences
{
public:
	FLoadReferences(FPackageLoadSession& InSession, FLoadingPackage& InLoading, bool bInLast)
		: Session(InSession)
		, Loading(InLoading)
		, bLast(bInLast)
	{
	}

	FString Describe(const UObject* Object) override { return Object ? Object->GetExportPath() : TEXT("None"); }
	UObject* Find(const FString& Text) override;
	void Reject(const UObject& Object, const FString& Text) override
	{
		Loading.Import.WarnHere(
			FString::Printf(TEXT("%s cannot stand here, since it is a %s"), *Text, *Object.GetClass()->GetName()));
	}

private:
	UObject* FindElsewhere(const FString& Path);

	FPackageLoadSession& Session;
	FLoadingPackage& Loading;
	const bool bLast; // nothing is still to come
};

UObject* FLoadReferences::Find(const FString& Text)
{
	const FString Path = PropertyText::StripExportPath(Text);
	FString Inside;
	UObject* Found = nullptr;
	if (Loading.GetPathInside(Path, Inside))
	{
		Found = StaticFindObject(nullptr, Loading.Package, *Inside);
		if (!Found && !bLast && Loading.Import.IsDeferred(Inside))
		{
			Loading.Import.ReadLineAgain();
			return nullptr;
		}
	}
	else
	{
		Found = FindElsewhere(Path);
	}
	if (!Found && !Text.IsEmpty())
	{
		Loading.Import.WarnHere(FString::Printf(TEXT("%s is missing"), *Text));
	}
	return Found;
}

UObject* FLoadReferences::FindElsewhere(const FString& Path)
{
	const FString PackageName = FPackageName::ObjectPathToPackageName(Path);
	UObject* const Found = StaticFindObject(nullptr, nullptr, *Path);
	if (FPackageName::IsScriptPackage(PackageName))
	{
		return Found;
	}
	FLoadingPackage* const Other = Found ? Session.FindLoading(Found->GetPackage()) : Session.Open(PackageName);
	if (Other)
	{
		Loading.AddNeed(Other);
	}
	if (Found || !Other)
	{
		return Found;
	}
	FString Inside;
	if (!bLast && Other->GetPathInside(Path, Inside) && Other->Import.IsDeferred(Inside))
	{
		Loading.Import.ReadLineAgain();
	}
	return StaticFindObject(nullptr, nullptr, *Path);
}
}

FPackageLoadSession* FPackageLoadSession::Current = nullptr;

FPackageLoadSession::FPackageLoadSession(uint32 InLoadFlags)
	: Enclosing(Current)
	, LoadFlags(InLoadFlags)
{
	Current = this;
}

FPackageLoadSession::~FPackageLoadSession()
{
	Current = Enclosing;
}

FLoadingPackage* FPackageLoadSession::FindLoading(const UPackage* Package) const
{
	FLoadingPackage* const* const Found = ByPackage.Find(Package);
	return Found ? *Found : nullptr;
}

FLoadingPackage* FPackageLoadSession::Open(const FString& PackageName)
{
	FString FileName;
	if (PackageName.Len() >= NAME_SIZE || Missing.Contains(FName(*PackageName)))
	{
		return nullptr;
	}
	UPackage* const Existing = FindObjectFast<UPackage>(nullptr, FName(*PackageName));
	if (FLoadingPackage* const Loading = Existing ? FindLoading(Existing) : nullptr)
	{
		return Loading;
	}
	if (Existing && Existing->IsFullyLoaded())
	{
		return nullptr;
	}
	FLoadingPackage* Loading = nullptr;
	if (FPackageName::DoesPackageExist(PackageName, &FileName))
	{
		Loading = OpenFile(PackageName, FileName);
	}
	if (!Loading)
	{
		Missing.Add(FName(*PackageName));
	}
	return Loading;
}

FLoadingPackage* FPackageLoadSession::OpenFile(const FString& PackageName, const FString& FileName)
{
	constexpr int64 MaxFileBytes = 512 * 1024 * 1024; // some thousand nodes take some ten million
	TArray<uint8> Bytes;
	FPackageHeader Header;
	FPackageHeader::EResult Result = FPackageHeader::EResult::Unreadable;
	if (FPackageHeader::IsRegularFile(FileName) && IFileManager::Get().FileSize(*FileName) <= MaxFileBytes &&
		FFileHelper::LoadFileToArray(Bytes, *FileName))
	{
		Result = Header.Parse(Bytes);
	}
	if (Result != FPackageHeader::EResult::Read)
	{
		UE_CLOG(!(LoadFlags & (LOAD_NoWarn | LOAD_Quiet)), LogPackageLoader, Warning, TEXT("%s"),
			*FPackageHeader::GetMessage(Result, FileName));
		return nullptr;
	}
	FLoadingPackage* const Loading = OpenText(PackageName, FPaths::ConvertRelativePathToFull(FileName), Header, Bytes);
	Loading->Import.CreateObjects(RF_Load, RF_NeedLoad | RF_NeedPostLoad | RF_WasLoaded);
	return Loading;
}

FLoadingPackage* FPackageLoadSession::OpenText(
	const FString& PackageName, const FString& FileName, const FPackageHeader& Header, const TArray<uint8>& Bytes)
{
	const char* const Start = reinterpret_cast<const char*>(Bytes.GetData());
	const char* const LineEnd = std::find(Start, Start + Bytes.Num(), '\n');
	const int32 TextStart = FMath::Min(static_cast<int32>(LineEnd - Start) + 1, Bytes.Num());
	const FUTF8ToTCHAR Wide(Start + TextStart, Bytes.Num() - TextStart);

	UPackage* const Package = CreatePackage(*PackageName);
	Package->MarkAsFullyLoaded();
	const int32 Index = Packages.Add(MakeUnique<FLoadingPackage>(
		Package, Header.PackageName, FileName, FString(FStringView(Wide.Get(), Wide.Length()))));
	FLoadingPackage& Loading = *Packages[Index];
	ByPackage.Add(Package, &Loading);
	return &Loading;
}

UPackage* FPackageLoadSession::Run(const FString& PackageName, const FString& FileName)
{
	FLoadingPackage* const First = OpenFile(PackageName, FileName);
	Finish();
	return First ? First->Package : nullptr;
}

UPackage* FPackageLoadSession::RunCopy(const FString& PackageName, const TArray<uint8>& Bytes)
{
	FPackageHeader Header;
	if (Header.Parse(Bytes) != FPackageHeader::EResult::Read)
	{
		return nullptr;
	}
	FLoadingPackage* const Copy = OpenText(PackageName, PackageName, Header, Bytes);
	Copy->BecomeCopy();
	Copy->Import.CreateObjects(RF_Load, RF_NeedLoad | RF_NeedPostLoad | RF_WasLoaded);
	Finish();
	for (UObject* Object : Copy->Import.GetObjects())
	{
		if (IsValid(Object))
		{
			Object->PostDuplicate(false);
		}
	}
	return Copy->Package;
}

void FPackageLoadSession::Finish()
{
	bReading = true;
	// References open further packages while values are read; they queue up at the end.
	for (int32 Index = 0; Index < Packages.Num(); ++Index)
	{
		FLoadingPackage& Loading = *Packages[Index];
		const FLoadReferences References(*this, Loading, false);
		for (int32 Record = 0; Record < Loading.Import.GetNumRecords(); ++Record)
		{
			// The class of what is deferred may lie in a package that nothing else refers to.
			const FString ClassPackage =
				FPackageName::ObjectPathToPackageName(Loading.Import.GetRecord(Record).ClassPath);
			if (!FPackageName::IsScriptPackage(ClassPackage) && ClassPackage != Loading.Package->GetName())
			{
				if (FLoadingPackage* const Other = Open(ClassPackage))
				{
					Loading.AddNeed(Other);
				}
			}
		}
		Loading.Import.ReadValues();
	}
	bReading = false;
	for (FLoadingPackage* Loading : GetInOrder())
	{
		Complete(*Loading);
	}
	for (const TUniquePtr<FLoadingPackage>& Each : Packages)
	{
		Each->Package->SetDirtyFlag(Each->bWasDirty);
	}
}

TArray<FLoadingPackage*> FPackageLoadSession::GetInOrder() const
{
	struct FVisit
	{
		FLoadingPackage* Loading;
		int32 NextNeed;
	};
	TArray<FLoadingPackage*> Order;
	TArray<FVisit> Stack;
	for (const TUniquePtr<FLoadingPackage>& Each : Packages)
	{
		if (!Each->bOrdered)
		{
			Each->bOrdered = true;
			Stack.Add({ Each.Get(), 0 });
		}
		while (!Stack.IsEmpty())
		{
			FVisit& Visit = Stack.Last();
			if (Visit.NextNeed == Visit.Loading->GetNeeds().Num())
			{
				Order.Add(Visit.Loading);
				Stack.Pop(EAllowShrinking::No);
				continue;
			}
			FLoadingPackage* const Need = Visit.Loading->GetNeeds()[Visit.NextNeed++];
			if (!Need->bOrdered)
			{
				Need->bOrdered = true;
				Stack.Add({ Need, 0 });
			}
		}
	}
	return Order;
}

void FPackageLoadSession::Complete(FLoadingPackage& Loading)
{
	if (Loading.State == FLoadingPackage::EState::Complete)
	{
		return;
	}
	Loading.State = FLoadingPackage::EState::Complete;
	Loading.Import.PostLoad();
	Loading.Import.CreateDeferred([](UClass& Class) { FPackageLoader::CompletePackageOf(Class); });
	const FLoadReferences References(*this, Loading, true);
	Loading.Import.ReadDeferredValues();
}
