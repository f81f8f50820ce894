#include "LevelEditor.h"
#include "Modules/ModuleManager.h"

IMPLEMENT_MODULE(FLevelEditorModule, LevelEditor)
