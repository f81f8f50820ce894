#include "Engine/World.h"
#include "EngineTestTypes.h"
#include "GameFramework/PlayerController.h"
#include "Kismet/BlueprintPathsLibrary.h"
#include "Kismet/GameplayStatics.h"
#include "Kismet/KismetMathLibrary.h"
#include "Kismet/KismetStringLibrary.h"
#include "Kismet/KismetSystemLibrary.h"
#include "Misc/OutputDevice.h"
#include "Misc/OutputDeviceRedirector.h"
#include "Misc/Paths.h"
#include "ScratchDirectory.h"
#include "UObject/Package.h"

#include <gtest/gtest.h>
#include <string>

namespace KismetLibraryTest
{
using FMathLibrary = UKismetMathLibrary;
using FStringLibrary = UKismetStringLibrary;
using FSystemLibrary = UKismetSystemLibrary;
using FPathsLibrary = UBlueprintPathsLibrary;

std::string ToUtf8(const FString& Text)
{
	return TCHAR_TO_UTF8(*Text);
}

TEST(KismetMath, ComparesIntegersByTheirNames)
{
	const struct
	{
		int32 A;
		int32 B;
		bool bLess;
		bool bEqual;
	} Cases[] = { { 1, 2, true, false }, { 2, 2, false, true }, { 3, 2, false, false },
		{ MIN_int32, MAX_int32, true, false } };
	for (const auto& Case : Cases)
	{
		const bool bGreater = !Case.bLess && !Case.bEqual;
		EXPECT_EQ(FMathLibrary::Less_IntInt(Case.A, Case.B), Case.bLess);
		EXPECT_EQ(FMathLibrary::LessEqual_IntInt(Case.A, Case.B), !bGreater);
		EXPECT_EQ(FMathLibrary::Greater_IntInt(Case.A, Case.B), bGreater);
		EXPECT_EQ(FMathLibrary::GreaterEqual_IntInt(Case.A, Case.B), !Case.bLess);
		EXPECT_EQ(FMathLibrary::EqualEqual_IntInt(Case.A, Case.B), Case.bEqual);
		EXPECT_EQ(FMathLibrary::NotEqual_IntInt(Case.A, Case.B), !Case.bEqual);
		EXPECT_EQ(FMathLibrary::Less_DoubleDouble(Case.A, Case.B), Case.bLess);
		EXPECT_EQ(FMathLibrary::LessEqual_DoubleDouble(Case.A, Case.B), !bGreater);
		EXPECT_EQ(FMathLibrary::Greater_DoubleDouble(Case.A, Case.B), bGreater);
		EXPECT_EQ(FMathLibrary::GreaterEqual_DoubleDouble(Case.A, Case.B), !Case.bLess);
		EXPECT_EQ(FMathLibrary::Min(Case.A, Case.B), Case.bLess ? Case.A : Case.B);
		EXPECT_EQ(FMathLibrary::Max(Case.A, Case.B), Case.bLess ? Case.B : Case.A);
	}
}

TEST(KismetMath, CalculatesWithNumbersAndVectors)
{
	for (const bool bA : { false, true })
	{
		EXPECT_EQ(FMathLibrary::Not_PreBool(bA), !bA);
		for (const bool bB : { false, true })
		{
			EXPECT_EQ(FMathLibrary::BooleanAND(bA, bB), bA && bB);
			EXPECT_EQ(FMathLibrary::BooleanOR(bA, bB), bA || bB);
			EXPECT_EQ(FMathLibrary::EqualEqual_BoolBool(bA, bB), bA == bB);
		}
	}
	EXPECT_EQ(FMathLibrary::Add_DoubleDouble(0.5, 0.25), 0.75);
	EXPECT_EQ(FMathLibrary::Subtract_DoubleDouble(0.5, 0.25), 0.25);
	EXPECT_EQ(FMathLibrary::Multiply_DoubleDouble(0.5, 0.25), 0.125);
	EXPECT_EQ(FMathLibrary::Divide_DoubleDouble(0.5, 0.25), 2.0);
	EXPECT_EQ(FMathLibrary::Percent_IntInt(-7, 3), -1) << "the sign is the dividend's";
	EXPECT_EQ(FMathLibrary::Clamp(12, -3, 3), 3);
	EXPECT_EQ(FMathLibrary::FClamp(-12.0, -0.5, 0.5), -0.5);
	EXPECT_EQ(FMathLibrary::Lerp(10.0, 20.0, 0.25), 12.5);
	EXPECT_EQ(FMathLibrary::Lerp(10.0, 20.0, 2.0), 30.0) << "past the end";
	EXPECT_EQ(FMathLibrary::Conv_IntToDouble(-3), -3.0);

	const FVector A = FMathLibrary::MakeVector(1.0, 2.0, 3.0);
	const FVector B = FMathLibrary::MakeVector(3.0, 2.0, 1.0);
	EXPECT_EQ(FMathLibrary::Add_VectorVector(A, B), FVector(4.0, 4.0, 4.0));
	EXPECT_EQ(FMathLibrary::Subtract_VectorVector(A, B), FVector(-2.0, 0.0, 2.0));
	EXPECT_EQ(FMathLibrary::VSize(FVector(2.0, 3.0, 6.0)), 7.0);
	double X = 0.0;
	double Y = 0.0;
	double Z = 0.0;
	FMathLibrary::BreakVector(A, X, Y, Z);
	EXPECT_EQ(FVector(X, Y, Z), A);
	const FRotator Turn = FMathLibrary::MakeRotator(10.0f, 20.0f, 90.0f);
	EXPECT_EQ(Turn, FRotator(20.0, 90.0, 10.0)) << "roll is named first here, pitch in C++";
	EXPECT_TRUE(FMathLibrary::GetForwardVector(FRotator(0.0, 90.0, 0.0)).Equals(FVector::RightVector));
}

TEST(KismetStrings, ConvertAndSearch)
{
	const struct
	{
		FString Actual;
		const char* Expected;
	} Cases[] = {
		{ FStringLibrary::Concat_StrStr(TEXT("Moor"), TEXT("hen")), "Moorhen" },
		{ FStringLibrary::Replace(TEXT("a-A-b"), TEXT("A"), TEXT("x")), "x-x-b" },
		{ FStringLibrary::ToUpper(TEXT("Moor 1")), "MOOR 1" },
		{ FStringLibrary::ToLower(TEXT("Moor 1")), "moor 1" },
		{ FStringLibrary::Conv_IntToString(MIN_int32), "-2147483648" },
		{ FStringLibrary::Conv_DoubleToString(0.5), "0.5" },
		{ FStringLibrary::Conv_DoubleToString(2.0), "2.0" },
		{ FStringLibrary::Conv_BoolToString(true), "true" },
		{ FStringLibrary::Conv_BoolToString(false), "false" },
		{ FStringLibrary::Conv_NameToString(FName(TEXT("Moor_3"))), "Moor_3" },
		{ FStringLibrary::Conv_VectorToString(FVector(1.0, -2.5, 0.0)), "X=1.000 Y=-2.500 Z=0.000" },
		{ FStringLibrary::Conv_ObjectToString(nullptr), "None" },
		{ FStringLibrary::Conv_ObjectToString(AActor::StaticClass()), "Actor" },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(Case.Actual), Case.Expected);
	}
	EXPECT_EQ(FStringLibrary::Len(TEXT("Moor")), 4);
	EXPECT_TRUE(FStringLibrary::IsEmpty(FString()));
	EXPECT_FALSE(FStringLibrary::IsEmpty(TEXT(" ")));
	EXPECT_TRUE(FStringLibrary::Contains(TEXT("Moorhen"), TEXT("HEN")));
	EXPECT_FALSE(FStringLibrary::Contains(TEXT("Moorhen"), TEXT("HEN"), true));
	EXPECT_TRUE(FStringLibrary::Contains(TEXT("Moorhen"), TEXT("hen"), true, true));
	const TPair<const TCHAR*, int32> Numbers[] = { { TEXT("12"), 12 }, { TEXT("-3 apples"), -3 }, { TEXT("apples"), 0 },
		{ TEXT(""), 0 }, { TEXT("99999999999"), MAX_int32 }, { TEXT("-99999999999"), MIN_int32 } };
	for (const auto& Number : Numbers)
	{
		EXPECT_EQ(FStringLibrary::Conv_StringToInt(Number.Key), Number.Value) << ToUtf8(Number.Key);
	}
}

TEST(KismetSystem, TellsAboutObjectsAndAboutNone)
{
	UObject* const Object = NewObject<UDiaryComponent>(GetTransientPackage(), TEXT("Diary"));
	EXPECT_TRUE(FSystemLibrary::IsValid(Object));
	EXPECT_TRUE(FSystemLibrary::IsValidClass(AActor::StaticClass()));
	EXPECT_EQ(ToUtf8(FSystemLibrary::GetObjectName(Object)), "Diary");
	EXPECT_EQ(ToUtf8(FSystemLibrary::GetDisplayName(Object)), "Diary");
	EXPECT_EQ(ToUtf8(FSystemLibrary::GetPathName(Object)), "/Engine/Transient.Diary");
	EXPECT_EQ(ToUtf8(FSystemLibrary::GetClassDisplayName(Object->GetClass())), "DiaryComponent");
	EXPECT_EQ(FSystemLibrary::GetOuterObject(Object), GetTransientPackage());
	Object->MarkAsGarbage();
	EXPECT_FALSE(FSystemLibrary::IsValid(Object)) << "about to be destroyed";

	EXPECT_FALSE(FSystemLibrary::IsValid(nullptr));
	EXPECT_FALSE(FSystemLibrary::IsValidClass(nullptr));
	EXPECT_EQ(ToUtf8(FSystemLibrary::GetObjectName(nullptr) + FSystemLibrary::GetDisplayName(nullptr) +
					 FSystemLibrary::GetPathName(nullptr) + FSystemLibrary::GetClassDisplayName(nullptr)),
		"");
	EXPECT_FALSE(FSystemLibrary::GetOuterObject(nullptr));
	EXPECT_EQ(FSystemLibrary::GetGameTimeInSeconds(nullptr), 0.0);
	EXPECT_TRUE(FSystemLibrary::IsServer(nullptr));
}

TEST(KismetSystem, LiteralsAreWhatWasGiven)
{
	EXPECT_EQ(FSystemLibrary::MakeLiteralInt(-7), -7);
	EXPECT_EQ(FSystemLibrary::MakeLiteralDouble(0.1), 0.1);
	EXPECT_TRUE(FSystemLibrary::MakeLiteralBool(true));
	EXPECT_EQ(ToUtf8(FSystemLibrary::MakeLiteralName(TEXT("Moor")).ToString()), "Moor");
	EXPECT_EQ(ToUtf8(FSystemLibrary::MakeLiteralString(TEXT(" a ")) + TEXT("|")), " a |");
	EXPECT_EQ(ToUtf8(FSystemLibrary::MakeLiteralText(INVTEXT("Hen")).ToString()), "Hen");
}

/** What is logged under LogBlueprintUserMessages. */
class FPrintedLines final : public FOutputDevice
{
public:
	FPrintedLines() { GLog->AddOutputDevice(this); }
	~FPrintedLines() override { GLog->RemoveOutputDevice(this); }
	UE_NONCOPYABLE(FPrintedLines)

	using FOutputDevice::Serialize;
	void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override
	{
		if (Category == FName(TEXT("LogBlueprintUserMessages")))
		{
			Text += FString(V) + TEXT(";");
		}
	}

	FString Text;
};

TEST(KismetSystem, PrintsToTheLogUnlessToldNotTo)
{
	const FPrintedLines Lines;
	FSystemLibrary::PrintString(nullptr, TEXT("50 % \u00e9"));
	FSystemLibrary::PrintString(nullptr, TEXT("only on a screen"), true, false);
	FSystemLibrary::PrintText(nullptr, INVTEXT("a text"));
	EXPECT_EQ(ToUtf8(Lines.Text), "50 % \u00e9;a text;");
}

/** A project that exists on disk, for the duration of a test. */
class FKismetPathsTest : public testing::Test
{
protected:
	FKismetPathsTest() { FPaths::SetProjectFilePath(Folder.Path / TEXT("Moor.uproject")); }
	~FKismetPathsTest() override { FPaths::SetProjectFilePath(FString()); }

	FScratchDirectory Folder;
};

TEST_F(FKismetPathsTest, AreThoseOfTheProject)
{
	const FString Root = FPaths::ConvertRelativePathToFull(Folder.Path);
	const auto Full = [](const FString& Path) { return FPathsLibrary::ConvertRelativePathToFull(Path); };
	const struct
	{
		FString Actual;
		const TCHAR* Below;
	} Cases[] = {
		{ FPathsLibrary::ProjectDir(), TEXT("/") },
		{ FPathsLibrary::ProjectConfigDir(), TEXT("/Config/") },
		{ FPathsLibrary::ProjectContentDir(), TEXT("/Content/") },
		{ FPathsLibrary::ProjectIntermediateDir(), TEXT("/Intermediate/") },
		{ FPathsLibrary::ProjectLogDir(), TEXT("/Saved/Logs/") },
		{ FPathsLibrary::ProjectPluginsDir(), TEXT("/Plugins/") },
		{ FPathsLibrary::ProjectSavedDir(), TEXT("/Saved/") },
		{ FPathsLibrary::GetProjectFilePath(), TEXT("/Moor.uproject") },
		{ FSystemLibrary::GetProjectDirectory(), TEXT("/") },
		{ FSystemLibrary::GetProjectContentDirectory(), TEXT("/Content/") },
		{ FSystemLibrary::GetProjectSavedDirectory(), TEXT("/Saved/") },
	};
	for (const auto& Case : Cases)
	{
		EXPECT_EQ(ToUtf8(Full(Case.Actual)), ToUtf8(Root + Case.Below));
	}
	EXPECT_TRUE(FPathsLibrary::IsProjectFilePathSet());
	EXPECT_FALSE(FPathsLibrary::IsUnderDirectory(Full(FPathsLibrary::EngineDir()), Root));
	EXPECT_EQ(ToUtf8(FSystemLibrary::ConvertToAbsolutePath(TEXT("/a/../b"))), "/b");
	EXPECT_EQ(ToUtf8(FSystemLibrary::GetGameName()), "Moor");
	EXPECT_FALSE(FSystemLibrary::GetEngineVersion().IsEmpty());
}

TEST_F(FKismetPathsTest, TakePathsApart)
{
	FString Out;
	EXPECT_TRUE(FPathsLibrary::MakePathRelativeTo(TEXT("/a/b/c.txt"), TEXT("/a/d/"), Out));
	EXPECT_EQ(ToUtf8(Out), "../b/c.txt");
	EXPECT_TRUE(FPathsLibrary::CollapseRelativeDirectories(TEXT("/a/./b/../c"), Out));
	EXPECT_EQ(ToUtf8(Out), "/a/c");
	FPathsLibrary::NormalizeFilename(TEXT("a\\b.txt"), Out);
	EXPECT_EQ(ToUtf8(Out), "a/b.txt");
	FPathsLibrary::NormalizeDirectoryName(TEXT("a\\b\\"), Out);
	EXPECT_EQ(ToUtf8(Out), "a/b");
	FPathsLibrary::RemoveDuplicateSlashes(TEXT("a//b///c"), Out);
	EXPECT_EQ(ToUtf8(Out), "a/b/c");
	EXPECT_EQ(ToUtf8(FPathsLibrary::ConvertRelativePathToFull(TEXT("../c"), TEXT("/a/b"))), "/a/c");
	EXPECT_EQ(ToUtf8(FPathsLibrary::Combine({ TEXT("a"), TEXT("b/"), TEXT("c.txt") })), "a/b/c.txt");
	EXPECT_EQ(ToUtf8(FPathsLibrary::Combine({})), "");
	EXPECT_EQ(ToUtf8(FPathsLibrary::GetExtension(TEXT("a/b.tar.gz"))), "gz");
	EXPECT_EQ(ToUtf8(FPathsLibrary::GetExtension(TEXT("a/b.tar.gz"), true)), ".gz");
	EXPECT_EQ(ToUtf8(FPathsLibrary::GetCleanFilename(TEXT("a/b.txt"))), "b.txt");
	EXPECT_EQ(ToUtf8(FPathsLibrary::GetBaseFilename(TEXT("a/b.txt"))), "b");
	EXPECT_EQ(ToUtf8(FPathsLibrary::GetBaseFilename(TEXT("a/b.txt"), false)), "a/b");
	EXPECT_EQ(ToUtf8(FPathsLibrary::GetPath(TEXT("a/b.txt"))), "a");
	EXPECT_EQ(ToUtf8(FPathsLibrary::ChangeExtension(TEXT("a/b.txt"), TEXT("md"))), "a/b.md");
	EXPECT_EQ(ToUtf8(FPathsLibrary::SetExtension(TEXT("a/b"), TEXT("md"))), "a/b.md");
	EXPECT_TRUE(FPathsLibrary::IsRelative(TEXT("a/b")));
	EXPECT_FALSE(FPathsLibrary::IsRelative(TEXT("/a/b")));
	EXPECT_TRUE(FPathsLibrary::IsSamePath(TEXT("/a/b/../c"), TEXT("/a/c")));
	EXPECT_FALSE(FPathsLibrary::IsSamePath(TEXT("/a/b"), TEXT("/a/c")));
	EXPECT_TRUE(FPathsLibrary::IsUnderDirectory(TEXT("/a/b/c"), TEXT("/a/b")));
	EXPECT_FALSE(FPathsLibrary::IsUnderDirectory(TEXT("/a/bc"), TEXT("/a/b")));
	EXPECT_TRUE(FPathsLibrary::DirectoryExists(Folder.Path));
	EXPECT_FALSE(FPathsLibrary::FileExists(Folder.Path));
	const FString Temporary = FPathsLibrary::CreateTempFilename(Folder.Path, TEXT("Moor"), TEXT(".tmp"));
	EXPECT_TRUE(Temporary.StartsWith(Folder.Path / TEXT("Moor")) && Temporary.EndsWith(TEXT(".tmp")));
	EXPECT_FALSE(FPathsLibrary::FileExists(Temporary));
}

TEST(GameplayStatics, KnowTheGameModeAndTheTimeOfTheWorld)
{
	EXPECT_EQ(UGameplayStatics::GetGameMode(nullptr), nullptr);
	EXPECT_EQ(UGameplayStatics::GetTimeSeconds(nullptr), 0.0);
	EXPECT_EQ(UGameplayStatics::GetWorldDeltaSeconds(nullptr), 0.0);
	EXPECT_EQ(UGameplayStatics::GetActorOfClass(nullptr, AActor::StaticClass()), nullptr);

	UWorld* const World = UWorld::CreateWorld(EWorldType::Game, false);
	AActor* const Context = World->SpawnActor<ACharacter>();
	World->Tick(LEVELTICK_All, 0.25f);
	World->Tick(LEVELTICK_All, 0.5f);
	EXPECT_EQ(UGameplayStatics::GetTimeSeconds(Context), 0.75);
	EXPECT_EQ(UGameplayStatics::GetWorldDeltaSeconds(Context), 0.5);
	EXPECT_EQ(UGameplayStatics::GetGameMode(Context), World->GetAuthGameMode());
	EXPECT_EQ(UGameplayStatics::GetActorOfClass(Context, ADiaryActor::StaticClass()), nullptr);
	TArray<AActor*> Actors;
	UGameplayStatics::GetAllActorsOfClass(Context, nullptr, Actors);
	EXPECT_TRUE(Actors.IsEmpty()) << "no class is not every class";
	World->DestroyWorld(false);
	CollectGarbage(RF_NoFlags);
}
}
