#include "Containers/StringConv.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "MutateText.h"
#include "PackageTestTypes.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"
#include "UObject/PackageHeader.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectHash.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/** The files of the machine, of which one operation that changes something goes wrong. */
class FFaultyPlatformFile final : public IPlatformFile
{
public:
	enum class EFault
	{
		Failure,
		EndOfProcess, // after half of the operation, where it has halves
	};

	/** @param InFaultAt  counted from 0; none for a number that is not reached */
	FFaultyPlatformFile(int32 InFaultAt, EFault InFault)
		: Below(FPlatformFileManager::Get().GetPlatformFile())
		, FaultAt(InFaultAt)
		, Fault(InFault)
	{
		FPlatformFileManager::Get().SetPlatformFile(*this);
	}
	~FFaultyPlatformFile() override { FPlatformFileManager::Get().SetPlatformFile(Below); }

	/** Whether this operation goes wrong. */
	bool IsFaulty()
	{
		const bool bFaulty = NumOperations++ == FaultAt;
		if (bFaulty && Fault == EFault::EndOfProcess)
		{
			_exit(0);
		}
		return bFaulty;
	}
	bool HasFailed() const { return NumOperations > FaultAt; }

	bool FileExists(const TCHAR* Filename) override { return Below.FileExists(Filename); }
	bool DirectoryExists(const TCHAR* Directory) override { return Below.DirectoryExists(Directory); }
	int64 FileSize(const TCHAR* Filename) override { return Below.FileSize(Filename); }
	bool DeleteFile(const TCHAR* Filename) override { return Below.DeleteFile(Filename); }
	bool IsReadOnly(const TCHAR* Filename) override { return Below.IsReadOnly(Filename); }
	bool SetReadOnly(const TCHAR* Filename, bool bReadOnly) override { return Below.SetReadOnly(Filename, bReadOnly); }
	bool MoveFile(const TCHAR* To, const TCHAR* From) override { return !IsFaulty() && Below.MoveFile(To, From); }
	FDateTime GetTimeStamp(const TCHAR* Filename) override { return Below.GetTimeStamp(Filename); }
	void SetTimeStamp(const TCHAR* Filename, FDateTime Time) override { Below.SetTimeStamp(Filename, Time); }
	IFileHandle* OpenRead(const TCHAR* Filename, bool bWrite) override { return Below.OpenRead(Filename, bWrite); }
	IFileHandle* OpenWrite(const TCHAR* Filename, bool bAppend, bool bAllowRead) override;
	bool CreateDirectory(const TCHAR* Directory) override { return !IsFaulty() && Below.CreateDirectory(Directory); }
	ESymlinkResult IsSymlink(const TCHAR* Filename) override { return Below.IsSymlink(Filename); }
	bool DeleteDirectory(const TCHAR* Directory) override { return Below.DeleteDirectory(Directory); }
	bool IterateDirectory(const TCHAR* Directory, FDirectoryVisitorFunc Visitor) override
	{
		return Below.IterateDirectory(Directory, Visitor);
	}

private:
	IPlatformFile& Below;
	const int32 FaultAt;
	const EFault Fault;
	int32 NumOperations = 0;
};

class FFaultyHandle final : public IFileHandle
{
public:
	FFaultyHandle(FFaultyPlatformFile& InFiles, IFileHandle* InBelow)
		: Files(InFiles)
		, Below(InBelow)
	{
	}
	int64 Tell() override { return Below->Tell(); }
	bool Seek(int64 Position) override { return Below->Seek(Position); }
	bool SeekFromEnd(int64 Position) override { return Below->SeekFromEnd(Position); }
	bool Read(uint8* Destination, int64 Bytes) override { return Below->Read(Destination, Bytes); }
	bool Write(const uint8* Source, int64 Bytes) override
	{
		const bool bFirstHalf = Below->Write(Source, Bytes / 2) && !Files.IsFaulty();
		return bFirstHalf && Below->Write(Source + Bytes / 2, Bytes - Bytes / 2);
	}
	bool Flush(const bool bFullFlush) override { return !Files.IsFaulty() && Below->Flush(bFullFlush); }
	int64 Size() override { return Below->Size(); }

private:
	FFaultyPlatformFile& Files;
	const TUniquePtr<IFileHandle> Below;
};

IFileHandle* FFaultyPlatformFile::OpenWrite(const TCHAR* Filename, bool bAppend, bool bAllowRead)
{
	IFileHandle* const Handle = IsFaulty() ? nullptr : Below.OpenWrite(Filename, bAppend, bAllowRead);
	return Handle ? new FFaultyHandle(*this, Handle) : nullptr;
}

class PackageRobustnessTest : public testing::Test
{
protected:
	PackageRobustnessTest() { FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject")); }
	~PackageRobustnessTest() override
	{
		Forget(TEXT("/Game/Sub/Held"));
		Forget(TEXT("/Game/Fuzz"));
		FPaths::SetProjectFilePath(FString());
	}

	static void Forget(const TCHAR* Name)
	{
		if (UPackage* const Package = FindPackage(nullptr, Name))
		{
			ForEachObjectWithOuter(Package, [](UObject* Object) { Object->ClearFlags(RF_Standalone); });
			CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
		}
	}

	FString GetFile(const TCHAR* Name) const { return Folder.Path / TEXT("Content") / Name + TEXT(".uasset"); }

	bool Save(UTestNode& Node) const
	{
		FSavePackageArgs Args;
		Args.TopLevelFlags = RF_Public | RF_Standalone;
		Args.SaveFlags = SAVE_NoError;
		Node.MarkPackageDirty();
		return UPackage::SavePackage(Node.GetPackage(), nullptr, *GetFile(TEXT("Sub/Held")), Args);
	}

	std::string Read() const
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *GetFile(TEXT("Sub/Held")));
		return TCHAR_TO_UTF8(*Text);
	}

	static UTestNode* Make()
	{
		return NewObject<UTestNode>(
			CreatePackage(TEXT("/Game/Sub/Held")), TEXT("Held"), RF_Public | RF_Standalone | RF_Transactional);
	}

	const FScratchDirectory Folder;
};

// Four operations: the file opened, written, flushed and moved to its place. Folders come on top.
constexpr int32 MostOperations = 20;
}

TEST_F(PackageRobustnessTest, KeepsTheOldFileWhicheverWriteFails)
{
	UTestNode* const Node = Make();
	ASSERT_TRUE(Save(*Node));
	const std::string Old = Read();
	int32 NumFaults = 0;
	for (int32 FaultAt = 0; FaultAt < MostOperations; ++FaultAt)
	{
		Node->X = 100 + FaultAt;
		FFaultyPlatformFile Files(FaultAt, FFaultyPlatformFile::EFault::Failure);
		const bool bSaved = Save(*Node);
		if (!Files.HasFailed())
		{
			EXPECT_TRUE(bSaved);
			break;
		}
		// A folder that is there already need not be made.
		++NumFaults;
		EXPECT_EQ(bSaved, !Node->GetPackage()->IsDirty());
		if (!bSaved)
		{
			EXPECT_EQ(Read(), Old) << FaultAt;
			EXPECT_FALSE(Files.FileExists(*(GetFile(TEXT("Sub/Held")) + TEXT(".tmp"))));
		}
	}
	EXPECT_GE(NumFaults, 4);
	EXPECT_NE(Read(), Old);
}

TEST_F(PackageRobustnessTest, LeavesTheOldOrTheNewFileWhenTheProcessEnds)
{
	UTestNode* const Node = Make();
	ASSERT_TRUE(Save(*Node));
	const std::string Old = Read();
	Node->X = 77;
	ASSERT_TRUE(Save(*Node));
	const std::string New = Read();
	int32 NumOld = 0;
	for (int32 FaultAt = 0; FaultAt < 6; ++FaultAt)
	{
		Node->X = 5;
		ASSERT_TRUE(Save(*Node));
		Node->X = 77;
		const pid_t Child = fork();
		ASSERT_GE(Child, 0);
		if (Child == 0)
		{
			FFaultyPlatformFile Files(FaultAt, FFaultyPlatformFile::EFault::EndOfProcess);
			Save(*Node);
			_exit(0);
		}
		int Status = 0;
		waitpid(Child, &Status, 0);
		EXPECT_TRUE(WIFEXITED(Status));
		const std::string Text = Read();
		EXPECT_TRUE(Text == Old || Text == New) << Text;
		NumOld += Text == Old;
	}
	EXPECT_GE(NumOld, 3) << "before the file is in its place";
	EXPECT_TRUE(Save(*Node)) << "whatever the last one left behind";
	EXPECT_EQ(Read(), New);
}

/** PACKAGE_FUZZ_ROUNDS makes it run longer than the few seconds of a normal run. */
TEST_F(PackageRobustnessTest, BearsDamagedFiles)
{
	const char* const Wanted = std::getenv("PACKAGE_FUZZ_ROUNDS");
	const int32 NumRounds = Wanted ? std::atoi(Wanted) : 3000;
	const std::string Good =
		R"text({"Package":"/Game/Fuzz","Format":1,"Needs":["/Game/B"],"Assets":[{"Name":"Fuzz","Class":"/Script/A.B","Tags":{"T":"v"}}]}
Begin Object Class=/Script/CoreUObjectTests.TestRecipe Name="Fuzz" Flags=Public,Standalone,Transactional
Begin Object Class=/Script/CoreUObjectTests.TestNode Name="Node" Flags=Transactional
CustomProperties Link /Script/CoreUObjectTests.TestNode'/Game/Fuzz.Fuzz:Other'
Talker="/Script/CoreUObjectTests.TestRecipe'/Game/Fuzz.Fuzz'"
End Object
Begin Object Class=/Script/CoreUObjectTests.TestKinds Name="Other"
Int=-3
UInt64=18446744073709551615
Float=0.100000
Double=3.3333333333333334e-08
Text="one \"two\"\n\\"
Name="Name_3"
Caption=NSLOCTEXT("Space", "Key", "Caption")
State=KeepLast30Days
OldState=TOE_Second
Object="/Script/CoreUObjectTests.TestKinds'/Game/Fuzz.Fuzz:Other'"
Class="/Script/CoreUObject.Class'/Script/CoreUObjectTests.TestKindsChild'"
SoftObject="/Game/Fuzz.Fuzz:Other"
Point=(X=4,Label="")
Vector=(X=1e-09,Y=123456789.125)
Texts=("a","","b,c)")
Points=((X=3),(X=3,Label="else("))
Objects=("/Script/CoreUObjectTests.TestKinds'/Game/Fuzz.Fuzz:Other'",None)
Names=("x","y")
Counts=(("k,", 2))
PointsByState=((Running, (X=1,Name="n",Object=None)))
Numbers(2)=9
End Object
ParentClass="/Script/CoreUObject.Class'/Script/CoreUObjectTests.TestNode'"
GeneratedClass="/Script/CoreUObjectTests.TestRecipeClass'/Game/Fuzz.Fuzz_C'"
Variables=("Salt")
Nodes=("/Script/CoreUObjectTests.TestNode'/Game/Fuzz.Fuzz:Node'")
End Object
Begin Object Class=/Script/CoreUObjectTests.TestRecipeClass Name="Fuzz_C" Flags=Public
End Object
Begin Object Class=/Game/Fuzz.Fuzz_C Name="Default__Fuzz_C" Flags=Public,Transactional,ArchetypeObject
Salt=3
End Object
)text";
	FTextMutator Mutator("\n\"'(),=.:/_-0e9CBE \\{}[]\x80\xC3");
	int32 NumLoaded = 0;
	for (int32 Round = 0; Round < NumRounds; ++Round)
	{
		const std::string Text = Mutator.Mutate(Good, 6);
		FFileHelper::SaveArrayToFile(
			TArrayView<const uint8>(reinterpret_cast<const uint8*>(Text.data()), static_cast<int32>(Text.size())),
			*GetFile(TEXT("Fuzz")));
		NumLoaded += LoadPackage(nullptr, TEXT("/Game/Fuzz"), LOAD_Quiet) != nullptr;
		Forget(TEXT("/Game/Fuzz"));
		ASSERT_EQ(FindPackage(nullptr, TEXT("/Game/Fuzz")), nullptr) << Text;
	}
	EXPECT_GT(NumLoaded, NumRounds / 2);
}

TEST_F(PackageRobustnessTest, BearsDeepAndEndlessFiles)
{
	std::string Text = "{\"Package\":\"/Game/Fuzz\",\"Assets\":[]}\n";
	for (int32 Depth = 0; Depth < 20000; ++Depth)
	{
		Text += "Begin Object Class=/Script/CoreUObjectTests.TestNode Name=\"N\"\n";
	}
	Text += "Note=" + std::string(100000, '(') + "\nOther=\"" + std::string(100000, 'x') + "\"\n" +
			std::string(5000, 'y') + "=1\n";
	FFileHelper::SaveStringToFile(FString(UTF8_TO_TCHAR(Text.c_str())), *GetFile(TEXT("Fuzz")));
	EXPECT_NE(LoadPackage(nullptr, TEXT("/Game/Fuzz"), LOAD_Quiet), nullptr);

	const std::string Nested = "{\"Assets\":" + std::string(200000, '[');
	FPackageHeader Header;
	EXPECT_EQ(Header.Parse(TArrayView<const uint8>(
				  reinterpret_cast<const uint8*>(Nested.data()), static_cast<int32>(Nested.size()))),
		FPackageHeader::EResult::Unreadable);
}
