#pragma once

#include "Agent/Tools/ToolTable.h"
#include "CoreMinimal.h"

class FJsonObject;

/** Lines of a file, counted from 1; -1 as the end means the last one. */
struct FKestrelLineRange
{
	int32 StartLine = 1;
	int32 EndLine = -1;
};

namespace KestrelTools
{
/** The result of a call with a NUL in a field, or in a document that the field holds. */
FString MakeNulError(const FKestrelToolField& Field);
}

/**
 * What a tool was given: the fields that its row names and nothing else, so that a field nobody knows cannot change
 * what is shown or done.
 */
class FKestrelToolInput
{
public:
	/**
	 * Reads the fields of a tool's row.
	 *
	 * @return the result of a call that lacks a required field, or holds a string that no tool can use; empty when
	 *         all is well. A number counts as its text.
	 */
	FString Read(const FKestrelTool& Tool, const FJsonObject& Object);

	/** A field's text; empty for an optional one that was not given. */
	const FString& Get(const FKestrelToolField& Field) const;
	/** A field of lines; unset when it was not given. */
	TOptional<FKestrelLineRange> GetLines() const { return Lines; }
	/** A field of lines that does not hold two numbers. */
	bool AreLinesBroken() const { return bLinesBroken; }

private:
	FString ReadText(const FKestrelTool& Tool, const FKestrelToolField& Field, const FJsonObject& Object);
	void ReadLines(const FKestrelToolField& Field, const FJsonObject& Object);

	struct FGivenText
	{
		const TCHAR* FieldName;
		FString Text;
	};
	TArray<FGivenText> Texts;
	TOptional<FKestrelLineRange> Lines;
	bool bLinesBroken = false;
};
