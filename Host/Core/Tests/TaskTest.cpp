#include "Tasks/Task.h"
#include "Async/ParallelFor.h"
#include "Containers/Array.h"
#include "CoreGlobals.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

TEST(TaskTest, RunsOnAnotherThreadAndGivesItsResult)
{
	UE::Tasks::TTask<bool> Task = UE::Tasks::Launch(TEXT("Test"), []() { return IsInGameThread(); });
	while (!Task.IsCompleted())
	{
		std::this_thread::yield();
	}
	EXPECT_FALSE(Task.GetResult());
}

TEST(TaskTest, WaitsForManyThatAreNotBegun)
{
	TArray<UE::Tasks::TTask<int32>> Tasks;
	for (int32 Index = 0; Index < 1000; ++Index)
	{
		Tasks.Add(UE::Tasks::Launch(TEXT("Test"), [Index]() { return Index; }));
	}
	for (int32 Index = 0; Index < Tasks.Num(); ++Index)
	{
		EXPECT_EQ(Tasks[Index].GetResult(), Index);
	}
}

TEST(TaskTest, ATaskSeesThatItIsCanceled)
{
	const TSharedRef<UE::Tasks::FCancellationToken> Token = MakeShared<UE::Tasks::FCancellationToken>();
	UE::Tasks::TTask<int32> Task = UE::Tasks::Launch(TEXT("Test"), [Token]() {
		while (!Token->IsCanceled())
		{
			std::this_thread::yield();
		}
		return 1;
	});
	EXPECT_FALSE(Task.IsCompleted());
	Token->Cancel();
	EXPECT_EQ(Task.GetResult(), 1);
}

TEST(TaskTest, ParallelForDoesEachOnceAlsoInsideATask)
{
	TArray<int32> Counts;
	Counts.SetNumZeroed(1000);
	UE::Tasks::TTask<bool> Task = UE::Tasks::Launch(TEXT("Test"), [&Counts]() {
		ParallelFor(10, [&Counts](int32 Outer) {
			ParallelFor(100, [&Counts, Outer](int32 Inner) { ++Counts[Outer * 100 + Inner]; });
		});
		return true;
	});
	EXPECT_TRUE(Task.GetResult());
	EXPECT_FALSE(Counts.ContainsByPredicate([](int32 Count) { return Count != 1; }));
}
