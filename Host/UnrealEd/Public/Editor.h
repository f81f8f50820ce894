#pragma once

#include "Editor/EditorEngine.h"

/** Null before the editor has started and after it has ended. */
extern UNREALED_API class UEditorEngine* GEditor;
