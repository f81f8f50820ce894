#pragma once

#include "CoreMinimal.h"
#include "Misc/OutputDevice.h"

/** A line as it is shown. */
struct FOutputLogLine
{
	FString Text; // "Category: Verbosity: message", of a message with several lines one of them
	ELogVerbosity::Type Verbosity = ELogVerbosity::Log;
	FName Category;
};

/** Keeps the newest lines of the log, whether or not somebody looks at them. Game thread only. */
class FOutputLogHistory final : public FOutputDevice
{
public:
	static constexpr int32 MaxLines = 10000;
	/** Of one line: what is behind is cut off. */
	static constexpr int32 MaxLineLength = 2000;

	FOutputLogHistory();
	virtual ~FOutputLogHistory() override;
	UE_NONCOPYABLE(FOutputLogHistory)

	using FOutputDevice::Serialize;
	virtual void Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category) override;

	/** How many lines there have ever been. Those from GetFirst on are still there. */
	int64 GetEnd() const { return End; }
	int64 GetFirst() const { return End - Lines.Num(); }
	/** Each category that has ever logged something, in the order of the first lines. */
	const TArray<FName>& GetCategories() const { return Categories; }
	const FOutputLogLine& GetLine(int64 Number) const { return Lines[static_cast<int32>(Number % MaxLines)]; }

private:
	void Add(FOutputLogLine&& Line);

	TArray<FOutputLogLine> Lines; // a ring once it is full: line N stands at N % MaxLines
	TArray<FName> Categories;
	int64 End = 0;
};
