#include "Agent/Chat/KestrelInterface.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformApplicationMisc.h"
#include "InputCoreTypes.h"
#include "Layout/Geometry.h"
#include "Support/KestrelTest.h"
#include "Support/TestPanel.h"
#include "Widget/SKestrelWidget.h"
#include "Widgets/Text/SMultiLineEditableText.h"

namespace LongConversationTest
{
constexpr int32 NumParagraphs = 2000;
constexpr float WholeWay = 1.0e6f;
constexpr float UnitsPerNotch = 32.0f;

void Draw(int32 NumFrames = 3)
{
	for (int32 Frame = 0; Frame < NumFrames; ++Frame)
	{
		FSlateApplication::Get().Tick();
	}
}

void AddAnswer(const FString& Markdown)
{
	FKestrelInterface::Get().OnAddStatusMessage(FString::Printf(TEXT(" [ Kestrel ] \n\n%s\n"), *Markdown),
		FKestrelInterface::AssistantColor, FKestrelInterface::BoldFontName, FKestrelInterface::AssistantFontSize);
}

/** Paragraphs of all lengths: what they will take is not known before they are laid out. */
FString MakeParagraphs(int32 Num)
{
	FString Markdown;
	for (int32 Number = 0; Number < Num; ++Number)
	{
		Markdown += FString::Printf(TEXT("Paragraph %d.%s\n\n"), Number, *FString::ChrN(Number * 37 % 300, TEXT('w')));
	}
	return Markdown;
}

/** A panel, with the wheel over its conversation. */
struct FReader : FKestrelTestPanel
{
	FReader()
		: FKestrelTestPanel(FVector2D(400.0, 600.0), true)
	{
	}

	static double TopOf(const SWidget& Widget) { return FVector2D(Widget.GetCachedGeometry().GetAbsolutePosition()).Y; }
	static double HeightOf(const SWidget& Widget) { return FVector2D(Widget.GetCachedGeometry().GetLocalSize()).Y; }

	void TurnWheel(float Notches) const
	{
		const FVector2D Place(Window->GetPositionInScreen() + FVector2D(200.0, 200.0));
		FSlateApplication::Get().ProcessMouseWheelOrGestureEvent(
			FPointerEvent(0, Place, Place, TSet<FKey>(), EKeys::MouseWheelAxis, Notches, FModifierKeysState()),
			nullptr);
	}

	/** The text at this height of the window. */
	TSharedPtr<SMultiLineEditableText> TextAt(double Y) const
	{
		for (const TSharedRef<SMultiLineEditableText>& Text : Texts(true))
		{
			const double Top = TopOf(*Text) - Window->GetPositionInScreen().Y;
			if (Top <= Y && Y < Top + HeightOf(*Text))
			{
				return Text;
			}
		}
		return nullptr;
	}

	bool Shows(const FString& Text) const
	{
		return Texts(true).ContainsByPredicate([&Text](const TSharedRef<SMultiLineEditableText>& Shown) {
			return Shown->GetPlainText().ToString().StartsWith(Text);
		});
	}

	/** How far the text in the middle strays from where the wheel should have taken it, at most, over many notches. */
	double ScrollAndFindLargestJump(float NotchesPerFrame, int32 NumFrames) const
	{
		double Largest = 0.0;
		for (int32 Frame = 0; Frame < NumFrames; ++Frame)
		{
			const TSharedPtr<SMultiLineEditableText> Text = TextAt(300.0);
			const double Before = Text.IsValid() ? TopOf(*Text) : 0.0;
			TurnWheel(NotchesPerFrame);
			Draw(1);
			if (Text.IsValid())
			{
				Largest = FMath::Max(Largest, FMath::Abs(TopOf(*Text) - Before - UnitsPerNotch * NotchesPerFrame));
			}
		}
		return Largest;
	}
};
}

BEGIN_DEFINE_SPEC(FKestrelLongConversationSpec, "Kestrel.LongConversations", KestrelTest::Flags)
END_DEFINE_SPEC(FKestrelLongConversationSpec)

void FKestrelLongConversationSpec::Define()
{
	using namespace LongConversationTest;

	It("make of a long answer what is in view", [this]() {
		const FReader Reader;
		AddAnswer(MakeParagraphs(NumParagraphs));
		Draw();
		TestTrue(TEXT("the end"), Reader.Shows(FString::Printf(TEXT("Paragraph %d."), NumParagraphs - 1)));
		TestTrue(TEXT("few of all"), Reader.Texts(true).Num() < NumParagraphs / 10);
		TestFalse(TEXT("not the start"), Reader.Shows(TEXT("Paragraph 0.")));
		Reader.TurnWheel(WholeWay);
		Draw();
		TestTrue(TEXT("the start"), Reader.Shows(TEXT("Paragraph 0.")));
		TestTrue(TEXT("still few"), Reader.Texts(true).Num() < NumParagraphs / 5);
		TestTrue(TEXT("the whole"), Reader.Click(TEXT("Copy answer")));
		FString Copied;
		FPlatformApplicationMisc::ClipboardPaste(Copied);
		KestrelTest::TestSameText(*this, TEXT("copied"), Copied, MakeParagraphs(NumParagraphs) + TEXT("\n"));
	});

	It("make of long code what is in view, and copy all of it", [this]() {
		const FReader Reader;
		FString Code;
		for (int32 Line = 0; Line < 5000; ++Line)
		{
			Code += FString::Printf(TEXT("int32 Value%d = %d;\n"), Line, Line);
		}
		AddAnswer(TEXT("```cpp\n") + Code + TEXT("```"));
		Draw();
		TestTrue(
			TEXT("the end"), Reader.Texts(true).Last()->GetPlainText().ToString().EndsWith(TEXT("Value4999 = 4999;")));
		TestFalse(TEXT("not the start"), Reader.Shows(TEXT("int32 Value0 ")));
		Reader.TurnWheel(WholeWay);
		Draw();
		TestTrue(TEXT("the start"), Reader.Shows(TEXT("int32 Value0 ")));
		FString Copied;
		TestTrue(TEXT("its button"), Reader.Click(TEXT("Copy")));
		FPlatformApplicationMisc::ClipboardPaste(Copied);
		KestrelTest::TestSameText(*this, TEXT("copied"), Copied, Code);
	});

	It("leave in place what is read while the text above it is laid out", [this]() {
		const FReader Reader;
		for (int32 Number = 0; Number < 40; ++Number)
		{
			AddAnswer(MakeParagraphs(Number % 5 + 1));
			FKestrelInterface::Get().AddOwnStatusMessage(FString::ChrN(Number * 53 % 700, TEXT('m')));
		}
		AddAnswer(MakeParagraphs(300));
		Draw();
		TestTrue(TEXT("on the way up"), Reader.ScrollAndFindLargestJump(1.0f, 400) < 2.0);
		TestTrue(TEXT("in larger steps"), Reader.ScrollAndFindLargestJump(4.0f, 100) < 2.0);
	});

	It("reach each paragraph of a long answer with Tab, there and back", [this]() {
		constexpr int32 Num = 300;
		const FReader Reader;
		AddAnswer(MakeParagraphs(Num));
		Draw();
		FSlateApplication& Slate = FSlateApplication::Get();
		const auto GoOn = [&Slate](bool bBack) {
			Slate.ProcessKeyDownEvent(FKeyEvent(EKeys::Tab,
				FModifierKeysState(bBack, false, false, false, false, false, false, false, false), 0, false, 0, 0));
			Draw(4);
			const TSharedPtr<SWidget> Focused = Slate.GetKeyboardFocusedWidget();
			return Focused.IsValid() && Focused->GetType() == FName("SKestrelStyledText")
					   ? StaticCastSharedPtr<SMultiLineEditableText>(Focused)->GetPlainText().ToString()
					   : FString();
		};
		Slate.SetKeyboardFocus(Reader.Texts(true).Last());
		for (int32 Number = Num - 2; Number >= 0; --Number)
		{
			const FString Expected = FString::Printf(TEXT("Paragraph %d."), Number);
			const FString Reached = GoOn(true);
			if (!Reached.StartsWith(Expected))
			{
				AddError(FString::Printf(TEXT("back: %s instead of %s"), *Reached.Left(20), *Expected));
				return;
			}
		}
		for (int32 Number = 1; Number < Num; ++Number)
		{
			const FString Expected = FString::Printf(TEXT("Paragraph %d."), Number);
			const FString Reached = GoOn(false);
			if (!Reached.StartsWith(Expected))
			{
				AddError(FString::Printf(TEXT("on: %s instead of %s"), *Reached.Left(20), *Expected));
				return;
			}
		}
	});
}
