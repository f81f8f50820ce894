#include "OutputLogHistory.h"

#include "CoreGlobals.h"
#include "Misc/OutputDeviceRedirector.h"

FOutputLogHistory::FOutputLogHistory()
{
	GLog->AddOutputDevice(this);
}

FOutputLogHistory::~FOutputLogHistory()
{
	GLog->RemoveOutputDevice(this);
}

void FOutputLogHistory::Serialize(const TCHAR* V, ELogVerbosity::Type Verbosity, const FName& Category)
{
	const FString Level = Verbosity == ELogVerbosity::Log ? FString() : FString(ToString(Verbosity)) + TEXT(": ");
	FString Prefix = Category.ToString() + TEXT(": ") + Level;
	Categories.AddUnique(Category);
	TArray<FString> Texts;
	FString(V).ParseIntoArrayLines(Texts, false);
	for (const FString& Text : Texts)
	{
		Add({ (Prefix + Text).Left(MaxLineLength), Verbosity, Category });
	}
}

void FOutputLogHistory::Add(FOutputLogLine&& Line)
{
	if (Lines.Num() < MaxLines)
	{
		Lines.Add(MoveTemp(Line));
	}
	else
	{
		Lines[static_cast<int32>(End % MaxLines)] = MoveTemp(Line);
	}
	++End;
}
