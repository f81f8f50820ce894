#pragma once

#include "CoreMinimal.h"
#include "Framework/Text/TextLayout.h"

/** What an editable text was before each change that the user made, for undo and redo. */
class FTextHistory
{
public:
	/** Older states are forgotten once there are more of them, or more characters in all. */
	static constexpr int32 MaxStates = 200;
	static constexpr int64 MaxCharacters = 8 * 1024 * 1024;

	struct FState
	{
		TArray<FString> Lines;
		FTextLocation Cursor;
		FTextLocation SelectionAnchor;
	};

	enum class EChange : uint8
	{
		/** A letter typed or deleted: those that follow one another at one place are one change. */
		Letter,
		Whole,
	};

	/** Before a change is made to a text that looks like State. */
	void BeforeChange(const FState& State, EChange Change);
	/** After a letter: where the next one has to be typed to belong to the same change. */
	void AfterLetter(const FTextLocation& Cursor) { ContinuesAt = Cursor; }
	/** Takes the last change back. @return false, and State is left alone, if there is none */
	bool Undo(FState& InOutState) { return Move(UndoStates, RedoStates, InOutState); }
	bool Redo(FState& InOutState) { return Move(RedoStates, UndoStates, InOutState); }
	void Clear();

private:
	bool Move(TArray<FState>& From, TArray<FState>& To, FState& InOutState);
	void ForgetOldest();

	TArray<FState> UndoStates;
	TArray<FState> RedoStates;
	TOptional<FTextLocation> ContinuesAt;
};
