#pragma once

#include "CoreMinimal.h"

/**
 * What becomes slow in projects with many or large Blueprints. Each answers with what it came to, in words. What a
 * function makes itself is in proportion to the size, which is 1 for a large game.
 */
namespace KestrelBlueprintBench
{
/** All of a Blueprint with 2,000 nodes and 10,000 links. */
FString ReadBlueprint(int32 Run, double Size);
/** The same with ten times as many nodes, as the editor reads them in between its frames. */
FString ReadInSteps(int32 Run, double Size);
/** One Blueprint by its name, among all of the project. */
FString LookUpBlueprint(int32 Run, double Size);
/** The content as the editor looks at it when it starts. */
FString ScanContent(int32 Run, double Size);

/** A name looked for in all Blueprints of the project, which are on the disk or in memory as they are prepared. */
FString FindInBlueprints(int32 Run, double Size);
void PrepareFindInFiles(int32 Run, double Size);
void PrepareFindAgain(int32 Run, double Size);
void PrepareFindInMemory(int32 Run, double Size);
/** The same as the editor does it in between its frames. */
FString FindInSteps(int32 Run, double Size);
/** Of the run before, in seconds: no frame takes less. */
double GetLongestStep();

/** A document with 1,000 variables and 200 functions of 20 nodes applied to an empty Blueprint. */
FString ModifyBlueprint(int32 Run, double Size);
void PrepareModify(int32 Run, double Size);
/** All of it undone. */
FString UndoModification(int32 Run, double Size);
void PrepareUndo(int32 Run, double Size);
}
