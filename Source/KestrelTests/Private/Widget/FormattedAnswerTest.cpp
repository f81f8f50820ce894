#include "Agent/Chat/KestrelInterface.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformApplicationMisc.h"
#include "Misc/FileHelper.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"
#include "Widgets/Text/STextBlock.h"

namespace FormattedAnswerTest
{
constexpr bool bFormatted = true;

/** The texts of a panel from top to bottom, but for its buttons and the welcome. */
void CollectTexts(const TSharedRef<SWidget>& Widget, TArray<FString>& OutTexts)
{
	const FName Type = Widget->GetType();
	if (Type == FName("SButton"))
	{
		return;
	}
	if (Type == FName("SKestrelStyledText") || Type == FName("SMultiLineEditableText"))
	{
		OutTexts.Add(StaticCastSharedRef<SMultiLineEditableText>(Widget)->GetPlainText().ToString());
	}
	else if (Type == FName("STextBlock"))
	{
		OutTexts.Add(StaticCastSharedRef<STextBlock>(Widget)->GetText().ToString());
	}
	FChildren* Children = Widget->GetChildren();
	for (int32 Index = 0; Index < Children->Num(); ++Index)
	{
		CollectTexts(Children->GetChildAt(Index), OutTexts);
	}
}

TSharedPtr<SWidget> FindLast(const TSharedRef<SWidget>& Widget, const FName& Type)
{
	if (Widget->GetType() == Type)
	{
		return Widget;
	}
	FChildren* Children = Widget->GetChildren();
	TSharedPtr<SWidget> Found;
	for (int32 Index = Children->Num() - 1; Index >= 0 && !Found.IsValid(); --Index)
	{
		Found = FindLast(Children->GetChildAt(Index), Type);
	}
	return Found;
}

/** An answer as the agent shows it, in a panel of its own. */
struct FAnswer
{
	explicit FAnswer(const FString& Markdown, bool bInFormatted = bFormatted)
		: Panel(FVector2D(600.0, 900.0), bInFormatted)
	{
		FKestrelInterface::Get().OnAddStatusMessage(FString::Printf(TEXT(" [ Kestrel ] \n\n%s\n"), *Markdown),
			FKestrelInterface::AssistantColor, FKestrelInterface::BoldFontName, FKestrelInterface::AssistantFontSize);
		FSlateApplication::Get().Tick();
		FSlateApplication::Get().Tick();
	}

	/** From the answer's heading on. */
	FString Describe() const
	{
		TArray<FString> Texts;
		const TSharedPtr<SWidget> Answer = FindLast(Panel.Widget.ToSharedRef(), "SKestrelAnswer");
		if (Answer.IsValid())
		{
			CollectTexts(Answer.ToSharedRef(), Texts);
		}
		return FString::Join(Texts, TEXT("|"));
	}

	FKestrelTestPanel Panel;
};
}

BEGIN_DEFINE_SPEC(FKestrelFormattedAnswerSpec, "Kestrel.FormattedAnswers", KestrelTest::Flags)
	void TestShown(const TCHAR* Markdown, const TCHAR* Expected)
	{
		const FormattedAnswerTest::FAnswer Answer(Markdown);
		KestrelTest::TestSameText(*this, Markdown, Answer.Describe(), FString(TEXT("Kestrel")) + Expected);
	}
END_DEFINE_SPEC(FKestrelFormattedAnswerSpec)

void FKestrelFormattedAnswerSpec::Define()
{
	using namespace FormattedAnswerTest;

	It("show headings, lists, tables, quotes and code without their markers", [this]() {
		TestShown(TEXT("# Door\n\nIt *opens* **at** once."), TEXT("|Door|It opens at once."));
		TestShown(TEXT("- one\n- two\n\n3. three"), TEXT("|\u2022|one|\u2022|two|3.|three"));
		TestShown(TEXT("> said\n\n---\nend"), TEXT("|said|end"));
		TestShown(TEXT("|a|b|\n|-|-|\n|`c`|d|"), TEXT("|a|b|c|d"));
		TestShown(TEXT("```cpp\nint A;\n\nint B;\n```"), TEXT("|cpp|int A;\n\nint B;"));
	});

	It("leave out tool names and stray bold markers, but not the asterisks of code", [this]() {
		TestShown(TEXT("I call **read_file** now. **Open"), TEXT("|I call  now. Open"));
		TestShown(TEXT("`create_blueprint` and `a**b`"), TEXT("| and a**b"));
		TestShown(TEXT("*re*ad_**fi**le, \\*\\*x `a*`*b*"), TEXT("|, x a*b"));
		TestShown(TEXT("```cpp\n/** read_file */\n```"), TEXT("|cpp|/** read_file */"));
	});

	It("escape what reverses the direction of writing", [this]() {
		TestShown(TEXT("safe \u202Etxt.exe"), TEXT("|safe \u27E8U+202E\u27E9txt.exe"));
		TestShown(TEXT("```\na \u2066b\n```"), TEXT("||a \u27E8U+2066\u27E9b"));
	});

	It("copy what the service wrote", [this]() {
		const FString Markdown = TEXT("**Bold**\n\n```cpp\nint A; /** a */\n```\n\nend");
		const FAnswer Answer(Markdown);
		FString Copied;
		TestTrue(TEXT("the answer's button is there"), Answer.Panel.Click(TEXT("Copy answer")));
		FPlatformApplicationMisc::ClipboardPaste(Copied);
		KestrelTest::TestSameText(*this, TEXT("answer"), Copied, Markdown + TEXT("\n"));
		TestTrue(TEXT("the code's button is there"), Answer.Panel.Click(TEXT("Copy")));
		FPlatformApplicationMisc::ClipboardPaste(Copied);
		KestrelTest::TestSameText(*this, TEXT("code"), Copied, TEXT("int A; /** a */\n"));
	});

	It("log the same as plain ones, which stay for those who choose or hear them", [this]() {
		const FString Markdown = TEXT("# A\n\n- `read_file` **b**");
		FString Logs[3];
		for (int32 Way = 0; Way < 3; ++Way)
		{
			FSlateApplication::Get().GetAccessibleMessageHandler()->SetActive(Way == 2);
			const FAnswer Answer(Markdown, Way != 1);
			TestEqual(TEXT("formatted"), !Answer.Describe().IsEmpty(), Way == 0);
			FFileHelper::LoadFileToString(Logs[Way], *FKestrelInterface::Get().GetPromptLogFilePath());
			Logs[Way] = Logs[Way].Mid(Logs[Way].Find(TEXT("]"))); // without the time
			if (Way > 0)
			{
				KestrelTest::TestSameText(*this, TEXT("log"), Logs[Way], Logs[0]);
				KestrelTest::TestSameText(
					*this, TEXT("plain"), Answer.Panel.LastBlock(), TEXT(" [ Kestrel ] \n\n# A\n\n- `` b\n"));
			}
		}
		FSlateApplication::Get().GetAccessibleMessageHandler()->SetActive(false);
	});

	It("show a status that comes again as a number, and log it each time", [this]() {
		const FKestrelTestPanel Panel(FVector2D(600.0, 900.0), bFormatted);
		for (int32 Poll = 0; Poll < 4; ++Poll)
		{
			FKestrelInterface::Get().AddOwnStatusMessage(TEXT("Processing request..."));
		}
		FKestrelInterface::Get().AddOwnStatusMessage(TEXT("Done."));
		FString Shown;
		for (const TSharedRef<SMultiLineEditableText>& Text : Panel.Texts(true))
		{
			Shown += Text->GetPlainText().ToString() + TEXT("|");
		}
		TestTrue(Shown, Shown.EndsWith(TEXT("|Processing request \u00D74...|Done.|")));
		FString Log;
		FFileHelper::LoadFileToString(Log, *FKestrelInterface::Get().GetPromptLogFilePath());
		TArray<FString> Parts;
		TestEqual(TEXT("logged"), Log.ParseIntoArray(Parts, TEXT("Processing request...")), 5);
	});
}
