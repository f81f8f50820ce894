#include "Agent/Agent.h"
#include "Agent/Chat/KestrelInterface.h"
#include "Framework/Application/SlateApplication.h"
#include "KestrelSettings.h"
#include "Support/KestrelTest.h"
#include "Support/TestContent.h"
#include "Support/TestPanel.h"
#include "UObject/Class.h"
#include "UObject/UnrealType.h"
#include "Widget/Start/ProjectExamples.h"
#include "Widget/TextSize.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace StartTest
{
/** As the settings page does. */
void ChooseTextSize(int32 Size)
{
	UKestrelSettings* Settings = GetMutableDefault<UKestrelSettings>();
	Settings->TextSize = Size;
	FPropertyChangedEvent Event(
		UKestrelSettings::StaticClass()->FindPropertyByName(GET_MEMBER_NAME_CHECKED(UKestrelSettings, TextSize)));
	Settings->PostEditChangeProperty(Event);
	FSlateApplication::Get().Tick();
	FSlateApplication::Get().Tick();
}
}

DEFINE_SPEC(FKestrelStartSpec, "Kestrel.Start", KestrelTest::Flags)
void FKestrelStartSpec::Define()
{
	using namespace StartTest;

	It("offers three prompts, which a click puts into the box, until there is a conversation", [this]() {
		const FKestrelTestPanel Panel;
		const TArray<FString> Examples = KestrelProjectExamples::Find();
		TestEqual(TEXT("three"), Examples.Num(), 3);
		for (const FString& Example : Examples)
		{
			TestTrue(Example, Panel.FindButton(*Example).IsValid());
		}
		TestTrue(TEXT("click"), Panel.Click(*Examples[1]));
		KestrelTest::TestSameText(*this, TEXT("in the box"), Panel.PromptBox()->GetText().ToString(), Examples[1]);
		TestTrue(TEXT("to go on with"), Panel.PromptBox()->HasKeyboardFocus());
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		Panel.Click(TEXT("[ Start ]"));
		FSlateApplication::Get().Tick();
		TestFalse(TEXT("gone"), Panel.FindButton(*Examples[0]).IsValid());
	});

	It("shows text in the size that the settings have, at once and without saying it again", [this]() {
		const FKestrelTestPanel Panel;
		FAgent::Get().SetAgentState(EAgentState::Idle, nullptr);
		const FInitialRequestStateData Data(TEXT("a prompt"));
		FAgent::Get().SetAgentState(EAgentState::InitialRequest, &Data);
		const auto HeightOfPrompt = [&Panel]() { return FVector2D(Panel.Texts(true)[1]->GetDesiredSize()).Y; };
		FSlateApplication::Get().Tick();
		const TArray<FString> Blocks = Panel.Blocks();
		const FString Log = Panel.Log();
		const double Height = HeightOfPrompt();
		ChooseTextSize(20);
		TestTrue(TEXT("twice as high"), FMath::IsNearlyEqual(HeightOfPrompt() / Height, 2.0, 0.1));
		TestTrue(TEXT("the prompt box as well"), FVector2D(Panel.PromptBox()->GetDesiredSize()).Y > 20.0);
		TestTrue(TEXT("the same blocks"), Panel.Blocks() == Blocks);
		KestrelTest::TestSameText(*this, TEXT("not logged again"), Panel.Log(), Log);
		ChooseTextSize(100000);
		TestTrue(TEXT("within reason"), KestrelTextSize::Scale(10.0f) < 100.0f);
		ChooseTextSize(UKestrelSettings::DefaultTextSize);
		TestTrue(TEXT("back again"), FMath::IsNearlyEqual(HeightOfPrompt(), Height, 1.0));
	});
}
