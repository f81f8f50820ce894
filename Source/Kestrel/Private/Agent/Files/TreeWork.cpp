#include "Agent/Files/TreeWork.h"

#include "Agent/Files/FileUtils.h"
#include "Agent/Text/JsonText.h"
#include "KestrelSettings.h"
#include "ProfilingDebugging/MiscTrace.h"
#include "UObject/Class.h"

FKestrelTreeWork::FKestrelTreeWork(const FString& Path, FMakeBytes MakeBytes)
{
	FKestrelTreeFilter Filter;
	TSet<FName> ClassPatterns;
	if (const UKestrelSettings* Settings = GetDefault<UKestrelSettings>())
	{
		Filter = { Settings->SupportedFileExtensions, Settings->ExcludedDirectories };
		for (const FString& Pattern : Settings->GetEnabledAssetClassPatterns())
		{
			ClassPatterns.Add(FName(*Pattern));
		}
	}
	TRACE_BOOKMARK(TEXT("Kestrel - Start GetSubDirectoryStructure"));
	TSharedPtr<const FKestrelTreeText> Known = FKestrelKeptTree::Get().GetTree();
	bHasClasses = !ClassPatterns.IsEmpty();
	if (bHasClasses)
	{
		const TSharedRef<FKestrelTreeText> Made = MakeShared<FKestrelTreeText>();
		Made->Text = KestrelJson::ToCondensedText(
			FFileUtils::BuildJsonTree(Path, Filter.SupportedExtensions, Filter.ExcludedDirs, ClassPatterns)
				.ToSharedRef());
		Made->Utf8 = KestrelJson::ToUtf8(Made->Text);
		Known = Made;
	}
	Work = MakeUnique<TKestrelBackgroundWork<FResult>>(
		[Known, Path, Filter, MakeBytes, bHasClasses = bHasClasses](FKestrelTaskControl& Control) {
			FResult Result;
			Result.Tree = bHasClasses ? Known : KestrelTree::MakeText(Known, Path, Filter, Control);
			if (MakeBytes && !Control.IsCanceled())
			{
				Result.Bytes = MakeBytes(*Result.Tree);
			}
			return Result;
		});
}

bool FKestrelTreeWork::Step(double Deadline)
{
	const bool bDone = Work->Step(Deadline);
	if (bDone)
	{
		KeepTree();
	}
	return bDone;
}

void FKestrelTreeWork::Finish()
{
	Work->Finish();
	KeepTree();
}

void FKestrelTreeWork::KeepTree()
{
	// Classes can change without their folder.
	if (!bHasClasses)
	{
		FKestrelKeptTree::Get().Keep(Work->GetResult().Tree.ToSharedRef());
	}
	TRACE_BOOKMARK(TEXT("Kestrel - End GetSubDirectoryStructure"));
}
