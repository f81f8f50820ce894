#include "Packages/PackageLoader.h"

#include "CoreGlobals.h"
#include "Packages/PackageLoadSession.h"
#include "UObject/CopyPackage.h"

UPackage* FPackageLoader::LoadCopy(const FString& FileText, const FString& PackageName)
{
	const FTCHARToUTF8 Text(*FileText, FileText.Len());
	const TArray<uint8> Bytes(reinterpret_cast<const uint8*>(Text.Get()), Text.Length());
	FPackageLoadSession Session(LOAD_None);
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
	return FPackageLoadSession::GetCurrent() != nullptr;
}

UPackage* FPackageLoader::Load(const FString& PackageName, const FString& FileName, uint32 LoadFlags)
{
	checkf(IsInGameThread(), TEXT("Packages are loaded on the game thread"));
	if (FPackageLoadSession::GetCurrent() && FPackageLoadSession::GetCurrent()->bReading)
	{
		const FLoadingPackage* const Loading = FPackageLoadSession::GetCurrent()->Open(PackageName);
		return Loading ? Loading->Package : nullptr;
	}
	// A PostLoad may load, whose PostLoads may load: each takes a share of the stack.
	constexpr int32 MaxSessions = 32;
	int32 NumSessions = 0;
	for (const FPackageLoadSession* Each = FPackageLoadSession::GetCurrent(); Each; Each = Each->Enclosing)
	{
		++NumSessions;
	}
	if (NumSessions >= MaxSessions)
	{
		UE_LOG(LogPackageLoader, Warning, TEXT("%s is not loaded: too many packages load each other"), *PackageName);
		return nullptr;
	}
	FPackageLoadSession Session(LoadFlags);
	return Session.Run(PackageName, FileName);
}

bool FPackageLoader::CompletePackageOf(const UObject& Object)
{
	for (FPackageLoadSession* Session = FPackageLoadSession::GetCurrent(); Session; Session = Session->Enclosing)
	{
		if (FLoadingPackage* const Loading = Session->FindLoading(Object.GetPackage()))
		{
			const bool bStarted = Loading->State == FLoadingPackage::EState::Complete;
			Session->Complete(*Loading);
			return !bStarted;
		}
	}
	return false;
}
