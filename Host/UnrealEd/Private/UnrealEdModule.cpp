#include "Compiler/BlueprintCompilationManager.h"
#include "Editor.h"
#include "Editor/TransBuffer.h"
#include "Modules/ModuleManager.h"
#include "UObject/Package.h"

/** The editor's own part: what makes and compiles assets. */
class FUnrealEdModule final : public IModuleInterface
{
public:
	void StartupModule() override
	{
		FBlueprintCompilationManager::Initialize();
		GEditor = NewObject<UEditorEngine>(GetTransientPackage());
		GEditor->AddToRoot();
		GEditor->Trans = NewObject<UTransBuffer>(GEditor);
	}
	void ShutdownModule() override
	{
		GEditor->DeinitializeSubsystems();
		GEditor->ResetTransaction(FText());
		GEditor->RemoveFromRoot();
		GEditor = nullptr;
		FBlueprintCompilationManager::Shutdown();
	}
};

IMPLEMENT_MODULE(FUnrealEdModule, UnrealEd)
