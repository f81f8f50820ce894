#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "Features/IModularFeatures.h"
#include "ISourceControlModule.h"
#include "Misc/FileHelper.h"
#include "ScratchDirectory.h"
#include "SourceControlHelpers.h"
#include "SourceControlOperations.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace
{
/** A project with a real repository, whose only check-in has the file "Kept.txt". */
class FSourceControlTest : public testing::Test
{
protected:
	FScratchDirectory Scratch;
	const FString ProjectDir = Scratch.Path / TEXT("Game");

	void SetUp() override
	{
		Write(TEXT("Game.uproject"), TEXT("{}"));
		FPaths::SetProjectFilePath(ProjectDir / TEXT("Game.uproject"));
	}
	void TearDown() override { FPaths::SetProjectFilePath(FString()); }

	void MakeRepository()
	{
		Git("init -q");
		Write(TEXT("Kept.txt"), TEXT("first\n"));
		Write(TEXT(".gitignore"), TEXT("Saved/\n"));
		Git("add Kept.txt .gitignore");
		Git("-c user.name=T -c user.email=t@example.invalid commit -q -m first");
	}

	void Git(const char* Arguments) const
	{
		const FString Command = TEXT("git -C '") + ProjectDir + TEXT("' ") + Arguments;
		EXPECT_EQ(std::system(TCHAR_TO_UTF8(*Command)), 0) << Arguments;
	}

	FString Path(const TCHAR* Name) const { return ProjectDir / Name; }
	void Write(const TCHAR* Name, const TCHAR* Text) const
	{
		EXPECT_TRUE(
			FFileHelper::SaveStringToFile(Text, *Path(Name), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM));
	}
	FString Read(const TCHAR* Name) const
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *Path(Name));
		return Text;
	}

	static ISourceControlProvider& Provider() { return ISourceControlModule::Get().GetProvider(); }

	template <typename OperationType>
	ECommandResult::Type Execute(const FString& File)
	{
		const TSharedRef<OperationType, ESPMode::ThreadSafe> Operation =
			ISourceControlOperation::Create<OperationType>();
		const ECommandResult::Type Result = Provider().Execute(Operation, File);
		const TArray<FText>& Errors = Operation->GetResultInfo().ErrorMessages;
		EXPECT_EQ(Result == ECommandResult::Succeeded, Errors.IsEmpty()) << "a failure tells its reason";
		Reason = Errors.IsEmpty() ? FString() : Errors[0].ToString();
		return Result;
	}
	FString Reason; // of the last failure

	FSourceControlStateRef State(const TCHAR* Name) const
	{
		return Provider().GetState(Path(Name), EStateCacheUsage::ForceUpdate).ToSharedRef();
	}
	/** The answers that are yes, in one text. */
	std::string Words(const TCHAR* Name) const
	{
		const FSourceControlStateRef Asked = State(Name);
		std::string Result;
		const auto Add = [&Result](bool bYes, const char* Word) { Result += bYes ? Word : ""; };
		Add(Asked->IsUnknown(), "unknown ");
		Add(Asked->IsSourceControlled(), "controlled ");
		Add(Asked->IsAdded(), "added ");
		Add(Asked->IsModified(), "modified ");
		Add(Asked->IsDeleted(), "deleted ");
		Add(Asked->IsIgnored(), "ignored ");
		Add(Asked->IsConflicted(), "conflicted ");
		Add(Asked->CanAdd(), "can-add ");
		Add(Asked->CanDelete(), "can-delete ");
		Add(Asked->CanRevert(), "can-revert ");
		Add(Asked->CanCheckout(), "can-check-out ");
		return Result;
	}
};
}

TEST_F(FSourceControlTest, TakesARegisteredProviderByItsName)
{
	class FOther final : public ISourceControlProvider
	{
	public:
		const FName& GetName() const override { return Name; }
		FText GetStatusText() const override { return FText(); }
		bool IsEnabled() const override { return true; }
		bool IsAvailable() const override { return true; }
		FSourceControlStatePtr GetState(const FString&, EStateCacheUsage::Type) override { return nullptr; }
		ECommandResult::Type GetState(
			const TArray<FString>&, TArray<FSourceControlStateRef>&, EStateCacheUsage::Type) override
		{
			return ECommandResult::Failed;
		}
		ECommandResult::Type Execute(const FSourceControlOperationRef&, const TArray<FString>&,
			const EConcurrency::Type, const FSourceControlOperationComplete&) override
		{
			return ECommandResult::Failed;
		}

	private:
		const FName Name = "Other";
	};
	MakeRepository();
	FOther Other;
	IModularFeatures::Get().RegisterModularFeature("SourceControl", &Other);
	EXPECT_EQ(Provider().GetName(), FName("Git")) << "not before it is asked for";
	ISourceControlModule::Get().SetProvider("Other");
	EXPECT_EQ(&Provider(), &Other);
	IModularFeatures::Get().UnregisterModularFeature("SourceControl", &Other);
	EXPECT_FALSE(Provider().IsEnabled()) << "it is gone";
	ISourceControlModule::Get().SetProvider("None");
	EXPECT_EQ(Provider().GetName(), FName("Git"));
}

TEST_F(FSourceControlTest, AProjectWithoutARepositoryOfItsOwnHasNoProvider)
{
	// A repository further up belongs to somebody else.
	EXPECT_EQ(std::system(TCHAR_TO_UTF8(*(TEXT("git -C '") + Scratch.Path + TEXT("' init -q")))), 0);
	EXPECT_FALSE(ISourceControlModule::Get().IsEnabled());
	EXPECT_FALSE(Provider().IsEnabled());
	EXPECT_FALSE(Provider().GetState(Path(TEXT("Game.uproject")), EStateCacheUsage::ForceUpdate).IsValid());
	EXPECT_EQ(Execute<FDelete>(Path(TEXT("Game.uproject"))), ECommandResult::Failed);
	EXPECT_FALSE(USourceControlHelpers::MarkFileForAdd(TEXT("Game.uproject"), true));
	EXPECT_FALSE(USourceControlHelpers::LastErrorMsg().IsEmpty());
	EXPECT_FALSE(USourceControlHelpers::QueryFileState(TEXT("Game.uproject"), true).bIsValid);
	EXPECT_TRUE(FPaths::FileExists(Path(TEXT("Game.uproject"))));
}

TEST_F(FSourceControlTest, AFileIsAddedChangedDeletedAndRevertedAsGitDoesIt)
{
	MakeRepository();
	EXPECT_TRUE(ISourceControlModule::Get().IsEnabled());
	EXPECT_TRUE(Provider().IsAvailable());
	EXPECT_EQ(Words(TEXT("Kept.txt")), "controlled can-delete ");
	EXPECT_EQ(Words(TEXT("Nothing.txt")), "unknown ");

	// A name that is a pattern elsewhere means this one file.
	const TCHAR* const Odd = TEXT("Source/\u00e9 [*].txt");
	Write(Odd, TEXT("new\n"));
	Write(TEXT("Source/\u00e9 x.txt"), TEXT("other\n"));
	EXPECT_EQ(Words(Odd), "can-add ");
	EXPECT_EQ(Execute<FMarkForAdd>(Path(Odd)), ECommandResult::Succeeded) << TCHAR_TO_UTF8(*Reason);
	EXPECT_EQ(Words(Odd), "controlled added can-revert ");
	EXPECT_EQ(Words(TEXT("Source/\u00e9 x.txt")), "can-add ");
	EXPECT_EQ(Execute<FRevert>(Path(Odd)), ECommandResult::Succeeded) << TCHAR_TO_UTF8(*Reason);
	EXPECT_EQ(Words(Odd), "can-add ") << "the file stays";

	Write(TEXT("Kept.txt"), TEXT("second\n"));
	EXPECT_EQ(Words(TEXT("Kept.txt")), "controlled modified can-revert ");
	EXPECT_EQ(Execute<FDelete>(Path(TEXT("Kept.txt"))), ECommandResult::Failed) << "the change would be lost";
	EXPECT_TRUE(Read(TEXT("Kept.txt")).Equals(TEXT("second\n")));
	EXPECT_EQ(Execute<FRevert>(Path(TEXT("Kept.txt"))), ECommandResult::Succeeded) << TCHAR_TO_UTF8(*Reason);
	EXPECT_TRUE(Read(TEXT("Kept.txt")).Equals(TEXT("first\n")));

	EXPECT_EQ(Execute<FDelete>(Path(TEXT("Kept.txt"))), ECommandResult::Succeeded) << TCHAR_TO_UTF8(*Reason);
	EXPECT_FALSE(FPaths::FileExists(Path(TEXT("Kept.txt")))) << "the provider deletes the file itself";
	EXPECT_EQ(Words(TEXT("Kept.txt")), "controlled deleted can-revert ");
	EXPECT_EQ(Execute<FRevert>(Path(TEXT("Kept.txt"))), ECommandResult::Succeeded) << TCHAR_TO_UTF8(*Reason);
	EXPECT_EQ(Words(TEXT("Kept.txt")), "controlled can-delete ");

	EXPECT_EQ(Execute<FCheckOut>(Path(TEXT("Kept.txt"))), ECommandResult::Failed);
}

TEST_F(FSourceControlTest, WhatCannotBeDoneFailsAndLeavesEverythingAsItWas)
{
	MakeRepository();
	Write(TEXT("New.txt"), TEXT("new\n"));
	Write(TEXT("Saved/Log.txt"), TEXT("log\n"));
	Write(TEXT("Inner/In.txt"), TEXT("in\n"));
	EXPECT_EQ(std::system(TCHAR_TO_UTF8(*(TEXT("git -C '") + Path(TEXT("Inner")) + TEXT("' init -q")))), 0);
	EXPECT_EQ(std::system(TCHAR_TO_UTF8(*(TEXT("ln -s / '") + Path(TEXT("Root")) + TEXT("'")))), 0);
	EXPECT_EQ(Words(TEXT("Saved/Log.txt")), "ignored ");

	struct FCase
	{
		FString File;
		const TCHAR* Reason;
	};
	const FCase AddCases[] = {
		{ Path(TEXT("Saved/Log.txt")), TEXT("is ignored") },
		{ Path(TEXT("Nothing.txt")), TEXT("there is no such file") },
		{ Path(TEXT("Saved")), TEXT("this is a folder") },
		{ Path(TEXT("../Outside.txt")), TEXT("does not lie in the project's work tree") },
		{ Path(TEXT("Root/etc/hostname")), TEXT("does not lie in the project's work tree") },
		{ Path(TEXT(".git/config")), TEXT("does not lie in the project's work tree") },
		{ ProjectDir, TEXT("does not lie in the project's work tree") },
		{ Path(TEXT("Inner/In.txt")), TEXT("in a repository of its own") },
		{ TEXT("New.txt"), TEXT("is not absolute") },
		{ FString(), TEXT("is not absolute") },
		{ Path(*FString::ChrN(5000, u'x')), TEXT("there is no such file") },
	};
	for (const FCase& Case : AddCases)
	{
		EXPECT_EQ(Execute<FMarkForAdd>(Case.File), ECommandResult::Failed) << TCHAR_TO_UTF8(*Case.File);
		EXPECT_TRUE(Reason.Contains(Case.Reason)) << TCHAR_TO_UTF8(*Reason);
		EXPECT_NE(Execute<FDelete>(Case.File), ECommandResult::Succeeded) << TCHAR_TO_UTF8(*Case.File);
		EXPECT_NE(Execute<FRevert>(Case.File), ECommandResult::Succeeded) << TCHAR_TO_UTF8(*Case.File);
	}
	EXPECT_EQ(Execute<FDelete>(Path(TEXT("New.txt"))), ECommandResult::Failed);
	EXPECT_TRUE(FPaths::FileExists(Path(TEXT("New.txt"))));

	// All or none.
	const TSharedRef<FMarkForAdd, ESPMode::ThreadSafe> Two = ISourceControlOperation::Create<FMarkForAdd>();
	EXPECT_EQ(Provider().Execute(Two, { Path(TEXT("New.txt")), Path(TEXT("Nothing.txt")) }), ECommandResult::Failed);
	EXPECT_EQ(Words(TEXT("New.txt")), "can-add ");

	// Another git is at work.
	Write(TEXT(".git/index.lock"), TEXT(""));
	EXPECT_EQ(Execute<FMarkForAdd>(Path(TEXT("New.txt"))), ECommandResult::Failed);
	EXPECT_TRUE(Reason.Contains(TEXT("lock"))) << TCHAR_TO_UTF8(*Reason);
	EXPECT_EQ(Execute<FDelete>(Path(TEXT("Kept.txt"))), ECommandResult::Failed);
	EXPECT_TRUE(Read(TEXT("Kept.txt")).Equals(TEXT("first\n")));

	// A repository that is none any more.
	EXPECT_TRUE(IFileManager::Get().Delete(*Path(TEXT(".git/HEAD")), true));
	EXPECT_FALSE(Provider().IsAvailable());
	EXPECT_EQ(Words(TEXT("Kept.txt")), "unknown ");
	EXPECT_EQ(Execute<FMarkForAdd>(Path(TEXT("New.txt"))), ECommandResult::Failed);
}

TEST_F(FSourceControlTest, StatesAreKeptAndAsynchronousCommandsEndInALaterTick)
{
	MakeRepository();
	const FString Kept = Path(TEXT("Kept.txt"));
	EXPECT_TRUE(Provider().GetState(Kept, EStateCacheUsage::Use)->IsUnknown()) << "nobody has asked yet";
	EXPECT_TRUE(State(TEXT("Kept.txt"))->IsSourceControlled());
	Write(TEXT("Kept.txt"), TEXT("second\n"));
	EXPECT_FALSE(Provider().GetState(Kept, EStateCacheUsage::Use)->IsModified());

	int32 NumCalls = 0;
	EXPECT_EQ(Provider().Execute(ISourceControlOperation::Create<FUpdateStatus>(), Kept, EConcurrency::Asynchronous,
				  FSourceControlOperationComplete::CreateLambda(
					  [&NumCalls](const FSourceControlOperationRef&, ECommandResult::Type Result) {
						  NumCalls += Result == ECommandResult::Succeeded;
					  })),
		ECommandResult::Succeeded);
	EXPECT_EQ(NumCalls, 0);
	FTSTicker::GetCoreTicker().Tick(0.1f);
	EXPECT_EQ(NumCalls, 1);
	EXPECT_TRUE(Provider().GetState(Kept, EStateCacheUsage::Use)->IsModified());
}

TEST_F(FSourceControlTest, HelpersTakeRelativePathsAndPackages)
{
	MakeRepository();
	Write(TEXT("Content/Deep/A.uasset"), TEXT("a"));
	Write(TEXT("New.txt"), TEXT("new\n"));
	EXPECT_TRUE(USourceControlHelpers::IsAvailable());
	EXPECT_TRUE(USourceControlHelpers::MarkFileForAdd(TEXT("/Game/Deep/A")));
	EXPECT_EQ(Words(TEXT("Content/Deep/A.uasset")), "controlled added can-revert ");
	EXPECT_TRUE(USourceControlHelpers::CheckOutOrAddFile(TEXT("New.txt")));
	EXPECT_TRUE(USourceControlHelpers::QueryFileState(TEXT("New.txt")).bIsAdded);
	EXPECT_TRUE(USourceControlHelpers::MarkFileForAdd(TEXT("Kept.txt"))) << "it is under control already";
	EXPECT_TRUE(USourceControlHelpers::CheckOutFile(TEXT("Kept.txt"))) << "it can be changed at any time";
	EXPECT_TRUE(USourceControlHelpers::MarkFileForDelete(TEXT("Kept.txt")));
	EXPECT_FALSE(FPaths::FileExists(Path(TEXT("Kept.txt"))));
	EXPECT_TRUE(USourceControlHelpers::RevertFile(TEXT("Kept.txt")));
	EXPECT_TRUE(FPaths::FileExists(Path(TEXT("Kept.txt"))));
	EXPECT_FALSE(USourceControlHelpers::MarkFileForAdd(TEXT("Nothing.txt"), true));
	EXPECT_TRUE(USourceControlHelpers::LastErrorMsg().ToString().Contains(TEXT("there is no such file")));
}
