#include "MainWindow.h"

#include "CoreGlobals.h"
#include "EditMenu.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Commands/GenericCommands.h"
#include "Framework/Commands/UICommandList.h"
#include "Framework/Docking/LayoutExtender.h"
#include "Framework/Docking/SDockingArea.h"
#include "Framework/Docking/TabManager.h"
#include "ISettingsModule.h"
#include "LevelEditor.h"
#include "MainFrameCommands.h"
#include "Misc/App.h"
#include "Misc/CommandLine.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/Parse.h"
#include "Modules/ModuleManager.h"
#include "Styling/AppStyle.h"
#include "ToolMenus.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SWindow.h"

#define LOCTEXT_NAMESPACE "MainWindow"

namespace MainWindow
{
const FName MainMenuName("LevelEditor.MainMenu");
const FName PlayToolBarName("LevelEditor.LevelEditorToolBar.PlayToolBar");
const FName ContentBrowserTab("ContentBrowserTab1");
const FName OutputLogTab("OutputLog");
const FVector2D DefaultSize(1280.0, 720.0);
const FVector2D SmallestSize(320.0, 240.0);

const TCHAR* const WindowSection = TEXT("MainWindow");
const TCHAR* const TabsSection = TEXT("Tabs");

FString GetLayoutFile()
{
	return FConfigCacheIni::GetConfigFilename(TEXT("EditorLayout"));
}

/** False when it was never saved. */
bool ReadVector(const TCHAR* Name, FVector2D& OutVector)
{
	float X = 0.0f;
	float Y = 0.0f;
	const FString File = GetLayoutFile();
	const bool bFound = GConfig->GetFloat(WindowSection, *(FString(Name) + TEXT("X")), X, File) &&
						GConfig->GetFloat(WindowSection, *(FString(Name) + TEXT("Y")), Y, File);
	if (bFound)
	{
		OutVector = FVector2D(X, Y);
	}
	return bFound;
}

void WriteVector(const TCHAR* Name, const FVector2D& Vector)
{
	const FString File = GetLayoutFile();
	GConfig->SetString(WindowSection, *(FString(Name) + TEXT("X")), *FString::SanitizeFloat(Vector.X), File);
	GConfig->SetString(WindowSection, *(FString(Name) + TEXT("Y")), *FString::SanitizeFloat(Vector.Y), File);
}

/** Assets, documents and the log take most of the room; what goes with them stands at the side. */
TSharedRef<FTabManager::FLayout> MakeDefaultLayout()
{
	constexpr float MainShare = 0.65f;
	return FTabManager::NewLayout("LevelEditor_Layout")
		->AddArea(FTabManager::NewPrimaryArea()
					  ->SetOrientation(Orient_Horizontal)
					  ->Split(FTabManager::NewStack()
								  ->SetSizeCoefficient(MainShare)
								  ->AddTab(ContentBrowserTab, ETabState::ClosedTab)
								  ->AddTab(OutputLogTab, ETabState::ClosedTab))
					  ->Split(FTabManager::NewStack()
								  ->SetSizeCoefficient(1.0f - MainShare)
								  ->AddTab("LevelEditorSelectionDetails", ETabState::ClosedTab)));
}

ECheckBoxState IsTabOpen(FName TabName)
{
	return FGlobalTabmanager::Get()->FindExistingLiveTab(TabName).IsValid() ? ECheckBoxState::Checked
																			: ECheckBoxState::Unchecked;
}

/** The command opens the tab, or brings it to the front. */
void MapTab(FUICommandList& Commands, const TSharedPtr<FUICommandInfo>& Command, FName TabName)
{
	Commands.MapAction(
		Command, FUIAction(FExecuteAction::CreateLambda([TabName] { FGlobalTabmanager::Get()->TryInvokeTab(TabName); }),
					 FCanExecuteAction(), FGetActionCheckState::CreateStatic(&IsTabOpen, TabName)));
}

void CloseMainWindow()
{
	const TArray<TSharedRef<SWindow>> Windows = FSlateApplication::Get().GetTopLevelWindows();
	for (const TSharedRef<SWindow>& Each : Windows)
	{
		FSlateApplication::Get().RequestDestroyWindow(Each);
	}
}

TSharedPtr<SWidget> FindFocusable(const TSharedRef<SWidget>& Widget)
{
	TSharedPtr<SWidget> Found = Widget->SupportsKeyboardFocus() ? Widget.ToSharedPtr() : nullptr;
	FChildren& Children = *Widget->GetChildren();
	for (int32 Index = 0; Index < Children.Num() && !Found.IsValid(); ++Index)
	{
		Found = FindFocusable(Children.GetChildAt(Index));
	}
	return Found;
}
}

FMainWindow::FMainWindow()
	: Commands(MakeShared<FUICommandList>())
{
}

FMainWindow::~FMainWindow() = default;

void FMainWindow::RegisterMenus()
{
	FGenericCommands::Register();
	FMainFrameCommands::Register();
	MapCommands();
	FillMenus();
}

void FMainWindow::MapCommands()
{
	const FMainFrameCommands& All = FMainFrameCommands::Get();
	Commands->MapAction(All.Exit, FExecuteAction::CreateStatic(&MainWindow::CloseMainWindow));
	Commands->MapAction(All.OpenProjectSettings, FExecuteAction::CreateLambda([] {
		FModuleManager::LoadModuleChecked<ISettingsModule>("Settings").ShowViewer("Project", "Plugins", NAME_None);
	}));
	FEditMenu::MapCommands(Commands.Get());
	MainWindow::MapTab(Commands.Get(), All.OpenContentBrowser, MainWindow::ContentBrowserTab);
	MainWindow::MapTab(Commands.Get(), All.OpenOutputLog, MainWindow::OutputLogTab);
}

void FMainWindow::FillMenus() const
{
	const FMainFrameCommands& All = FMainFrameCommands::Get();
	const FToolMenuOwnerScoped OwnerScoped("MainFrame");
	UToolMenus* const Menus = UToolMenus::Get();
	Menus->RegisterMenu(MainWindow::PlayToolBarName, NAME_None, EMultiBoxType::ToolBar);
	UToolMenu* const Bar = Menus->RegisterMenu(MainWindow::MainMenuName, NAME_None, EMultiBoxType::MenuBar);
	const auto AddMenu = [Bar](FName Name, const FText& Label) {
		return Bar->AddSubMenu(FToolMenuOwner("MainFrame"), NAME_None, Name, Label);
	};
	AddMenu("File", LOCTEXT("FileMenu", "File"))
		->FindOrAddSection("Exit")
		.AddMenuEntryWithCommandList(All.Exit, Commands);
	UToolMenu* const EditMenu = AddMenu("Edit", LOCTEXT("EditMenu", "Edit"));
	FEditMenu::Fill(*EditMenu, Commands);
	EditMenu->FindOrAddSection("Configuration", LOCTEXT("Configuration", "Configuration"))
		.AddMenuEntryWithCommandList(All.OpenProjectSettings, Commands);
	FToolMenuSection& Tabs = AddMenu("Window", LOCTEXT("WindowMenu", "Window"))->FindOrAddSection("General");
	Tabs.AddMenuEntryWithCommandList(All.OpenContentBrowser, Commands);
	Tabs.AddMenuEntryWithCommandList(All.OpenOutputLog, Commands);
}

TSharedRef<SWindow> FMainWindow::Create()
{
	UToolMenus* const Menus = UToolMenus::Get();
	FVector2D Size = MainWindow::DefaultSize;
	FVector2D Position(0.0, 0.0);
	MainWindow::ReadVector(TEXT("Size"), Size);
	int32 Width = static_cast<int32>(Size.X);
	int32 Height = static_cast<int32>(Size.Y);
	FParse::Value(FCommandLine::Get(), TEXT("-ResX="), Width);
	FParse::Value(FCommandLine::Get(), TEXT("-ResY="), Height);
	Size = FVector2D(
		FMath::Max<double>(Width, MainWindow::SmallestSize.X), FMath::Max<double>(Height, MainWindow::SmallestSize.Y));
	const bool bHasPosition = MainWindow::ReadVector(TEXT("Position"), Position);
	MenuBar = Menus->GenerateWidget(MainWindow::MainMenuName, FToolMenuContext());
	// clang-format off
	Window = SNew(SWindow)
		.Title(FText::Format(LOCTEXT("Title", "{0} - Host Editor"), FText::FromString(FApp::GetProjectName())))
		.AutoCenter(bHasPosition ? EAutoCenter::None : EAutoCenter::PreferredWorkArea)
		.ScreenPosition(Position)
		.ClientSize(Size)
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Title")).Padding(4.0f, 2.0f)
				[
					MenuBar.ToSharedRef()
				]
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Panel")).Padding(4.0f, 2.0f)
				[
					Menus->GenerateWidget(MainWindow::PlayToolBarName, FToolMenuContext())
				]
			]
			+ SVerticalBox::Slot()
			.FillHeight(1.0f)
			[
				FGlobalTabmanager::Get()->GetMainArea()
			]
		];
	// clang-format on
	FGlobalTabmanager::Get()->SetRootWindow(Window.ToSharedRef());
	FSlateApplication& Application = FSlateApplication::Get();
	Application.SetUnhandledKeyDownEventHandler(FOnKeyEvent::CreateRaw(this, &FMainWindow::OnKeyDown));
	Application.SetUnhandledKeyUpEventHandler(FOnKeyEvent::CreateRaw(this, &FMainWindow::OnKeyUp));
	return Window.ToSharedRef();
}

FReply FMainWindow::OnKeyDown(const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	const bool bIsAlt = Key == EKeys::LeftAlt;
	bAltAlone = bIsAlt && (bAltAlone || !InKeyEvent.IsRepeat());
	const bool bLeavesBar = Key == EKeys::Escape && MenuBar->HasFocusedDescendants();
	if (Key == EKeys::F10 || bLeavesBar)
	{
		ToggleMenuBar();
		return FReply::Handled();
	}
	return Commands->ProcessCommandBindings(InKeyEvent) ? FReply::Handled() : FReply::Unhandled();
}

FReply FMainWindow::OnKeyUp(const FKeyEvent& InKeyEvent)
{
	// Another key may have been pressed with it, which a widget has handled.
	const bool bTapped = bAltAlone && InKeyEvent.GetKey() == EKeys::LeftAlt &&
						 FSlateApplication::Get().GetLastPressedKey() == EKeys::LeftAlt;
	bAltAlone = false;
	if (!bTapped)
	{
		return FReply::Unhandled();
	}
	ToggleMenuBar();
	return FReply::Handled();
}

void FMainWindow::ToggleMenuBar()
{
	FSlateApplication& Application = FSlateApplication::Get();
	const bool bWasInMenu = Application.AnyMenusVisible();
	Application.DismissAllMenus();
	if (MenuBar->HasFocusedDescendants())
	{
		const TSharedPtr<SWidget> Before = FocusedBefore.Pin();
		if (!Before.IsValid() || !Application.SetKeyboardFocus(Before, EFocusCause::OtherWidgetLostFocus))
		{
			Application.ClearKeyboardFocus();
		}
		return;
	}
	if (!bWasInMenu)
	{
		FocusedBefore = Application.GetKeyboardFocusedWidget();
		Application.SetKeyboardFocus(MainWindow::FindFocusable(MenuBar.ToSharedRef()), EFocusCause::Navigation);
	}
}

void FMainWindow::RestoreTabs() const
{
	FString Saved;
	GConfig->GetString(MainWindow::TabsSection, TEXT("Layout"), Saved, MainWindow::GetLayoutFile());
	const TSharedPtr<FTabManager::FLayout> SavedLayout = FTabManager::FLayout::NewFromString(Saved);
	const TSharedRef<FTabManager::FLayout> Layout =
		SavedLayout.IsValid() ? SavedLayout.ToSharedRef() : MainWindow::MakeDefaultLayout();
	FLayoutExtender Extender;
	FModuleManager::LoadModuleChecked<FLevelEditorModule>("LevelEditor")
		.OnRegisterLayoutExtensions()
		.Broadcast(Extender);
	Layout->ProcessExtensions(Extender);
	FGlobalTabmanager::Get()->RestoreMainArea(Layout.Get());
}

void FMainWindow::SaveLayout() const
{
	GConfig->SetString(MainWindow::TabsSection, TEXT("Layout"), *FGlobalTabmanager::Get()->PersistLayout()->ToString(),
		MainWindow::GetLayoutFile());
	MainWindow::WriteVector(TEXT("Size"), Window->GetClientSizeInScreen());
	MainWindow::WriteVector(TEXT("Position"), Window->GetPositionInScreen());
}

#undef LOCTEXT_NAMESPACE
