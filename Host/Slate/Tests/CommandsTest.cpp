#include "Framework/Commands/Commands.h"

#include "Framework/Commands/UICommandList.h"

#include <gtest/gtest.h>

#define LOCTEXT_NAMESPACE "CommandsTest"

namespace CommandsTest
{

class FTestCommands : public TCommands<FTestCommands>
{
public:
	FTestCommands()
		: TCommands<FTestCommands>("TestContext", INVTEXT("Test"), NAME_None, "TestStyle")
	{
	}

	virtual void RegisterCommands() override
	{
		UI_COMMAND(OpenWindow, "Open", "Opens the window", EUserInterfaceActionType::Button, FInputChord());
		UI_COMMAND(Save, "Save", "Saves", EUserInterfaceActionType::Button,
			FInputChord(EModifierKey::Control | EModifierKey::Shift, EKeys::S));
	}

	TSharedPtr<FUICommandInfo> OpenWindow;
	TSharedPtr<FUICommandInfo> Save;
};

class FEmptyCommands : public TCommands<FEmptyCommands>
{
public:
	FEmptyCommands()
		: TCommands<FEmptyCommands>("EmptyContext", INVTEXT("Empty"), NAME_None, "TestStyle")
	{
	}
	virtual void RegisterCommands() override {}
};

class FCommandsTest : public testing::Test
{
protected:
	FCommandsTest() { FTestCommands::Register(); }
	virtual ~FCommandsTest() override { FTestCommands::Unregister(); }
};

TEST_F(FCommandsTest, DescribesEachCommand)
{
	const FUICommandInfo& Open = *FTestCommands::Get().OpenWindow;
	EXPECT_EQ(Open.GetCommandName(), FName("OpenWindow"));
	EXPECT_TRUE(Open.GetLabel().ToString().Equals(TEXT("Open")));
	EXPECT_TRUE(Open.GetDescription().ToString().Equals(TEXT("Opens the window")));
	EXPECT_TRUE(FTextInspector::GetKey(Open.GetDescription()).Equals(TEXT("OpenWindow_ToolTip")));
	EXPECT_EQ(Open.GetIcon().GetStyleSetName(), FName("TestStyle"));
	EXPECT_EQ(Open.GetIcon().GetStyleName(), FName("TestContext.OpenWindow"));
	EXPECT_TRUE(Open.GetInputText().IsEmpty());
	EXPECT_TRUE(FTestCommands::Get().Save->GetInputText().ToString().Equals(TEXT("Ctrl+Shift+S")));
}

TEST_F(FCommandsTest, LivesFromRegisterToUnregister)
{
	const FTestCommands* const First = &FTestCommands::Get();
	FTestCommands::Register();
	EXPECT_EQ(&FTestCommands::Get(), First) << "a second Register has no effect";
	EXPECT_TRUE(FInputBindingManager::Get().FindCommandInContext("TestContext", "Save").IsValid());

	TArray<FName> Changed;
	const FDelegateHandle Handle = FBindingContext::CommandsChanged.AddLambda(
		[&Changed](const FBindingContext& Context) { Changed.Add(Context.GetContextName()); });
	FTestCommands::Unregister();
	FTestCommands::Unregister();
	FBindingContext::CommandsChanged.Remove(Handle);
	EXPECT_EQ(Changed, TArray<FName>{ FName("TestContext") });
	EXPECT_FALSE(FTestCommands::IsRegistered());
	EXPECT_FALSE(FInputBindingManager::Get().GetContextByName("TestContext").IsValid());

	FEmptyCommands::Register();
	EXPECT_FALSE(FEmptyCommands::IsRegistered()) << "only a command keeps its set alive";
}

TEST_F(FCommandsTest, ExecutesOnlyWhatCanBeExecuted)
{
	const FTestCommands& Commands = FTestCommands::Get();
	const TSharedRef<FUICommandList> List = MakeShared<FUICommandList>();
	int32 NumRuns = 0;
	bool bMaySave = false;
	List->MapAction(Commands.OpenWindow, FExecuteAction::CreateLambda([&NumRuns] { ++NumRuns; }), FCanExecuteAction());
	List->MapAction(Commands.Save, FExecuteAction::CreateLambda([&NumRuns] { ++NumRuns; }),
		FCanExecuteAction::CreateLambda([&bMaySave] { return bMaySave; }));
	EXPECT_TRUE(List->TryExecuteAction(Commands.OpenWindow.ToSharedRef()));
	EXPECT_FALSE(List->TryExecuteAction(Commands.Save.ToSharedRef()));
	EXPECT_EQ(NumRuns, 1);
	bMaySave = true;
	const FModifierKeysState ControlShift(true, false, true, false, false, false, false, false, false);
	EXPECT_TRUE(List->ProcessCommandBindings(FKeyEvent(EKeys::S, ControlShift, 0, false, 0, 0)));
	EXPECT_FALSE(List->ProcessCommandBindings(FKeyEvent(EKeys::S, FModifierKeysState(), 0, false, 0, 0)));
	EXPECT_EQ(NumRuns, 2);
	List->UnmapAction(Commands.Save);
	EXPECT_FALSE(List->CanExecuteAction(Commands.Save.ToSharedRef()));
}

TEST(CommandsDeathTest, AssertsOnMisuse)
{
	EXPECT_DEATH(FTestCommands::Get(), "not registered");
	FTestCommands::Register();
	const TSharedRef<FUICommandList> List = MakeShared<FUICommandList>();
	List->MapAction(FTestCommands::Get().Save, FExecuteAction());
	EXPECT_DEATH(List->MapAction(FTestCommands::Get().Save, FExecuteAction()), "mapped already");
	EXPECT_DEATH(List->MapAction(nullptr, FExecuteAction()), "must be registered");
	FTestCommands::Unregister();
}

}

#undef LOCTEXT_NAMESPACE
