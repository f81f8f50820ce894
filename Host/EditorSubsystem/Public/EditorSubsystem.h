#pragma once

#include "UObject/Object.h"
#include "EditorSubsystem.generated.h"

/** A service of the editor: one object of each class, made when somebody asks for it. See GEditor. */
UCLASS(Abstract, Transient)
class EDITORSUBSYSTEM_API UEditorSubsystem : public UObject
{
	GENERATED_BODY()

public:
	/** Before anybody gets it. */
	virtual void Initialize() {}
	/** When the editor ends. */
	virtual void Deinitialize() {}
};
