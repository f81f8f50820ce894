#include "Agent/Text/ClosestNames.h"

namespace KestrelClosestNames
{
namespace
{
constexpr int32 MaxLength = 64; // longer names are not compared

struct FCandidate
{
	const FString* Name = nullptr;
	int32 NumEdits = 0;
};

/** More edits than that, and the names have nothing to do with each other. */
int32 GetMaxEdits(const FString& Name)
{
	return FMath::Max(1, Name.Len() / 3);
}
}

int32 CountEdits(const FString& A, const FString& B)
{
	// Three rows of the table of optimal string alignment: swaps look two rows back.
	TArray<int32> Rows[3];
	for (TArray<int32>& Row : Rows)
	{
		Row.SetNumZeroed(B.Len() + 1);
	}
	for (int32 Column = 0; Column <= B.Len(); ++Column)
	{
		Rows[0][Column] = Column;
	}
	for (int32 I = 1; I <= A.Len(); ++I)
	{
		TArray<int32>& Row = Rows[I % 3];
		const TArray<int32>& Above = Rows[(I + 2) % 3];
		const TArray<int32>& TwoAbove = Rows[(I + 1) % 3];
		Row[0] = I;
		for (int32 J = 1; J <= B.Len(); ++J)
		{
			const TCHAR InA = FChar::ToLower(A[I - 1]);
			const TCHAR InB = FChar::ToLower(B[J - 1]);
			Row[J] = FMath::Min(FMath::Min(Above[J], Row[J - 1]) + 1, Above[J - 1] + (InA == InB ? 0 : 1));
			if (I > 1 && J > 1 && InA == FChar::ToLower(B[J - 2]) && FChar::ToLower(A[I - 2]) == InB)
			{
				Row[J] = FMath::Min(Row[J], TwoAbove[J - 2] + 1);
			}
		}
	}
	return Rows[A.Len() % 3][B.Len()];
}

TArray<FString> Find(const FString& Name, const TArray<FString>& Candidates, int32 MaxCount)
{
	TArray<FCandidate> Close;
	if (Name.IsEmpty() || Name.Len() > MaxLength)
	{
		return {};
	}
	const int32 MaxEdits = GetMaxEdits(Name);
	for (int32 Index = 0; Index < FMath::Min(Candidates.Num(), MaxCandidates); ++Index)
	{
		const FString& Candidate = Candidates[Index];
		const int32 Difference = FMath::Abs(Candidate.Len() - Name.Len());
		if (Candidate.Len() > MaxLength)
		{
			continue;
		}
		const bool bContains = Name.Len() > 2 && Candidate.Contains(Name);
		const int32 NumEdits = bContains ? MaxEdits : Difference <= MaxEdits ? CountEdits(Name, Candidate) : MAX_int32;
		if (NumEdits <= MaxEdits)
		{
			Close.Add({ &Candidate, NumEdits });
		}
	}
	Close.Sort([](const FCandidate& A, const FCandidate& B) {
		return A.NumEdits != B.NumEdits ? A.NumEdits < B.NumEdits : A.Name->Compare(*B.Name) < 0;
	});
	TArray<FString> Names;
	for (const FCandidate& Candidate : Close)
	{
		if (Names.Num() == MaxCount)
		{
			break;
		}
		Names.AddUnique(*Candidate.Name);
	}
	return Names;
}
}
