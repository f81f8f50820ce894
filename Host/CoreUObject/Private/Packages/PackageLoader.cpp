#include "Packages/PackageLoader.h"

#include "CoreGlobals.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "ObjectText/ObjectTextImport.h"
#include "Properties/PropertyText.h"
#include "Templates/UniquePtr.h"
#include "UObject/Class.h"
#include "UObject/CopyPackage.h"
#include "UObject/GCObject.h"
#include "UObject/ObjectText.h"
#include "UObject/Package.h"
#include "UObject/PackageHeader.h"

#include <algorithm>

DEFINE_LOG_CATEGORY_STATIC(LogPackageLoader, Log, All);

namespace PackageLoader
{
// The largest file that is looked at, in bytes; some thousand nodes take some ten million.
constexpr int64 MaxFileBytes = 512 * 1024 * 1024;
// A PostLoad may load, whose PostLoads may load: each takes a share of the stack.
constexpr int32 MaxSessions = 32;

class FSession;

/** One package of a session. */
class FLoadingPackage
{
public:
	enum class EState : uint8
	{
		Made,
		Complete,
	};

	FLoadingPackage(UPackage* InPackage, const FString& InSavedName, const FString& FileName, FString&& Text)
		: Package(InPackage)
		, SavedName(InSavedName)
		, bWasDirty(InPackage->IsDirty())
		, Import(MoveTemp(Text), InPackage, FileName, 2)
	{
	}

	/** "A:B" of a path in this package, by its present or the saved name; false for any other path. */
	bool GetPathInside(const FString& Path, FString& OutInside) const
	{
		for (const FString& Name : { Package->GetName(), SavedName })
		{
			if (Path.StartsWith(Name + TEXT(".")))
			{
				OutInside = Rename(Path.RightChop(Name.Len() + 1));
				return true;
			}
		}
		return false;
	}

	/** "New:B" of "Old:B" in a copy; the same path anywhere else. */
	FString Rename(const FString& Inside) const
	{
		if (!bCopy)
		{
			return Inside;
		}
		int32 End = 0;
		while (End < Inside.Len() && Inside[End] != u':' && Inside[End] != u'.')
		{
			++End;
		}
		return GetNameInCopy(Inside.Left(End), FPackageName::GetShortName(SavedName),
				   FPackageName::GetShortName(Package->GetName())) +
			   Inside.RightChop(End);
	}

	/** The records of a copy are of the new package, too. */
	void RenameRecords()
	{
		Import.RenameRecords([this](FObjectRecord& Record) {
			FString Inside;
			if (GetPathInside(Record.ClassPath, Inside))
			{
				Record.ClassPath = Package->GetName() + TEXT(".") + Inside;
			}
			Record.Name = Record.Parent == INDEX_NONE ? Rename(Record.Name) : Record.Name;
		});
	}

	bool bCopy = false;
	UPackage* Package;
	const FString SavedName;
	const bool bWasDirty;
	FObjectTextImport Import;
	void AddNeed(FLoadingPackage* Other)
	{
		bool bKnown = Other == this;
		if (!bKnown)
		{
			KnownNeeds.Add(Other, &bKnown);
		}
		if (!bKnown)
		{
			Needs.Add(Other);
		}
	}

	TArray<FLoadingPackage*> Needs; // in the order in which they were found
	TSet<FLoadingPackage*> KnownNeeds;
	EState State = EState::Made;
	bool bOrdered = false;
};

/** What is loaded by one call. Its objects are kept, since nothing else may refer to them yet. */
class FSession final : public FGCObject
{
public:
	explicit FSession(uint32 InLoadFlags);
	~FSession() override;

	UPackage* Run(const FString& PackageName, const FString& FileName);
	UPackage* RunCopy(const FString& PackageName, const TArray<uint8>& Bytes);
	/** Makes the objects of a package, unless that has been done. Null when there is no such package. */
	FLoadingPackage* Open(const FString& PackageName);
	FLoadingPackage* FindLoading(const UPackage* Package) const;
	void Complete(FLoadingPackage& Loading);

	void AddReferencedObjects(FReferenceCollector& Collector) override
	{
		for (const TUniquePtr<FLoadingPackage>& Each : Packages)
		{
			Collector.AddReferencedObject(Each->Package);
			Collector.AddReferencedObjects(Each->Import.GetObjects());
		}
	}
	FString GetReferencerName() const override { return TEXT("PackageLoader"); }

	FSession* const Enclosing;
	bool bReading = false; // values are being read: nothing may be completed

private:
	FLoadingPackage* OpenFile(const FString& PackageName, const FString& FileName);
	FLoadingPackage* OpenText(
		const FString& PackageName, const FString& FileName, const FPackageHeader& Header, const TArray<uint8>& Bytes);
	/** Everything after the first package's objects were made. */
	void Finish();
	/** Those that a package needs come before it. */
	TArray<FLoadingPackage*> GetInOrder() const;

	const uint32 LoadFlags;
	TArray<TUniquePtr<FLoadingPackage>> Packages;
	TMap<const UPackage*, FLoadingPackage*> ByPackage;
	TSet<FName> Missing;
};

FSession* Current = nullptr;

/** References in the values of one package. */
class FLoadReferences final : public FObjectReferences
{
public:
	FLoadReferences(FSession& InSession, FLoadingPackage& InLoading, bool bInLast)
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

	FSession& Session;
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

FSession::FSession(uint32 InLoadFlags)
	: Enclosing(Current)
	, LoadFlags(InLoadFlags)
{
	Current = this;
}

FSession::~FSession()
{
	Current = Enclosing;
}

FLoadingPackage* FSession::FindLoading(const UPackage* Package) const
{
	FLoadingPackage* const* const Found = ByPackage.Find(Package);
	return Found ? *Found : nullptr;
}

FLoadingPackage* FSession::Open(const FString& PackageName)
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

FLoadingPackage* FSession::OpenFile(const FString& PackageName, const FString& FileName)
{
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

FLoadingPackage* FSession::OpenText(
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

UPackage* FSession::Run(const FString& PackageName, const FString& FileName)
{
	FLoadingPackage* const First = OpenFile(PackageName, FileName);
	Finish();
	return First ? First->Package : nullptr;
}

UPackage* FSession::RunCopy(const FString& PackageName, const TArray<uint8>& Bytes)
{
	FPackageHeader Header;
	if (Header.Parse(Bytes) != FPackageHeader::EResult::Read)
	{
		return nullptr;
	}
	FLoadingPackage* const Copy = OpenText(PackageName, PackageName, Header, Bytes);
	Copy->bCopy = true;
	Copy->RenameRecords();
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

void FSession::Finish()
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

TArray<FLoadingPackage*> FSession::GetInOrder() const
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
			if (Visit.NextNeed == Visit.Loading->Needs.Num())
			{
				Order.Add(Visit.Loading);
				Stack.Pop(EAllowShrinking::No);
				continue;
			}
			FLoadingPackage* const Need = Visit.Loading->Needs[Visit.NextNeed++];
			if (!Need->bOrdered)
			{
				Need->bOrdered = true;
				Stack.Add({ Need, 0 });
			}
		}
	}
	return Order;
}

void FSession::Complete(FLoadingPackage& Loading)
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
}

UPackage* FPackageLoader::LoadCopy(const FString& FileText, const FString& PackageName)
{
	const FTCHARToUTF8 Text(*FileText, FileText.Len());
	const TArray<uint8> Bytes(reinterpret_cast<const uint8*>(Text.Get()), Text.Length());
	PackageLoader::FSession Session(LOAD_None);
	return Session.RunCopy(PackageName, Bytes);
}

FString GetNameInCopy(const FString& Name, const FString& SourceShortName, const FString& CopyShortName)
{
	for (const TCHAR* Prefix : { TEXT(""), TEXT("SKEL_"), TEXT("Default__"), TEXT("Default__SKEL_") })
	{
		for (const TCHAR* Suffix : { TEXT(""), TEXT("_C") })
		{
			if (Name == Prefix + SourceShortName + Suffix)
			{
				return Prefix + CopyShortName + Suffix;
			}
		}
	}
	return Name;
}

bool FPackageLoader::IsLoading()
{
	return PackageLoader::Current != nullptr;
}

UPackage* FPackageLoader::Load(const FString& PackageName, const FString& FileName, uint32 LoadFlags)
{
	checkf(IsInGameThread(), TEXT("Packages are loaded on the game thread"));
	if (PackageLoader::Current && PackageLoader::Current->bReading)
	{
		const PackageLoader::FLoadingPackage* const Loading = PackageLoader::Current->Open(PackageName);
		return Loading ? Loading->Package : nullptr;
	}
	int32 NumSessions = 0;
	for (const PackageLoader::FSession* Each = PackageLoader::Current; Each; Each = Each->Enclosing)
	{
		++NumSessions;
	}
	if (NumSessions >= PackageLoader::MaxSessions)
	{
		UE_LOG(LogPackageLoader, Warning, TEXT("%s is not loaded: too many packages load each other"), *PackageName);
		return nullptr;
	}
	PackageLoader::FSession Session(LoadFlags);
	return Session.Run(PackageName, FileName);
}

bool FPackageLoader::CompletePackageOf(const UObject& Object)
{
	for (PackageLoader::FSession* Session = PackageLoader::Current; Session; Session = Session->Enclosing)
	{
		if (PackageLoader::FLoadingPackage* const Loading = Session->FindLoading(Object.GetPackage()))
		{
			const bool bStarted = Loading->State == PackageLoader::FLoadingPackage::EState::Complete;
			Session->Complete(*Loading);
			return !bStarted;
		}
	}
	return false;
}
