#include "UObject/Package.h"
#include "HAL/FileManager.h"
#include "Misc/FeedbackContext.h"
#include "Misc/FileHelper.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/PackageName.h"
#include "PackageTestTypes.h"
#include "ScratchDirectory.h"
#include "UObject/CopyPackage.h"
#include "UObject/PackageHeader.h"
#include "UObject/SavePackage.h"
#include "UObject/UObjectHash.h"
#include "UObject/UnrealType.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/** Collects warnings. */
class FWarnings final : public FOutputDevice
{
public:
	FWarnings() { GLog->AddOutputDevice(this); }
	~FWarnings() override { GLog->RemoveOutputDevice(this); }
	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName&) override
	{
		if (Verbosity == ELogVerbosity::Warning)
		{
			Text += FString(V) + TEXT("\n");
		}
	}
	bool CanBeUsedOnMultipleThreads() const override { return true; }
	bool CanBeUsedOnAnyThread() const override { return true; }
	bool Has(const TCHAR* Part) const { return Text.Contains(Part); }

	FString Text;
};

/** A project of its own, in whose content packages are saved. */
class PackageTest : public testing::Test
{
protected:
	PackageTest() { FPaths::SetProjectFilePath(Folder.Path / TEXT("Game.uproject")); }
	~PackageTest() override
	{
		ForgetAll();
		FPaths::SetProjectFilePath(FString());
	}

	template <typename T>
	T* Make(const TCHAR* PackageName)
	{
		Names.AddUnique(PackageName);
		return NewObject<T>(CreatePackage(PackageName), FName(*FPackageName::GetShortName(PackageName)),
			RF_Public | RF_Standalone | RF_Transactional);
	}

	static FString FileOf(const TCHAR* PackageName)
	{
		return FPaths::ConvertRelativePathToFull(
			FPackageName::LongPackageNameToFilename(PackageName, FPackageName::GetAssetPackageExtension()));
	}

	static bool Save(const TCHAR* PackageName, FOutputDevice* Error = nullptr)
	{
		FSavePackageArgs Args;
		Args.TopLevelFlags = RF_Public | RF_Standalone;
		Args.SaveFlags = Error ? SAVE_None : SAVE_NoError;
		Args.Error = Error;
		return UPackage::SavePackage(FindPackage(nullptr, PackageName), nullptr, *FileOf(PackageName), Args);
	}

	static std::string Read(const TCHAR* PackageName)
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *FileOf(PackageName));
		return ToUtf8(Text);
	}

	static void Write(const TCHAR* PackageName, const FString& Objects)
	{
		FPackageHeader Header;
		Header.PackageName = PackageName;
		FFileHelper::SaveStringToFile(Header.ToText() + TEXT("\n") + Objects, *FileOf(PackageName));
	}

	/** Takes the test's packages out of memory. */
	void ForgetAll()
	{
		for (const FString& Name : Names)
		{
			if (UPackage* const Package = FindPackage(nullptr, *Name))
			{
				ForEachObjectWithOuter(Package, [](UObject* Object) { Object->ClearFlags(RF_Standalone); });
			}
		}
		CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
		for (const FString& Name : Names)
		{
			EXPECT_EQ(FindPackage(nullptr, *Name), nullptr) << ToUtf8(Name);
		}
	}

	template <typename T>
	T* Load(const TCHAR* PackageName)
	{
		Names.AddUnique(PackageName);
		return LoadObject<T>(nullptr, PackageName);
	}

	const FScratchDirectory Folder;
	TArray<FString> Names;
};

/** Every property as text. */
FString Describe(const UObject& Object)
{
	FString Text;
	for (TFieldIterator<FProperty> It(Object.GetClass()); It; ++It)
	{
		for (int32 Index = 0; Index < It->ArrayDim; ++Index)
		{
			Text += It->GetName() + TEXT("=");
			const void* const Value = It->ContainerPtrToValuePtr<void>(&Object, Index);
			It->ExportTextItem_Direct(Text, Value, Value, nullptr, PPF_Delimited);
			Text += TEXT("\n");
		}
	}
	return Text;
}
}

TEST_F(PackageTest, ReadsEveryKindOfPropertyAsItWasSaved)
{
	UTestKinds* Kinds = Make<UTestKinds>(TEXT("/Game/Deep/Kinds"));
	UTestKinds* Part = NewObject<UTestKinds>(Kinds, TEXT("Part"));
	Kinds->Int = -3;
	Kinds->bSecondBit = 1;
	Kinds->UInt64 = ~0ull;
	Kinds->Float = 0.1f;
	Kinds->Double = 1.0 / 3.0e7;
	Kinds->Text = TEXT("one \"two\"\n\tthree \u00e9 ' \\ = End Object");
	Kinds->Name = TEXT("Name_3");
	Kinds->Caption = NSLOCTEXT("Space", "Key", "Caption\nof two lines");
	Kinds->State = ETestState::KeepLast30Days;
	Kinds->OldState = TOE_Second;
	Kinds->RawObject = UTestKinds::StaticClass();
	Kinds->Object = Part;
	Kinds->Class = UTestKindsChild::StaticClass();
	Kinds->SoftObject = Part;
	Kinds->WeakObject = Part;
	Kinds->Point.Label = TEXT("");
	Kinds->Vector = FVector2D(1e-9, 123456789.125);
	Kinds->Texts = { TEXT("a"), TEXT(""), TEXT("b,c)") };
	Kinds->Points.AddDefaulted(2);
	Kinds->Points[1].Label = TEXT("else(");
	Kinds->Objects = { Part, nullptr, Kinds };
	Kinds->Names = { TEXT("x"), TEXT("y") };
	Kinds->Counts.Add(TEXT("k,"), 2);
	FTestNamedPoint& Named = Kinds->PointsByState.Add(ETestState::Running);
	Named.Object = Part;
	Kinds->Numbers[2] = 9;
	Part->Text = TEXT("part");
	const FString Before = Describe(*Kinds) + Describe(*Part);

	Kinds->MarkPackageDirty();
	ASSERT_TRUE(Save(TEXT("/Game/Deep/Kinds")));
	EXPECT_FALSE(Kinds->GetPackage()->IsDirty());
	const std::string File = Read(TEXT("/Game/Deep/Kinds"));
	ForgetAll();
	UTestKinds* const Loaded = Load<UTestKinds>(TEXT("/Game/Deep/Kinds"));
	ASSERT_NE(Loaded, nullptr);
	EXPECT_TRUE(Loaded->HasAllFlags(RF_Public | RF_Standalone | RF_Transactional | RF_WasLoaded));
	EXPECT_FALSE(Loaded->HasAnyFlags(RF_NeedLoad | RF_NeedPostLoad));
	EXPECT_FALSE(Loaded->GetPackage()->IsDirty()) << "loading never dirties";
	EXPECT_EQ(ToUtf8(Describe(*Loaded) + Describe(*Loaded->Object)), ToUtf8(Before));
	EXPECT_EQ(Loaded->Double, 1.0 / 3.0e7) << "all digits";
	ASSERT_TRUE(Save(TEXT("/Game/Deep/Kinds")));
	EXPECT_EQ(Read(TEXT("/Game/Deep/Kinds")), File) << "same content, same bytes";
}

TEST_F(PackageTest, WritesOnlyWhatIsSavedAndDiffers)
{
	UTestRecipe* Recipe = Make<UTestRecipe>(TEXT("/Game/Soup"));
	Recipe->ParentClass = UTestNode::StaticClass();
	Recipe->Variables = { TEXT("Salt") };
	Recipe->Compile();
	Recipe->Forgotten = 4;
	for (const TCHAR* Name : { TEXT("Second"), TEXT("First") })
	{
		Recipe->Nodes.Add(NewObject<UTestNode>(Recipe, Name));
	}
	Recipe->Nodes[0]->Link = Recipe->Nodes[1].Get();
	Recipe->Nodes[1]->X = 6;
	Recipe->Nodes[1]->Other = NewObject<UTestNode>(Recipe, TEXT("Passing"), RF_Transient);
	NewObject<UTestNode>(Recipe, TEXT("LeftOver"));
	UTestNode* const Defaults = Recipe->GeneratedClass->GetDefaultObject<UTestNode>();
	Defaults->Note = TEXT("hot");
	FindFProperty<FIntProperty>(Recipe->GeneratedClass, TEXT("Salt"))->SetPropertyValue_InContainer(Defaults, 3);
	ASSERT_TRUE(Save(TEXT("/Game/Soup")));
	EXPECT_EQ(Read(TEXT("/Game/Soup")),
		R"({"Package":"/Game/Soup","Format":1,"Needs":[],"Assets":[{"Name":"Soup","Class":"/Script/CoreUObjectTests.TestRecipe","Tags":{"GeneratedClass":"/Script/CoreUObjectTests.TestRecipeClass'/Game/Soup.Soup_C'"}}]}
Begin Object Class=/Script/CoreUObjectTests.TestRecipe Name="Soup" Flags=Public,Standalone,Transactional
   Begin Object Class=/Script/CoreUObjectTests.TestNode Name="Second"
      CustomProperties Link /Script/CoreUObjectTests.TestNode'/Game/Soup.Soup:First'
   End Object
   Begin Object Class=/Script/CoreUObjectTests.TestNode Name="First"
      X=6
   End Object
   ParentClass="/Script/CoreUObject.Class'/Script/CoreUObjectTests.TestNode'"
   GeneratedClass="/Script/CoreUObjectTests.TestRecipeClass'/Game/Soup.Soup_C'"
   Variables=("Salt")
   Nodes=("/Script/CoreUObjectTests.TestNode'/Game/Soup.Soup:Second'","/Script/CoreUObjectTests.TestNode'/Game/Soup.Soup:First'")
End Object
Begin Object Class=/Script/CoreUObjectTests.TestRecipeClass Name="Soup_C" Flags=Public
End Object
Begin Object Class=/Game/Soup.Soup_C Name="Default__Soup_C" Flags=Public,Transactional,ArchetypeObject
   Note="hot"
   Salt=3
End Object
)");
}

TEST_F(PackageTest, MakesClassesBeforeTheirDefaultsAndParentsBeforeChildren)
{
	UTestRecipe* Parent = Make<UTestRecipe>(TEXT("/Game/Parent"));
	Parent->ParentClass = UTestNode::StaticClass();
	Parent->Variables = { TEXT("Salt") };
	Parent->Compile();
	UTestRecipe* Child = Make<UTestRecipe>(TEXT("/Game/Child"));
	Child->ParentClass = static_cast<UClass*>(Parent->GeneratedClass.Get());
	Child->ParentRecipe = Parent;
	Parent->Other = Child; // the two need each other
	FIntProperty* Salt = FindFProperty<FIntProperty>(Parent->GeneratedClass, TEXT("Salt"));
	Salt->SetPropertyValue_InContainer(Parent->GeneratedClass->GetDefaultObject(), 12);
	Child->Compile();
	UObject* Instance = NewObject<UObject>(Child, Parent->GeneratedClass.Get(), TEXT("Instance"));
	Salt->SetPropertyValue_InContainer(Instance, 99);
	Child->Other = Instance;
	ASSERT_TRUE(Save(TEXT("/Game/Parent")));
	ASSERT_TRUE(Save(TEXT("/Game/Child")));

	for (const TCHAR* First : { TEXT("/Game/Parent"), TEXT("/Game/Child") })
	{
		ForgetAll();
		const FWarnings Warnings;
		ASSERT_NE(Load<UTestRecipe>(First), nullptr);
		Child = FindObject<UTestRecipe>(nullptr, TEXT("/Game/Child.Child"));
		ASSERT_NE(Child, nullptr) << "loaded with what refers to it";
		ASSERT_NE(Child->ParentClass, nullptr);
		EXPECT_EQ(Child->NumLoads, 1);
		EXPECT_EQ(Child->GeneratedClass->GetSuperClass(), Child->ParentClass);
		Salt = FindFProperty<FIntProperty>(Child->GeneratedClass, TEXT("Salt"));
		ASSERT_NE(Salt, nullptr);
		EXPECT_EQ(Salt->GetPropertyValue_InContainer(Child->GeneratedClass->GetDefaultObject()), 12)
			<< "taken over from the parent's defaults, which were there first";
		ASSERT_NE(Child->Other, nullptr) << "of a class that did not exist when the values were read";
		EXPECT_EQ(Salt->GetPropertyValue_InContainer(Child->Other), 99);
		EXPECT_EQ(ToUtf8(Warnings.Text), "");
	}
}

TEST_F(PackageTest, LoadsTheRestOfADamagedPackage)
{
	Write(TEXT("/Game/Damaged"),
		TEXT("nonsense\n"
			 "Begin Object Class=/Script/CoreUObjectTests.TestNode Name=\"Damaged\" Flags=Public\n"
			 "Begin Object Class=/Script/Gone.Thing Name=\"Thing\"\n"
			 "Begin Object Class=/Script/CoreUObjectTests.TestNode Name=\"Below\"\n"
			 "End Object\n"
			 "X=1\n"
			 "End Object\n"
			 "Begin Object Class=/Script/CoreUObject.Package Name=\"Inner\"\n"
			 "End Object\n"
			 "Begin Object Class=/Script/CoreUObjectTests.TestAbstract Name=\"Abstract\"\n"
			 "End Object\n"
			 "NoSuchProperty=1\n"
			 "X=one\n"
			 "Forgotten=8\n"
			 "Other=\"/Script/A.B'/Game/Nowhere.Nowhere'\"\n"
			 "Talker=\"/Script/A.B'/Game/Damaged.Damaged'\"\n"
			 "Note=\"whole\"\n"
			 "X=8\n"
			 "End Object\n"
			 "End Object\n"));
	FWarnings Warnings;
	const UTestNode* const Node = Load<UTestNode>(TEXT("/Game/Damaged"));
	ASSERT_NE(Node, nullptr);
	EXPECT_EQ(ToUtf8(Node->Note), "whole");
	EXPECT_EQ(Node->X, 8);
	EXPECT_EQ(Node->Talker.GetObject(), nullptr);
	for (const TCHAR* Part : { TEXT("(2): "), TEXT("(4): Thing is left out"), TEXT("(9): Inner"),
			 TEXT("(11): Abstract"), TEXT("(13): "), TEXT("(14): the value of X"),
			 TEXT("(16): /Script/A.B'/Game/Nowhere.Nowhere' is missing"), TEXT("(17): "), TEXT("(21): ") })
	{
		EXPECT_TRUE(Warnings.Has(Part)) << ToUtf8(Part) << "\n" << ToUtf8(Warnings.Text);
	}
	EXPECT_EQ(LoadObject<UObject>(nullptr, TEXT("/Game/Damaged.Elsewhere")), nullptr);
	EXPECT_EQ(LoadObject<UObject>(nullptr, TEXT("Damaged")), nullptr) << "a short name is no path";
	EXPECT_EQ(FSoftObjectPath(TEXT("/Game/Damaged.Damaged")).TryLoad(), Node);
}

TEST_F(PackageTest, FindsItsOwnPartsInAMovedFile)
{
	UTestNode* Node = Make<UTestNode>(TEXT("/Game/Old"));
	Node->Other = NewObject<UTestNode>(Node, TEXT("Part"));
	ASSERT_TRUE(Save(TEXT("/Game/Old")));
	IFileManager::Get().Move(*FileOf(TEXT("/Game/New")), *FileOf(TEXT("/Game/Old")));
	ForgetAll();
	Names.Add(TEXT("/Game/New"));
	Node = LoadObject<UTestNode>(nullptr, TEXT("/Game/New.Old"));
	ASSERT_NE(Node, nullptr);
	ASSERT_NE(Node->Other, nullptr);
	EXPECT_EQ(ToUtf8(Node->Other->GetPathName()), "/Game/New.Old:Part");
}

TEST_F(PackageTest, LeavesTheOldFileWhenASaveFails)
{
	UTestNode* Node = Make<UTestNode>(TEXT("/Game/Kept"));
	ASSERT_TRUE(Save(TEXT("/Game/Kept")));
	const std::string Old = Read(TEXT("/Game/Kept"));
	Node->X = 77;
	Node->MarkPackageDirty();
	const FString File = FileOf(TEXT("/Game/Kept"));
	IPlatformFile& Files = FPlatformFileManager::Get().GetPlatformFile();
	Files.SetReadOnly(*File, true);
	FWarnings Warnings;
	EXPECT_FALSE(Save(TEXT("/Game/Kept"), GWarn));
	GLog->Flush();
	Files.SetReadOnly(*File, false);
	EXPECT_EQ(Read(TEXT("/Game/Kept")), Old);
	EXPECT_TRUE(Node->GetPackage()->IsDirty());

	const TArray<uint8> Binary = { 0xC1, 0x83, 0x2A, 0x9E, 0, 1 };
	FFileHelper::SaveArrayToFile(Binary, *File);
	EXPECT_FALSE(Save(TEXT("/Game/Kept")));
	TArray<uint8> Bytes;
	FFileHelper::LoadFileToArray(Bytes, *File);
	EXPECT_EQ(Bytes, Binary) << "what Unreal Editor saved is never overwritten";
	EXPECT_DEATH(Save(TEXT("/Game/Kept"), GError), "saved by Unreal Editor");
}

TEST_F(PackageTest, CopiesAnObjectWithItsParts)
{
	UTestRecipe* Recipe = Make<UTestRecipe>(TEXT("/Game/Original"));
	UTestNode* First = NewObject<UTestNode>(Recipe, TEXT("First"), RF_Transactional);
	UTestNode* Second = NewObject<UTestNode>(Recipe, TEXT("Second"));
	Recipe->Nodes = { First, Second };
	First->Link = Second;
	First->OwnNumber = 4;
	First->Other = GetMutableDefault<UTestNode>();
	Second->Other = Recipe;
	Second->Talker = Recipe;
	UPackage* const Target = CreatePackage(TEXT("/Game/Copy"));
	Names.Add(TEXT("/Game/Copy"));
	const UTestRecipe* const Copy = DuplicateObject(Recipe, Target, TEXT("Copy"));
	ASSERT_NE(Copy, nullptr);
	ASSERT_EQ(Copy->Nodes.Num(), 2);
	EXPECT_EQ(ToUtf8(Copy->Nodes[0]->GetPathName()), "/Game/Copy.Copy:First");
	EXPECT_TRUE(Copy->HasAllFlags(RF_Public | RF_Standalone));
	EXPECT_EQ(Copy->Nodes[0]->Link.Get(), Copy->Nodes[1]);
	EXPECT_EQ(Copy->Nodes[0]->OwnNumber, 0);
	EXPECT_EQ(Copy->Nodes[0]->Other, GetDefault<UTestNode>()) << "what lies elsewhere is shared";
	EXPECT_EQ(Copy->Nodes[1]->Other, Copy);
	EXPECT_EQ(Copy->Nodes[1]->Talker->GetAge(), 7);
	EXPECT_EQ(Copy->Nodes[1]->NumDuplicates, 1);
	EXPECT_EQ(Copy->Nodes[0]->bLinkWasThere, true) << "PostLoad comes when everything has been read";
	EXPECT_EQ(Copy->GeneratedClass, nullptr) << "a copy is not compiled as what comes from a file is";
}

TEST_F(PackageTest, CopiesAPackageWithTheClassThatItMakes)
{
	UTestRecipe* Recipe = Make<UTestRecipe>(TEXT("/Game/Soup"));
	Recipe->ParentClass = UTestNode::StaticClass();
	Recipe->Variables = { TEXT("Salt") };
	Recipe->Compile();
	Recipe->Nodes = { NewObject<UTestNode>(Recipe, TEXT("Soup")) };
	UTestNode* const Template = NewObject<UTestNode>(Recipe->GeneratedClass, TEXT("Template"));
	Recipe->Other = Template;
	const FIntProperty* Salt = FindFProperty<FIntProperty>(Recipe->GeneratedClass, TEXT("Salt"));
	Salt->SetPropertyValue_InContainer(Recipe->GeneratedClass->GetDefaultObject(), 3);
	Names.Add(TEXT("/Game/Sub/Stew"));

	const FWarnings Warnings;
	UPackage* const Package = CopyPackage(*Recipe->GetPackage(), TEXT("/Game/Sub/Stew"));
	ASSERT_NE(Package, nullptr);
	const UTestRecipe* const Copy = FindObject<UTestRecipe>(Package, TEXT("Stew"));
	ASSERT_NE(Copy, nullptr);
	ASSERT_NE(Copy->GeneratedClass, nullptr);
	EXPECT_EQ(ToUtf8(Copy->GeneratedClass->GetPathName()), "/Game/Sub/Stew.Stew_C");
	EXPECT_EQ(ToUtf8(Copy->Other->GetPathName()), "/Game/Sub/Stew.Stew_C:Template");
	EXPECT_EQ(ToUtf8(Copy->Nodes[0]->GetPathName()), "/Game/Sub/Stew.Stew:Soup") << "a part keeps its name";
	Salt = FindFProperty<FIntProperty>(Copy->GeneratedClass, TEXT("Salt"));
	EXPECT_EQ(Salt->GetPropertyValue_InContainer(Copy->GeneratedClass->GetDefaultObject()), 3);
	EXPECT_EQ(Copy->NumDuplicates, 1);
	EXPECT_EQ(ToUtf8(Warnings.Text), "");
}
