#include "Agent/Chat/KestrelInterface.h"
#include "Framework/Application/SlateApplication.h"
#include "InputCoreTypes.h"
#include "Layout/SlateRect.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace ChangeViewTest
{
FString MakeLines(int32 ChangedLine)
{
	FString Text;
	for (int32 Line = 0; Line < 40; ++Line)
	{
		Text += FString::Printf(TEXT("int A%d = %d;\n"), Line, Line == ChangedLine ? 100 : Line);
	}
	return Text;
}

void ShowChange(int32 ChangedLine)
{
	FKestrelInterface::Get().OnAddDiffMessage(TEXT("/a/B.h"), MakeLines(-1), MakeLines(ChangedLine));
}

void Settle()
{
	for (int32 Frame = 0; Frame < 4; ++Frame)
	{
		FSlateApplication::Get().Tick();
	}
}

/** Whether a text of the conversation with this part lies in the middle of the panel, as far as scrolling allows. */
bool IsInView(const FKestrelTestPanel& Panel, const TCHAR* Part)
{
	const FSlateRect View = Panel.Widget->GetCachedGeometry().GetLayoutBoundingRect();
	for (const TSharedRef<SMultiLineEditableText>& Text : Panel.Texts(true))
	{
		const FSlateRect Place = Text->GetCachedGeometry().GetLayoutBoundingRect();
		if (Text->GetPlainText().ToString().Contains(Part) && Place.Top > View.Top && Place.Bottom < View.Bottom)
		{
			return true;
		}
	}
	return false;
}
}

BEGIN_DEFINE_SPEC(FKestrelChangeViewSpec, "Kestrel.ChangeView", KestrelTest::Flags)
END_DEFINE_SPEC(FKestrelChangeViewSpec)

void FKestrelChangeViewSpec::Define()
{
	It("folds what does not change, and shows it on demand", [this]() {
		const FKestrelTestPanel Panel(FVector2D(600.0, 900.0));
		ChangeViewTest::ShowChange(20);
		ChangeViewTest::Settle();
		FString Shown;
		for (const TSharedRef<SMultiLineEditableText>& Text : Panel.Texts(true))
		{
			Shown += Text->GetPlainText().ToString() + TEXT("\n");
		}
		TestTrue(TEXT("change"), Shown.Contains(TEXT("- int A20 = 20;\n+ int A20 = 100;")));
		TestTrue(TEXT("context"), Shown.Contains(TEXT("  int A17 = 17;")) && Shown.Contains(TEXT("  int A23 = 23;")));
		TestFalse(TEXT("far"), Shown.Contains(TEXT("A16")) || Shown.Contains(TEXT("A24")));
		TestTrue(TEXT("the fold is there"), Panel.Click(TEXT("\u22EF 17 unchanged lines")));
		ChangeViewTest::Settle();
		TestTrue(TEXT("unfolded"), ChangeViewTest::IsInView(Panel, TEXT("  int A0 = 0;\n  int A1 = 1;")));
	});

	It("goes from change to change with F8", [this]() {
		const FKestrelTestPanel Panel(FVector2D(600.0, 360.0));
		for (const int32 Line : { 5, 15, 25 })
		{
			ChangeViewTest::ShowChange(Line);
		}
		ChangeViewTest::Settle();
		const auto Press = [this, &Panel](bool bShift, const TCHAR* Expected) {
			TestTrue(TEXT("handled"), Panel.Press(EKeys::F8, bShift));
			ChangeViewTest::Settle();
			TestTrue(Expected, ChangeViewTest::IsInView(Panel, Expected));
		};
		Press(false, TEXT("+ int A25 = 100;"));
		Press(true, TEXT("+ int A15 = 100;"));
		Press(true, TEXT("+ int A5 = 100;"));
		Press(true, TEXT("+ int A5 = 100;"));
		Press(false, TEXT("+ int A15 = 100;"));
	});

	It("underlines what a line has that its counterpart has not, and copies lines whole", [this]() {
		const FKestrelTestPanel Panel(FVector2D(600.0, 900.0));
		FKestrelInterface::Get().OnAddDiffMessage(TEXT("/a/B.h"), TEXT("Speed = 5;"), TEXT("Speed = 50;"));
		ChangeViewTest::Settle();
		TArray<FString> Lines;
		for (const TSharedRef<SMultiLineEditableText>& Text : Panel.Texts(true))
		{
			Text->SelectAllText();
			Lines.Add(Text->GetSelectedText().ToString());
		}
		TestTrue(TEXT("removed"), Lines.Contains(TEXT("- Speed = 5;")));
		TestTrue(TEXT("added"), Lines.Contains(TEXT("+ Speed = 50;")));
	});
}
