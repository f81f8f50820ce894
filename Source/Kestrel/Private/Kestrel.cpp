#include "Kestrel.h"

#include "Agent/Agent.h"
#include "Agent/Backend/HTTPAPI.h"
#include "Agent/Files/NativeFile.h"
#include "Agent/Project/CompilationManager.h"
#include "Agent/RunStatus.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Commands/UIAction.h"
#include "Framework/Commands/UICommandList.h"
#include "Framework/Docking/LayoutExtender.h"
#include "Framework/Docking/TabManager.h"
#include "ISettingsModule.h"
#include "KestrelCommands.h"
#include "KestrelLog.h"
#include "KestrelProjectSettings.h"
#include "KestrelSettings.h"
#include "KestrelStage.h"
#include "LevelEditor.h"
#include "Mcp/McpServer.h"
#include "Misc/App.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "Templates/UniquePtr.h"
#include "Textures/SlateIcon.h"
#include "ToolMenu.h"
#include "ToolMenuEntry.h"
#include "ToolMenuSection.h"
#include "ToolMenus.h"
#include "UObject/Class.h"
#include "Widget/KestrelStyle.h"
#include "Widget/SKestrelWidget.h"
#include "Widget/Status/KestrelNotifier.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/SNullWidget.h"

#ifndef KESTREL_API_URL
// A name that no one can own (RFC 2606). A build for a real service defines its own, see Kestrel.Build.cs.
#define KESTREL_API_URL TEXT("api.kestrel.example/v1")
#endif

#define LOCTEXT_NAMESPACE "FKestrelModule"

DEFINE_LOG_CATEGORY(LogKestrel);

static const FName KestrelTabName("Kestrel");

FString FKestrelModule::StageApiUrl;
FString FKestrelModule::StageApiKey;
bool FKestrelModule::bStageRefused = false;

namespace KestrelModule
{
const FName SettingsContainer("Project");
const FName SettingsCategory("Plugins");
const FName SettingsSection("Kestrel");
const FName ProjectSettingsSection("KestrelProject");

/** Beside the details, at the side of the level editor: a tab that no layout knows would float. */
void ExtendLayout(FLayoutExtender& Extender)
{
	// It opens when somebody wants it.
	Extender.ExtendLayout(FTabId("LevelEditorSelectionDetails"), ELayoutExtensionPosition::After,
		FTabManager::FTab(KestrelTabName, ETabState::ClosedTab));
}

/** The user's key is in it. The engine creates it like any file, for everybody to read where the user's mask allows. */
void RestrictSettingsFile()
{
	KestrelNativeFile::RestrictToOwner(
		FPaths::ConvertRelativePathToFull(GetDefault<UKestrelSettings>()->GetClass()->GetConfigName()));
}
}

// Here its members are known as a whole.
FKestrelModule::FKestrelModule() = default;
FKestrelModule::~FKestrelModule() = default;

void FKestrelModule::StartupModule()
{
	RegisterSettings();
	KestrelModule::RestrictSettingsFile();
	ReadStageConfiguration();
	FKestrelStyle::Initialize();
	FKestrelCommands::Register();
	// A commandlet, cooking for instance, has no windows.
	bHasUserInterface = FSlateApplication::IsInitialized();
	if (bHasUserInterface)
	{
		RegisterUserInterface();
	}
	FAgent::Get().Initialize();
	FKestrelMcpServer::Get().Initialize();
	ServerChangedHandle = FKestrelMcpServer::Get().OnChanged.AddRaw(this, &FKestrelModule::ShowCallThatAwaitsApproval);
	FKestrelRunStatus::Get().Start();
}

void FKestrelModule::ShutdownModule()
{
	FKestrelMcpServer::Get().OnChanged.Remove(ServerChangedHandle);
	FKestrelMcpServer::Get().Shutdown();
	// Whoever quits has no use for news.
	Notifier.Reset();
	if (bHasUserInterface)
	{
		UToolMenus::UnRegisterStartupCallback(this);
		UToolMenus::UnregisterOwner(this);
		// Its widgets are this module's code, and paint with the brushes of the style set.
		ClosePanel();
	}
	FKestrelStyle::Shutdown();
	// The HTTP module outlives this one and would call back into it.
	FHTTPAPI::Get().AbandonRequests();
	FHTTPAPI::Get().ClearRequestId();
	FAgent::Get().DropTurn();
	FKestrelRunStatus::Get().Stop();
	FCompilationManager::Shutdown();
	if (bHasUserInterface)
	{
		// Toolbars are rebuilt a frame later, and hold the list until then.
		PluginCommands->UnmapAction(FKestrelCommands::Get().OpenPluginWindow);
		PluginCommands.Reset();
	}
	FKestrelCommands::Unregister();
	if (bHasUserInterface)
	{
		FGlobalTabmanager::Get()->UnregisterNomadTabSpawner(KestrelTabName);
		if (FLevelEditorModule* LevelEditor = FModuleManager::GetModulePtr<FLevelEditorModule>("LevelEditor"))
		{
			LevelEditor->OnRegisterLayoutExtensions().Remove(LayoutHandle);
		}
	}
	UnregisterSettings();
	KestrelModule::RestrictSettingsFile();
}

void FKestrelModule::RegisterUserInterface()
{
	PluginCommands = MakeShared<FUICommandList>();
	PluginCommands->MapAction(FKestrelCommands::Get().OpenPluginWindow,
		FExecuteAction::CreateRaw(this, &FKestrelModule::PluginButtonClicked), FCanExecuteAction());

	UToolMenus::RegisterStartupCallback(
		FSimpleMulticastDelegate::FDelegate::CreateRaw(this, &FKestrelModule::RegisterMenus));
	FGlobalTabmanager::Get()
		->RegisterNomadTabSpawner(KestrelTabName, FOnSpawnTab::CreateRaw(this, &FKestrelModule::OnSpawnPluginTab))
		.SetDisplayName(LOCTEXT("FKestrelTabTitle", "Kestrel"))
		.SetMenuType(ETabSpawnerMenuType::Hidden)
		.SetIcon(FSlateIcon(FKestrelStyle::GetStyleSetName(), "Kestrel.Icon"));
	Notifier = MakeUnique<FKestrelNotifier>(KestrelTabName);
	FLevelEditorModule& LevelEditor = FModuleManager::LoadModuleChecked<FLevelEditorModule>("LevelEditor");
	LayoutHandle = LevelEditor.OnRegisterLayoutExtensions().AddStatic(&KestrelModule::ExtendLayout);
}

void FKestrelModule::ClosePanel()
{
	if (const TSharedPtr<SDockTab> OpenTab = FGlobalTabmanager::Get()->FindExistingLiveTab(KestrelTabName))
	{
		OpenTab->RequestCloseTab();
		// A tab may fade out, or be held by a layout.
		OpenTab->SetContent(SNullWidget::NullWidget);
	}
}

void FKestrelModule::RegisterSettings()
{
	if (ISettingsModule* SettingsModule = FModuleManager::GetModulePtr<ISettingsModule>("Settings"))
	{
		SettingsModule->RegisterSettings(KestrelModule::SettingsContainer, KestrelModule::SettingsCategory,
			KestrelModule::SettingsSection, LOCTEXT("SettingsName", "Kestrel"),
			LOCTEXT("SettingsDescription", "Configure My Plugin settings"), GetMutableDefault<UKestrelSettings>());
		SettingsModule->RegisterSettings(KestrelModule::SettingsContainer, KestrelModule::SettingsCategory,
			KestrelModule::ProjectSettingsSection, LOCTEXT("ProjectSettingsName", "Kestrel (Project)"),
			LOCTEXT("ProjectSettingsDescription", "What everybody who works on this project shares"),
			GetMutableDefault<UKestrelProjectSettings>());
	}
}

void FKestrelModule::UnregisterSettings()
{
	if (ISettingsModule* SettingsModule = FModuleManager::GetModulePtr<ISettingsModule>("Settings"))
	{
		SettingsModule->UnregisterSettings(
			KestrelModule::SettingsContainer, KestrelModule::SettingsCategory, KestrelModule::SettingsSection);
		SettingsModule->UnregisterSettings(
			KestrelModule::SettingsContainer, KestrelModule::SettingsCategory, KestrelModule::ProjectSettingsSection);
	}
}

void FKestrelModule::ReadStageConfiguration()
{
	const FKestrelStage Stage = FKestrelStage::Read(FPaths::ProjectConfigDir() / TEXT("DefaultPlugin.ini"));
	StageApiUrl = Stage.ApiUrl;
	StageApiKey = Stage.ApiKey;
	bStageRefused = Stage.bIsRefused;
}

FString FKestrelModule::GetApiKey()
{
	// A stage brings its own credential, which wins over the user's.
	if (!StageApiKey.IsEmpty())
	{
		return StageApiKey;
	}
	const UKestrelSettings* Settings = GetDefault<UKestrelSettings>();
	return Settings ? Settings->ApiKey : FString();
}

void FKestrelModule::OpenSettings()
{
	FModuleManager::LoadModuleChecked<ISettingsModule>("Settings")
		.ShowViewer(KestrelModule::SettingsContainer, KestrelModule::SettingsCategory, KestrelModule::SettingsSection);
}

FString FKestrelModule::GetApiUrl()
{
	return StageApiUrl.IsEmpty() ? FString(KESTREL_API_URL) : StageApiUrl;
}

FString FKestrelModule::GetApiHost()
{
	const FString Host = GetApiUrl();
	int32 Path = INDEX_NONE;
	return Host.FindChar(TEXT('/'), Path) ? Host.Left(Path) : Host;
}

void FKestrelModule::PluginButtonClicked()
{
	FGlobalTabmanager::Get()->TryInvokeTab(KestrelTabName);
}

void FKestrelModule::ShowCallThatAwaitsApproval()
{
	const bool bIsAsked = !FKestrelMcpServer::Get().GetCalls().GetAwaitingApproval().IsEmpty();
	if (bIsAsked && bHasUserInterface && !FApp::IsUnattended() &&
		!FGlobalTabmanager::Get()->FindExistingLiveTab(KestrelTabName).IsValid())
	{
		PluginButtonClicked();
	}
}

void FKestrelModule::RegisterMenus()
{
	FToolMenuOwnerScoped OwnerScoped(this);

	UToolMenu* WindowMenu = UToolMenus::Get()->ExtendMenu("LevelEditor.MainMenu.Window");
	WindowMenu->FindOrAddSection("WindowLayout")
		.AddMenuEntryWithCommandList(FKestrelCommands::Get().OpenPluginWindow, PluginCommands);

	UToolMenu* PlayToolBar = UToolMenus::Get()->ExtendMenu("LevelEditor.LevelEditorToolBar.PlayToolBar");
	FToolMenuEntry& Button = PlayToolBar->FindOrAddSection("PluginTools")
								 .AddEntry(FToolMenuEntry::InitToolBarButton(FKestrelCommands::Get().OpenPluginWindow,
									 LOCTEXT("Kestrel_Override", "Kestrel"), LOCTEXT("Kestrel_Override", "Kestrel"),
									 FSlateIcon(FKestrelStyle::GetStyleSetName(), "Kestrel.Icon", "Kestrel.Icon.Large"),
									 NAME_None, FName("LevelToolbarKestrel")));
	Button.SetCommandList(PluginCommands);
}

TSharedRef<SDockTab> FKestrelModule::OnSpawnPluginTab(const FSpawnTabArgs& SpawnTabArgs)
{
	// clang-format off
	return SNew(SDockTab)
		.TabRole(ETabRole::NomadTab)
		[
			SNew(SKestrelWidget).AccessibleText(LOCTEXT("Conversation", "Conversation"))
		];
	// clang-format on
}

#undef LOCTEXT_NAMESPACE

IMPLEMENT_MODULE(FKestrelModule, Kestrel)
