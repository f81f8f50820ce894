#pragma once

#include "CoreMinimal.h"

class FJsonObject;

/** What a tool does to the project, as far as a person who allows it must know. */
enum class EKestrelToolKind : uint8
{
	Read,
	Search,
	Create,
	Change,
	Delete,
	Script,
	Compile,
	ReadBlueprint,
	CreateBlueprint,
	ModifyBlueprint,
	SaveBlueprints,
	Other,
};

/** What a tool use that waits for approval would do. */
struct FKestrelToolPreview
{
	/** Deletions, scripts, and whatever lies outside of the project are to be looked at twice. */
	bool StandsOut() const
	{
		return bOutsideProject || Kind == EKestrelToolKind::Delete || Kind == EKestrelToolKind::Script;
	}

	EKestrelToolKind Kind = EKestrelToolKind::Other;
	/** The file, relative to the project directory or in full; the text that is searched; the tool's name; or nothing.
	 */
	FString Target;
	bool bOutsideProject = false;
	/** Of a replacement: how many places it hits. */
	TOptional<int32> NumPlaces;
	/** Why the tool will fail, in the words of its result; empty when it should not. */
	FString Problem;

	/** Whether the two texts say what changes: those of a file, or a script or a Blueprint's
	 * modifications, which have no text before. Very long ones are
	 * not kept. */
	bool bHasTexts = false;
	FString FilePath; // absolute
	FString Before;
	FString After;
};

/**
 * Looks ahead at tool uses without running them: files are read and edited in memory, with the code that edits them on
 * the disk. Each sees what those before it would leave behind.
 */
class FKestrelToolPreviews
{
public:
	/** @param ToolUses  "tool_use" blocks, in the order in which they would run */
	static TArray<FKestrelToolPreview> Make(const TArray<TSharedPtr<FJsonObject>>& ToolUses);
};
