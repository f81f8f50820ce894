#pragma once

#include "CoreMinimal.h"
#include "HAL/PlatformTime.h"
#include "Misc/FileHelper.h"

class SWidget;

namespace PanelBench
{
/** The file for the figures; empty unless this is a benchmark run. */
FString ReportFile();

/** Some times, in milliseconds. */
class FTimes
{
public:
	template <typename WorkType>
	void Measure(WorkType Work)
	{
		const uint64 Start = FPlatformTime::Cycles64();
		Work();
		Milliseconds.Add(1000.0 * FPlatformTime::ToSeconds64(FPlatformTime::Cycles64() - Start));
	}
	/** @param Share  0 the shortest, 0.5 the median, 1 the longest */
	double At(double Share) const
	{
		TArray<double> Sorted = Milliseconds;
		Sorted.Sort();
		return Sorted[static_cast<int32>(Share * (Sorted.Num() - 1))];
	}

private:
	TArray<double> Milliseconds;
};

/** The figures of a run, "<name> <value>" in each line. */
class FReport
{
public:
	void Add(const TCHAR* Name, double Value) { Text += FString::Printf(TEXT("%s %f\n"), Name, Value); }
	void AddFrames(const TCHAR* Name, const FTimes& Times)
	{
		Add(*(FString(Name) + TEXT("Median")), Times.At(0.5));
		Add(*(FString(Name) + TEXT("Longest1Percent")), Times.At(0.99));
		Add(*(FString(Name) + TEXT("Longest")), Times.At(1.0));
	}
	bool Save() const { return FFileHelper::SaveStringToFile(Text, *ReportFile()); }

private:
	FString Text;
};

void DrawFrame();
TSharedRef<SWidget> OpenPanel();

// While the editor is at work in a large project.
void MeasureListing(FReport& Report);
void MeasureSearch(FReport& Report);
void MeasurePlanning(FReport& Report);
// A conversation that is shown again.
void MeasureRestoring(FReport& Report);
}
