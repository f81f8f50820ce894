#include "HAL/FileManager.h"
#include "HostPropertyEdit.h"
#include "ISettingsModule.h"
#include "ISettingsViewer.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Modules/ModuleManager.h"
#include "SettingsTestTypes.h"
#include "UObject/UnrealType.h"

#include <gtest/gtest.h>
#include <string>

void USettingsTestObject::PostEditChangeProperty(FPropertyChangedEvent& PropertyChangedEvent)
{
	Super::PostEditChangeProperty(PropertyChangedEvent);
	Changes.Add({ PropertyChangedEvent.GetPropertyName(), PropertyChangedEvent.GetMemberPropertyName(),
		PropertyChangedEvent.ChangeType });
	if (PropertyChangedEvent.GetPropertyName() == GET_MEMBER_NAME_CHECKED(USettingsTestObject, bResetWords) &&
		bResetWords)
	{
		Words = { TEXT("one"), TEXT("two") };
		bResetWords = false;
		SaveConfig();
	}
}

namespace SettingsTest
{
class FSettingsTest : public testing::Test
{
protected:
	void SetUp() override
	{
		Folder = FPaths::CreateTempFilename(UTF8_TO_TCHAR(testing::TempDir().c_str()), TEXT("Settings"), TEXT(""));
		FPaths::SetProjectFilePath(Folder / TEXT("Test.uproject"));
		FConfigCacheIni::InitializeConfigSystem();
		Object = NewObject<USettingsTestObject>();
		Object->AddToRoot();
	}

	void TearDown() override
	{
		Module.UnregisterSettings(TEXT("Project"), TEXT("Plugins"), TEXT("Test"));
		Object->RemoveFromRoot();
		delete GConfig;
		GConfig = nullptr;
		FPaths::SetProjectFilePath(FString());
		IFileManager::Get().DeleteDirectory(*Folder, false, true);
	}

	TSharedPtr<ISettingsSection> Register(UObject* SettingsObject)
	{
		return Module.RegisterSettings(
			TEXT("Project"), TEXT("Plugins"), TEXT("Test"), INVTEXT("Test Page"), INVTEXT("For tests"), SettingsObject);
	}

	std::string Read(const TCHAR* File) const
	{
		FString Text;
		FFileHelper::LoadFileToString(Text, *(Folder / File));
		return TCHAR_TO_UTF8(*Text);
	}

	FString Folder;
	USettingsTestObject* Object = nullptr;
	ISettingsModule& Module = FModuleManager::LoadModuleChecked<ISettingsModule>(TEXT("Settings"));
};

const TCHAR* const SavedFile = TEXT("Saved/Config/LinuxEditor/SettingsTest.ini");

std::string Join(const TArray<FString>& Texts)
{
	return TCHAR_TO_UTF8(*FString::Join(Texts, TEXT(" ")));
}

struct FViewer : ISettingsViewer
{
	void ShowSettings(const FName& CategoryName, const FName& SectionName) override
	{
		Shown = CategoryName.ToString() + TEXT("/") + SectionName.ToString();
	}
	FString Shown;
};
}

using namespace SettingsTest;

TEST_F(FSettingsTest, RegisteringTheSamePathReplacesTheSection)
{
	const TSharedPtr<ISettingsSection> First = Register(Object);
	const TSharedPtr<ISettingsSection> Second = Register(GetMutableDefault<USettingsTestProjectObject>());
	const TSharedPtr<ISettingsContainer> Container = Module.GetContainer(TEXT("Project"));
	TArray<TSharedPtr<ISettingsSection>> Sections;
	ASSERT_TRUE(Container->GetCategory(TEXT("Plugins")));
	EXPECT_EQ(Container->GetCategory(TEXT("Plugins"))->GetSections(Sections), 1);
	EXPECT_EQ(Sections[0], Second);
	EXPECT_EQ(Second->GetSettingsObject().Get(), GetDefault<USettingsTestProjectObject>());
	EXPECT_EQ(Second->GetCategory().Pin()->GetName(), FName(TEXT("Plugins")));
	EXPECT_TRUE(Second->GetDisplayName().ToString().Equals(TEXT("Test Page")));

	Module.UnregisterSettings(TEXT("Project"), TEXT("Plugins"), TEXT("Test"));
	Module.UnregisterSettings(TEXT("Nowhere"), TEXT("Plugins"), TEXT("Test"));
	TArray<TSharedPtr<ISettingsCategory>> Categories;
	EXPECT_EQ(Container->GetCategories(Categories), 0);
	EXPECT_FALSE(Module.RegisterSettings(
		TEXT("Project"), NAME_None, TEXT("Test"), FText::GetEmpty(), FText::GetEmpty(), Object));
}

TEST_F(FSettingsTest, SectionsDoNotKeepTheirObject)
{
	USettingsTestObject* Short = NewObject<USettingsTestObject>();
	const TSharedPtr<ISettingsSection> Section = Register(Short);
	EXPECT_TRUE(Section->CanEdit());
	CollectGarbage(GARBAGE_COLLECTION_KEEPFLAGS);
	EXPECT_FALSE(Section->CanEdit());
	EXPECT_FALSE(Section->Save());
	EXPECT_FALSE(FHostPropertyEdit::SetSectionValue(*Section, TEXT("Key"), TEXT("x")).IsEmpty());
}

TEST_F(FSettingsTest, AnEditTellsTheObjectAndIsSaved)
{
	const TSharedPtr<ISettingsSection> Section = Register(Object);
	EXPECT_TRUE(FHostPropertyEdit::SetSectionValue(*Section, TEXT("Key"), TEXT("my key")).IsEmpty());
	ASSERT_EQ(Object->Changes.Num(), 1);
	EXPECT_EQ(Object->Changes[0].Property, FName(TEXT("Key")));
	EXPECT_EQ(Object->Changes[0].ChangeType, EPropertyChangeType::ValueSet);
	EXPECT_NE(Read(SavedFile).find("Key=my key"), std::string::npos) << Read(SavedFile);
}

TEST_F(FSettingsTest, OnModifiedDecidesWhetherAnEditIsSaved)
{
	const TSharedPtr<ISettingsSection> Section = Register(Object);
	bool bSave = false;
	Section->OnModified().BindLambda([&bSave] { return bSave; });
	FHostPropertyEdit::SetSectionValue(*Section, TEXT("Key"), TEXT("first"));
	EXPECT_EQ(Read(SavedFile), "");
	bSave = true;
	FHostPropertyEdit::SetSectionValue(*Section, TEXT("Key"), TEXT("second"));
	EXPECT_NE(Read(SavedFile).find("Key=second"), std::string::npos);
}

TEST_F(FSettingsTest, ABoxThatActsAsAButtonUnticksItself)
{
	const TSharedPtr<ISettingsSection> Section = Register(Object);
	EXPECT_TRUE(FHostPropertyEdit::AddElement(*Object, TEXT("Words"), TEXT("three")).IsEmpty());
	EXPECT_EQ(Join(Object->Words), "one two three");
	EXPECT_TRUE(FHostPropertyEdit::SetSectionValue(*Section, TEXT("bResetWords"), TEXT("False")).IsEmpty());
	EXPECT_EQ(Join(Object->Words), "one two three");
	EXPECT_TRUE(FHostPropertyEdit::SetSectionValue(*Section, TEXT("bResetWords"), TEXT("True")).IsEmpty());
	EXPECT_EQ(Join(Object->Words), "one two");
	EXPECT_FALSE(Object->bResetWords);
}

TEST_F(FSettingsTest, NestedEditsNameTheInnerAndTheMemberProperty)
{
	EXPECT_TRUE(FHostPropertyEdit::SetValue(*Object, TEXT("Range.High"), TEXT("9")).IsEmpty());
	EXPECT_TRUE(FHostPropertyEdit::SetValue(*Object, TEXT("Words[1]"), TEXT("deux")).IsEmpty());
	EXPECT_TRUE(FHostPropertyEdit::AddElement(*Object, TEXT("Words")).IsEmpty());
	EXPECT_TRUE(FHostPropertyEdit::RemoveElement(*Object, TEXT("Words"), 0).IsEmpty());
	EXPECT_EQ(Join(Object->Words), "deux ");
	EXPECT_TRUE(FHostPropertyEdit::ClearElements(*Object, TEXT("Words")).IsEmpty());
	EXPECT_TRUE(Object->Words.IsEmpty());

	const FSettingsTestChange Expected[] = {
		{ TEXT("High"), TEXT("Range"), EPropertyChangeType::ValueSet },
		{ TEXT("Words"), TEXT("Words"), EPropertyChangeType::ValueSet },
		{ TEXT("Words"), TEXT("Words"), EPropertyChangeType::ArrayAdd },
		{ TEXT("Words"), TEXT("Words"), EPropertyChangeType::ArrayRemove },
		{ TEXT("Words"), TEXT("Words"), EPropertyChangeType::ArrayClear },
	};
	ASSERT_EQ(Object->Changes.Num(), 5);
	for (int32 Index = 0; Index < 5; ++Index)
	{
		EXPECT_EQ(Object->Changes[Index].Property, Expected[Index].Property) << Index;
		EXPECT_EQ(Object->Changes[Index].Member, Expected[Index].Member) << Index;
		EXPECT_EQ(Object->Changes[Index].ChangeType, Expected[Index].ChangeType) << Index;
	}
	EXPECT_EQ(Object->Range.High, 9);
	EXPECT_EQ(Object->Range.Low, 1);
}

TEST_F(FSettingsTest, RefusesWhatAPageWouldNotAllow)
{
	EXPECT_FALSE(FHostPropertyEdit::SetValue(*Object, TEXT("Unseen"), TEXT("5")).IsEmpty());
	EXPECT_FALSE(FHostPropertyEdit::SetValue(*Object, TEXT("Shown"), TEXT("5")).IsEmpty());
	EXPECT_FALSE(FHostPropertyEdit::SetValue(*Object, TEXT("Missing"), TEXT("5")).IsEmpty());
	EXPECT_FALSE(FHostPropertyEdit::SetValue(*Object, TEXT("Range.High"), TEXT("nine")).IsEmpty());
	EXPECT_FALSE(FHostPropertyEdit::SetValue(*Object, TEXT("Range.High"), TEXT("9 or 10")).IsEmpty());
	EXPECT_FALSE(FHostPropertyEdit::SetValue(*Object, TEXT("Words[2]"), TEXT("x")).IsEmpty());
	EXPECT_FALSE(FHostPropertyEdit::SetValue(*Object, TEXT(""), TEXT("x")).IsEmpty());
	EXPECT_FALSE(FHostPropertyEdit::AddElement(*Object, TEXT("Key"), TEXT("x")).IsEmpty());
	EXPECT_TRUE(Object->Changes.IsEmpty());
	EXPECT_EQ(Object->Range.High, 2);

	FString Error;
	EXPECT_TRUE(FHostPropertyEdit::GetValue(*Object, TEXT("Shown"), Error).Equals(TEXT("3")));
	EXPECT_TRUE(Error.IsEmpty());
}

TEST_F(FSettingsTest, AProjectsSettingsGoToItsDefaultFile)
{
	USettingsTestProjectObject* ProjectObject = NewObject<USettingsTestProjectObject>();
	const TSharedPtr<ISettingsSection> Section = Register(ProjectObject);
	EXPECT_TRUE(FHostPropertyEdit::SetSectionValue(*Section, TEXT("Level"), TEXT("6")).IsEmpty());
	EXPECT_NE(Read(TEXT("Config/DefaultSettingsTestProject.ini")).find("Level=6"), std::string::npos);
}

TEST_F(FSettingsTest, ResettingRestoresTheConstructorsValues)
{
	const TSharedPtr<ISettingsSection> Section = Register(Object);
	FHostPropertyEdit::SetSectionValue(*Section, TEXT("Key"), TEXT("changed"));
	FHostPropertyEdit::SetSectionValue(*Section, TEXT("Words[0]"), TEXT("changed"));
	EXPECT_TRUE(Section->ResetDefaults());
	EXPECT_TRUE(Object->Key.IsEmpty());
	EXPECT_EQ(Join(Object->Words), "one two");
	EXPECT_EQ(Read(SavedFile).find("changed"), std::string::npos);
}

TEST_F(FSettingsTest, TheViewerIsAskedToShowAPage)
{
	FViewer Viewer;
	Module.RegisterViewer(TEXT("Project"), Viewer);
	Module.ShowViewer(TEXT("Project"), TEXT("Plugins"), TEXT("Test"));
	EXPECT_TRUE(Viewer.Shown.Equals(TEXT("Plugins/Test")));
	Module.UnregisterViewer(TEXT("Project"));
	Module.ShowViewer(TEXT("Project"), TEXT("Other"), TEXT("Page"));
	EXPECT_TRUE(Viewer.Shown.Equals(TEXT("Plugins/Test")));
}

TEST_F(FSettingsTest, APageMaySaveResetAndShowItselfInItsOwnWay)
{
	const TSharedPtr<ISettingsSection> Section = Register(Object);
	std::string Calls;
	bool bSaves = false;
	Section->OnSave().BindLambda([&]() {
		Calls += "save ";
		return bSaves;
	});
	Section->OnResetDefaults().BindLambda([&]() {
		Calls += "reset ";
		return true;
	});
	Section->OnSelect().BindLambda([&]() { Calls += "show "; });
	EXPECT_FALSE(Section->Save());
	EXPECT_TRUE(Read(SavedFile).empty()) << "refused";
	bSaves = true;
	EXPECT_TRUE(Section->Save());
	EXPECT_TRUE(Section->ResetDefaults());
	Section->Select();
	EXPECT_EQ(Calls, "save save reset show ");
}
