#pragma once

#include "Agent/Approval/ToolNames.h"
#include "CoreMinimal.h"

class FJsonObject;
class FKestrelProjectView;
class IKestrelTextWork;
struct FKestrelToolPlan;

/** What the field of a tool's input holds. */
enum class EKestrelFieldType : uint8
{
	Text,
	/** A string with a whole number in it. */
	WholeNumberText,
	/** An array of two line numbers, counted from 1. */
	LineRange,
};

enum class EKestrelPresence : uint8
{
	Required,
	Optional,
};

/** A field of a tool's input. */
struct FKestrelToolField
{
	const TCHAR* Name;
	EKestrelFieldType Type;
	/** For the model that fills it in. */
	const TCHAR* Description;
	EKestrelPresence Presence = EKestrelPresence::Required;
	/** The result when it is missing; null for the tool's own. */
	const TCHAR* MissingError = nullptr;
};

/** Whether the panel leaves a tool's name out of what it shows. */
enum class EKestrelNameInPanel : uint8
{
	Shown,
	Hidden,
};

/** When a tool's result is there. */
enum class EKestrelAnswers : uint8
{
	AtOnce,
	/** The work takes longer than the call, and its result comes by itself. */
	Later,
};

/**
 * A tool: all that the plugin knows of it.
 *
 * Plan reads the input, once, and says what would happen; it changes nothing. Apply does what the plan says, and never
 * sees the input. So what a person approves is what runs.
 */
struct FKestrelTool
{
	const TCHAR* WireName;
	EKestrelToolKind Kind;
	/** What it does, for people, with the target behind it: "Delete", "Run a script". */
	FText Verb;
	/** For the model that uses it. */
	const TCHAR* Description;
	TArray<FKestrelToolField> Fields;
	/** The result when a required field is missing. */
	const TCHAR* MissingFields;
	/** The line in the panel while it works; null for none. */
	const TCHAR* Status;
	EKestrelNameInPanel NameInPanel;
	/** Null when there is nothing to say but that the tool runs. */
	void (*Plan)(FKestrelProjectView& View, FKestrelToolPlan& InOutPlan);
	/**
	 * Null for a tool that works in slices.
	 *
	 * @return the tool's result; a text that begins with "Error:" is a failure
	 */
	FString (*Apply)(const FKestrelToolPlan& Plan);
	EKestrelAnswers Answers = EKestrelAnswers::AtOnce;
	/** Of a tool that may take longer than a frame. It reads the plan at once, and never again. */
	TSharedRef<IKestrelTextWork> (*Begin)(const FKestrelToolPlan& Plan) = nullptr;
};

namespace KestrelTools
{
/** All of them, in the order in which names are compared. */
KESTREL_API const TArray<FKestrelTool>& GetAll();
/** Null for a name that is none; case-insensitive. */
const FKestrelTool* Find(const FString& WireName);
/** The input as a JSON Schema (draft 2020-12): an object with a property for each field. */
KESTREL_API TSharedRef<FJsonObject> MakeInputSchema(const FKestrelTool& Tool);

// Rows by subject, for GetAll.
void AddTurnTools(TArray<FKestrelTool>& OutTools);
void AddFileTools(TArray<FKestrelTool>& OutTools);
void AddBlueprintTools(TArray<FKestrelTool>& OutTools);
void AddSearchTools(TArray<FKestrelTool>& OutTools);

inline const TCHAR* const MissingRequiredFields = TEXT("Error: Missing required fields");
}
