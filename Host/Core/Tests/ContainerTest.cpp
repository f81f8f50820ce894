#include "CoreMinimal.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

namespace
{
template <typename MapType>
std::string Keys(const MapType& Map)
{
	std::string Result;
	for (const auto& Pair : Map)
	{
		Result += TCHAR_TO_UTF8(*Pair.Key);
	}
	return Result;
}

// The forms that the engine has dropped or never had.
template <typename T>
concept CShrinksByBool = requires(T Array)
{
	Array.Pop(false);
};
static_assert(!CShrinksByBool<TArray<int32>>);
}

TEST(TArrayTest, ElementsWithDestructorsSurviveInsertRemoveAndGrowth)
{
	TArray<FString> Array;
	for (int32 Index = 0; Index < 100; ++Index)
	{
		Array.Insert(FString::FromInt(Index), Array.Num() / 2);
	}
	EXPECT_EQ(Array.RemoveAll([](const FString& Text) { return Text.Len() == 2; }), 90);
	EXPECT_EQ(Array.Num(), 10);
	Array.Sort();
	EXPECT_TRUE(Array[9] == TEXT("9"));
	EXPECT_TRUE(Array.Pop() == TEXT("9"));
	TArray<FString> Moved = MoveTemp(Array);
	EXPECT_TRUE(Array.IsEmpty());
	EXPECT_EQ(Moved.Find(TEXT("3")), 3);
}

TEST(TArrayTest, SortOfPointersComparesWhatTheyPointTo)
{
	int32 Values[] = { 3, 1, 2 };
	TArray<int32*> Pointers = { &Values[0], &Values[1], &Values[2] };
	Pointers.Sort([](const int32& A, const int32& B) { return A < B; });
	EXPECT_EQ(*Pointers[0], 1);
	EXPECT_EQ(*Pointers[2], 3);
}

TEST(TArrayDeathTest, MisuseAsserts)
{
	TArray<FString> Array = { TEXT("a") };
	EXPECT_DEATH((void)Array[1], "out of bounds");
	EXPECT_DEATH(Array.Add(Array[0]), "already comes from the container");
	EXPECT_DEATH(TArray<int32>().Pop(), "out of bounds");
	EXPECT_DEATH(TArray<int32>().Last(), "out of bounds");
	EXPECT_DEATH(Array.RemoveAt(0, 2), "RemoveAt");
}

TEST(TArrayTest, ChangingTheArrayInARangeForIsReported)
{
	const int32 Before = FDebug::GetNumEnsureFailures();
	TArray<int32> Array = { 1, 2, 3, 4 };
	Array.Reserve(100);
	int32 Count = 0;
	for (const int32 Value : Array)
	{
		if (Value == 2 && Count++ == 0)
		{
			Array.RemoveAt(3);
			break;
		}
	}
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), Before) << "leaving the loop at once is fine";
	bool bChanged = false;
	for (const int32 Value : Array)
	{
		if (Value == 1 && !bChanged)
		{
			bChanged = true;
			Array.Add(9);
		}
	}
	EXPECT_EQ(FDebug::GetNumEnsureFailures(), Before + 1);
}

TEST(TMapTest, KeepsInsertionOrderAndReplacesPairsInPlace)
{
	TMap<FString, int32> Map;
	Map.Add(TEXT("b"), 1);
	Map.Add(TEXT("a"), 2);
	Map.Add(TEXT("c"), 3);
	Map.Add(TEXT("B"), 4);
	EXPECT_EQ(Keys(Map), "Bac") << "the last spelling in the first place";
	EXPECT_EQ(Map[TEXT("b")], 4);
	Map.Remove(TEXT("a"));
	Map.Add(TEXT("z"), 5);
	EXPECT_EQ(Keys(Map), "Bzc") << "a freed slot is used first";
	for (auto It = Map.CreateIterator(); It; ++It)
	{
		if (It.Value() == 5)
		{
			It.RemoveCurrent();
		}
	}
	EXPECT_EQ(Keys(Map), "Bc");
	EXPECT_EQ(Map.Find(TEXT("z")), nullptr);
}

TEST(TMapTest, AgreesWithAReferenceOverRandomWork)
{
	std::mt19937 Random(7);
	TMap<int32, FString> Map;
	std::map<int32, std::string> Reference;
	for (int32 Step = 0; Step < 20000; ++Step)
	{
		const int32 Key = static_cast<int32>(Random() % 500);
		if (Random() % 3 == 0)
		{
			EXPECT_EQ(Map.Remove(Key), static_cast<int32>(Reference.erase(Key)));
			continue;
		}
		Map.Add(Key, FString::FromInt(Step));
		Reference[Key] = std::to_string(Step);
	}
	ASSERT_EQ(Map.Num(), static_cast<int32>(Reference.size()));
	for (const auto& [Key, Value] : Reference)
	{
		EXPECT_EQ(Value, TCHAR_TO_UTF8(*Map.FindChecked(Key)));
	}
	TMap<int32, FString> Copy = Map;
	Map.Empty();
	EXPECT_EQ(Copy.Num(), static_cast<int32>(Reference.size()));
}

TEST(TMapDeathTest, MissingKeyAsserts)
{
	TMap<FString, int32> Map;
	EXPECT_DEATH((void)Map[TEXT("absent")], "does not hold the key");
}

TEST(TSetTest, SetAlgebra)
{
	const TSet<FString> A = { TEXT("x"), TEXT("y"), TEXT("X") };
	const TSet<FString> B = { TEXT("Y"), TEXT("z") };
	EXPECT_EQ(A.Num(), 2);
	EXPECT_EQ(A.Union(B).Num(), 3);
	EXPECT_EQ(A.Intersect(B).Num(), 1);
	EXPECT_TRUE(A.Difference(B).Contains(TEXT("x")));
}
