#include "Framework/Application/SlateApplication.h"
#include "Framework/Docking/SDockingArea.h"
#include "Framework/Docking/TabManager.h"
#include "HAL/FileManager.h"
#include "ISettingsModule.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "PropertyRows.h"
#include "PropertyValueWidgets.h"
#include "SettingsEditorTestTypes.h"
#include "UObject/UnrealType.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/SWindow.h"

#include <gtest/gtest.h>
#include <string>

void USettingsEditorTestObject::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);
	++NumEdits;
	if (bReset)
	{
		Prey = { TEXT("mouse"), TEXT("vole") };
		bReset = false;
	}
}

namespace SettingsEditorTest
{
class FSettingsEditorTest : public testing::Test
{
protected:
	FSettingsEditorTest()
	{
		Folder = FPaths::CreateTempFilename(UTF8_TO_TCHAR(testing::TempDir().c_str()), TEXT("Settings"), TEXT(""));
		FPaths::SetProjectFilePath(Folder / TEXT("Test.uproject"));
		FConfigCacheIni::InitializeConfigSystem();
		FSlateApplication::Create();
		FModuleManager::Get().LoadModuleChecked(TEXT("SettingsViewer"));
		Object = NewObject<USettingsEditorTestObject>();
		Object->AddToRoot();
		Module.RegisterSettings("Project", "Plugins", "Owl", INVTEXT("Owl"), INVTEXT("About owls"), Object);
		Window = FSlateApplication::Get().AddWindow(SNew(SWindow).ClientSize(FVector2D(800.0, 1200.0)));
		Window->SetContent(FGlobalTabmanager::Get()->GetMainArea());
		Module.ShowViewer("Project", "Plugins", "Owl");
		Tick();
	}
	virtual ~FSettingsEditorTest() override
	{
		FGlobalTabmanager::Get()->CloseAllTabs();
		Module.UnregisterSettings("Project", "Plugins", "Owl");
		Window.Reset();
		FSlateApplication::Shutdown();
		Object->RemoveFromRoot();
		delete GConfig;
		GConfig = nullptr;
		FPaths::SetProjectFilePath(FString());
		IFileManager::Get().DeleteDirectory(*Folder, false, true);
	}

	static void Tick() { FSlateApplication::Get().Tick(); }

	/** Null when nothing on the screen has this name. */
	TSharedPtr<IAccessibleWidget> Find(const TCHAR* Name) const
	{
		return FindIn(FSlateAccessibleWidgetCache::GetAccessibleWidgetChecked(Window.ToSharedRef()), Name);
	}
	static TSharedPtr<IAccessibleWidget> FindIn(const TSharedRef<IAccessibleWidget>& Widget, const TCHAR* Name)
	{
		const bool bIsText = Widget->GetWidgetType() == EAccessibleWidgetType::Text;
		if (Widget->GetWidgetName().Equals(Name) && !bIsText)
		{
			return Widget;
		}
		TSharedPtr<IAccessibleWidget> Found;
		for (int32 Index = 0; Index < Widget->GetNumberOfChildren() && !Found.IsValid(); ++Index)
		{
			Found = FindIn(Widget->GetChildAt(Index).ToSharedRef(), Name);
		}
		return Found;
	}
	void Press(const TCHAR* Name) const
	{
		const TSharedPtr<IAccessibleWidget> Widget = Find(Name);
		ASSERT_TRUE(Widget.IsValid()) << TCHAR_TO_UTF8(Name);
		Widget->AsActivatable()->Activate();
		Tick();
	}
	/** As a person does who types and then goes elsewhere. */
	void Type(const TCHAR* Name, const TCHAR* Text) const
	{
		const TSharedPtr<IAccessibleWidget> Widget = Find(Name);
		ASSERT_TRUE(Widget.IsValid()) << TCHAR_TO_UTF8(Name);
		Widget->AsProperty()->SetValue(Text);
		FSlateApplication::Get().ClearKeyboardFocus();
		Tick();
	}
	std::string ReadSaved() const
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *(Folder / TEXT("Saved/Config/LinuxEditor/SettingsEditorTest.ini")));
		return TCHAR_TO_UTF8(*Text);
	}

	FString Folder;
	USettingsEditorTestObject* Object = nullptr;
	ISettingsModule& Module = FModuleManager::LoadModuleChecked<ISettingsModule>("Settings");
	TSharedPtr<SWindow> Window;
};

TEST_F(FSettingsEditorTest, NestsCategoriesInTheOrderOfTheProperties)
{
	const TUniquePtr<FCategoryNode> Root =
		FPropertyRows::CollectCategories(*USettingsEditorTestObject::StaticClass(), FString());
	ASSERT_EQ(Root->Children.Num(), 1);
	const FCategoryNode& Owl = *Root->Children[0];
	ASSERT_EQ(Owl.Children.Num(), 3);
	EXPECT_TRUE(Owl.Children[1]->Name.Equals(TEXT("Body"))) << "without the spaces around the bar";
	EXPECT_EQ(Owl.Children[1]->Properties.Num(), 3);
	EXPECT_EQ(Owl.Children[1]->Children.Num(), 1);
	const TUniquePtr<FCategoryNode> Filtered =
		FPropertyRows::CollectCategories(*USettingsEditorTestObject::StaticClass(), TEXT("how many"));
	ASSERT_EQ(Filtered->Children.Num(), 1);
	EXPECT_EQ(Filtered->Children[0]->Children.Num(), 1) << "by the tool tip of one property";
}

TEST_F(FSettingsEditorTest, SavesATypedTextAndHidesASecretOne)
{
	Type(TEXT("Nest Key"), TEXT("under the mat"));
	EXPECT_TRUE(Object->NestKey.Equals(TEXT("under the mat")));
	EXPECT_NE(ReadSaved().find("NestKey=under the mat"), std::string::npos);
	EXPECT_FALSE(Find(TEXT("Nest Key"))->AsText()->GetText().Contains(TEXT("mat")));
	EXPECT_EQ(Object->NumEdits, 1);
	Type(TEXT("Nest Key"), TEXT("under the mat"));
	EXPECT_EQ(Object->NumEdits, 1) << "nothing was changed";
	Type(TEXT("Larder Key"), TEXT("beside it"));
	EXPECT_TRUE(Find(TEXT("Larder Key"))->AsText()->GetText().Contains(TEXT("beside")));
}

TEST_F(FSettingsEditorTest, RefusesWhatIsNoNumberAndShowsTheOldOne)
{
	Type(TEXT("Feathers"), TEXT("many"));
	EXPECT_EQ(Object->Feathers, 12);
	Tick();
	EXPECT_TRUE(Find(TEXT("Feathers"))->AsText()->GetText().Equals(TEXT("12")));
	Type(TEXT("Feathers"), TEXT("14"));
	EXPECT_EQ(Object->Feathers, 14);
	EXPECT_FALSE(Find(TEXT("Age"))->IsEnabled()) << "can only be seen";
	EXPECT_FALSE(Find(TEXT("Unseen")).IsValid());
}

TEST_F(FSettingsEditorTest, OffersTheValuesOfAnEnumByTheirDisplayNames)
{
	EXPECT_TRUE(Find(TEXT("Nest"))->AsText()->GetText().Equals(TEXT("In a Tree")));
	Press(TEXT("Nest"));
	EXPECT_FALSE(Find(TEXT("Nowhere")).IsValid());
	Press(TEXT("In a Barn"));
	EXPECT_EQ(Object->Nest, ESettingsEditorTestNest::Barn);
	EXPECT_FALSE(FSlateApplication::Get().AnyMenusVisible());
	EXPECT_NE(ReadSaved().find("Nest=Barn"), std::string::npos);
}

TEST_F(FSettingsEditorTest, EditsTheElementsOfAnArray)
{
	Press(TEXT("Insert before Prey [1]"));
	Type(TEXT("Prey [1]"), TEXT("beetle"));
	EXPECT_EQ(Object->Prey, (TArray<FString>{ TEXT("mouse"), TEXT("beetle"), TEXT("vole") }));
	Press(TEXT("Remove Prey [0]"));
	Press(TEXT("Add to Prey"));
	EXPECT_EQ(Object->Prey, (TArray<FString>{ TEXT("beetle"), TEXT("vole"), TEXT("") }));
	Press(TEXT("Clear Prey"));
	EXPECT_EQ(Object->Prey.Num(), 0);
	EXPECT_FALSE(Find(TEXT("Prey [0]")).IsValid());
}

TEST_F(FSettingsEditorTest, FollowsWhatAnEditChangesElsewhere)
{
	Press(TEXT("Clear Prey"));
	Press(TEXT("Reset"));
	Tick();
	EXPECT_EQ(Object->Prey.Num(), 2);
	EXPECT_TRUE(Find(TEXT("Prey [1]")).IsValid());
	EXPECT_TRUE(Find(TEXT("Reset"))->AsProperty()->GetValue().Equals(TEXT("false"))) << "the box unticks itself";
}

TEST_F(FSettingsEditorTest, LosesThePageWithItsSection)
{
	Module.UnregisterSettings("Project", "Plugins", "Owl");
	Tick();
	Tick();
	EXPECT_FALSE(Find(TEXT("Feathers")).IsValid());
	EXPECT_FALSE(Find(TEXT("Owl")).IsValid());
}

TEST_F(FSettingsEditorTest, ResetsTheWholePage)
{
	Type(TEXT("Feathers"), TEXT("14"));
	Press(TEXT("Reset to Defaults"));
	EXPECT_EQ(Object->Feathers, 12);
}
}
