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

TEST(TArrayTest, RemovesOneWithAndWithoutKeepingTheOrder)
{
	TArray<int32> Array = { 1, 2, 3, 2, 5 };
	EXPECT_EQ(Array.RemoveSingle(2), 1);
	EXPECT_EQ(Array, (TArray<int32>{ 1, 3, 2, 5 }));
	EXPECT_EQ(Array.RemoveSingle(9), 0);
	Array.RemoveAtSwap(0);
	EXPECT_EQ(Array, (TArray<int32>{ 5, 3, 2 }));
	Array.RemoveAtSwap(2);
	EXPECT_EQ(Array, (TArray<int32>{ 5, 3 }));
	EXPECT_EQ(Array.GetTypeSize(), 4u);
	EXPECT_EQ(Array.GetAllocatedSize(), 4u * static_cast<SIZE_T>(Array.Max()));
}

TEST(TArrayTest, ElementsAreFoundByTheirKey)
{
	struct FNamed
	{
		FString Name;
		int32 Number;
		bool operator==(const FString& Key) const { return Name == Key; }
	};
	TArray<FNamed> Array = { { TEXT("a"), 1 }, { TEXT("b"), 2 } };
	ASSERT_NE(Array.FindByKey(FString(TEXT("b"))), nullptr);
	Array.FindByKey(FString(TEXT("b")))->Number = 3;
	const TArray<FNamed>& Constant = Array;
	EXPECT_EQ(Constant.FindByKey(FString(TEXT("b")))->Number, 3);
	EXPECT_EQ(Constant.FindByKey(FString(TEXT("c"))), nullptr);
}

TEST(TMapTest, IsSortedByKeyOrValueAndSearchedByValue)
{
	TMap<FString, int32> Map = { { TEXT("b"), 1 }, { TEXT("c"), 3 }, { TEXT("a"), 2 } };
	const auto List = [&Map]() {
		FString Keys;
		for (const auto& Pair : Map)
		{
			Keys += Pair.Key;
		}
		return Keys;
	};
	Map.KeySort([](const FString& A, const FString& B) { return A < B; });
	EXPECT_TRUE(List().Equals(TEXT("abc")));
	Map.ValueSort([](int32 A, int32 B) { return A > B; });
	EXPECT_TRUE(List().Equals(TEXT("cab")));
	EXPECT_EQ(Map.FindRef(TEXT("a")), 2) << "still found by its key";
	ASSERT_NE(Map.FindKey(3), nullptr);
	EXPECT_TRUE(Map.FindKey(3)->Equals(TEXT("c")));
	EXPECT_EQ(Map.FindKey(4), nullptr);
}

TEST(TSetTest, AnIdLeadsToItsElement)
{
	const TSet<FString> Set = { TEXT("x"), TEXT("y") };
	EXPECT_TRUE(Set[Set.FindId(TEXT("Y"))].Equals(TEXT("y")));
	EXPECT_FALSE(Set.FindId(TEXT("z")).IsValidId());
}
