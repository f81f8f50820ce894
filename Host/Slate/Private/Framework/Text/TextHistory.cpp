#include "Framework/Text/TextHistory.h"

namespace TextHistory
{
static int64 CountCharacters(const TArray<FTextHistory::FState>& States)
{
	int64 Sum = 0;
	for (const FTextHistory::FState& State : States)
	{
		for (const FString& Line : State.Lines)
		{
			Sum += Line.Len();
		}
	}
	return Sum;
}
}

void FTextHistory::BeforeChange(const FState& State, EChange Change)
{
	const bool bContinues = Change == EChange::Letter && ContinuesAt.IsSet() && ContinuesAt.GetValue() == State.Cursor;
	ContinuesAt.Reset();
	RedoStates.Empty();
	if (bContinues)
	{
		return;
	}
	UndoStates.Add(State);
	ForgetOldest();
}

void FTextHistory::ForgetOldest()
{
	while (UndoStates.Num() > MaxStates ||
		   (UndoStates.Num() > 1 && TextHistory::CountCharacters(UndoStates) > MaxCharacters))
	{
		UndoStates.RemoveAt(0);
	}
}

bool FTextHistory::Move(TArray<FState>& From, TArray<FState>& To, FState& InOutState)
{
	ContinuesAt.Reset();
	if (From.Num() == 0)
	{
		return false;
	}
	To.Add(InOutState);
	InOutState = From.Last();
	From.RemoveAt(From.Num() - 1);
	return true;
}

void FTextHistory::Clear()
{
	UndoStates.Empty();
	RedoStates.Empty();
	ContinuesAt.Reset();
}
