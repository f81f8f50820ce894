#pragma once

#include "CoreMinimal.h"
#include "Misc/Optional.h"

/** What a block of a conversation shows. */
enum class EKestrelTranscriptKind : uint8
{
	Status,
	Hint,
	Change,
};

/** A block of a conversation, with all that the panel needs to draw it again. */
struct KESTREL_API FKestrelTranscriptEntry
{
	static FKestrelTranscriptEntry MakeStatus(
		const FString& Message, const FLinearColor& InColor, const FName& InFontStyle, float InFontSize);
	static FKestrelTranscriptEntry MakeHint(const FString& Hint);
	static FKestrelTranscriptEntry MakeChange(const FString& FilePath, FString InBefore, FString InAfter);

	/** The same of a change whose texts are too large to be kept. */
	FKestrelTranscriptEntry WithoutTexts() const;

	/** A line of JSON, without its end. A change with more than MaxChangeLength characters comes without its texts. */
	FString ToLine(int32 MaxChangeLength) const;
	/** What a line says; unset when it is damaged. Fonts and colors are always such that the text can be read. */
	static TOptional<FKestrelTranscriptEntry> FromLine(const FString& Line);

	EKestrelTranscriptKind Kind = EKestrelTranscriptKind::Status;
	FString Text; // what is said; of a change, the path of its file

	// Of a status message.
	FLinearColor Color = FLinearColor::White;
	FName FontStyle;
	float FontSize = 0.0f;

	// Of a change.
	FString Before;
	FString After;
	bool bTextsLeftOut = false; // they were too large to be kept

	bool bIsLogged = true; // false until a panel has shown it
};
