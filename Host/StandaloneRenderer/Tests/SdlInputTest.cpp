#include "SdlInput.h"
#include "Framework/Application/SlateApplication.h"
#include "GenericPlatform/GenericWindow.h"
#include "Widgets/SWindow.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#include <gtest/gtest.h>

/** Keeps the files that are dropped on it. */
class SDropTarget : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SDropTarget) {}
	SLATE_END_ARGS()
	void Construct(const FArguments& InArgs) {}

	virtual FReply OnDrop(const FGeometry& MyGeometry, const FDragDropEvent& DragDropEvent) override
	{
		const TSharedPtr<FExternalDragOperation> Operation = DragDropEvent.GetOperationAs<FExternalDragOperation>();
		Files = Operation.IsValid() ? Operation->GetFiles() : TArray<FString>();
		return FReply::Handled();
	}

	TArray<FString> Files;
};

/** SDL's events as an input method sends them; SDL itself is not started. */
class FSdlInputTest : public testing::Test
{
protected:
	FSdlInputTest()
	{
		FSlateApplication::Create();
		const TSharedRef<SWindow> Window = FSlateApplication::Get().AddWindow(SNew(SWindow));
		Window->SetContent(SAssignNew(Text, SMultiLineEditableText).Text(INVTEXT("<>")));
		FSlateApplication::Get().Tick();
		FSlateApplication::Get().SetKeyboardFocus(Text);
		Text->GoTo(FTextLocation(0, 1));
	}
	virtual ~FSdlInputTest() override
	{
		Text.Reset();
		FSlateApplication::Shutdown();
	}

	template <size_t Size>
	static void Copy(const char* From, char (&To)[Size])
	{
		SDL_strlcpy(To, From, Size);
	}
	void Compose(const char* Draft, int32 NumCharactersBeforeCursor)
	{
		SDL_Event Event{};
		Event.type = SDL_TEXTEDITING;
		Event.edit.start = NumCharactersBeforeCursor;
		Copy(Draft, Event.edit.text);
		Input.HandleEvent(Event, nullptr, FVector2D(0.0, 0.0));
	}
	void Choose(const char* Chosen)
	{
		SDL_Event Event{};
		Event.type = SDL_TEXTINPUT;
		Copy(Chosen, Event.text.text);
		Input.HandleEvent(Event, nullptr, FVector2D(0.0, 0.0));
	}
	void ExpectText(const TCHAR* Expected, int32 Cursor) const
	{
		EXPECT_TRUE(Text->GetPlainText().ToString().Equals(Expected));
		EXPECT_EQ(Text->GetCursorLocation().GetOffset(), Cursor);
	}

	FSdlInput Input;
	TSharedPtr<SMultiLineEditableText> Text;
};

TEST_F(FSdlInputTest, ShowsDraftsAndTypesWhatIsChosen)
{
	Compose("mori", 4);
	ExpectText(TEXT("<mori>"), 5);
	Compose("\U0001F426\u68EE", 1);
	ExpectText(TEXT("<\U0001F426\u68EE>"), 3);
	Choose("\u68EE\U0001F426");
	ExpectText(TEXT("<\u68EE\U0001F426>"), 4);
	Compose("x", 1);
	Compose("", 0);
	ExpectText(TEXT("<\u68EE\U0001F426>"), 4);
}

TEST_F(FSdlInputTest, KeysHaveTheModifiersOfTheirTime)
{
	SDL_Event Event{};
	Event.type = SDL_KEYDOWN;
	Event.key.keysym.sym = SDLK_a;
	Event.key.keysym.mod = KMOD_LCTRL; // up again by now, for SDL
	Input.HandleEvent(Event, nullptr, FVector2D(0.0, 0.0));
	Event.type = SDL_KEYUP;
	Event.key.keysym.mod = KMOD_NONE;
	Input.HandleEvent(Event, nullptr, FVector2D(0.0, 0.0));
	EXPECT_FALSE(FSdlInput::GetModifierKeys().IsControlDown());
	Choose("all");
	ExpectText(TEXT("all"), 3);
}

TEST_F(FSdlInputTest, DropsFilesOfOtherProgramsWhereThePointerIs)
{
	const TSharedRef<SDropTarget> Target = SNew(SDropTarget);
	FSlateApplication::Get().GetTopLevelWindows()[0]->SetContent(Target);
	FSlateApplication::Get().Tick();
	SDL_Event Event{};
	for (const char* Name : { "/tmp/a.txt", "/tmp/\u68EE b" })
	{
		Event.type = SDL_DROPFILE;
		Event.drop.file = SDL_strdup(Name);
		Input.HandleEvent(Event, nullptr, FVector2D(0.0, 0.0));
	}
	EXPECT_EQ(Target->Files.Num(), 0) << "not one by one";
	Event.type = SDL_DROPCOMPLETE;
	Input.HandleEvent(Event, nullptr, FVector2D(0.0, 0.0));
	EXPECT_EQ(Target->Files, (TArray<FString>{ TEXT("/tmp/a.txt"), TEXT("/tmp/\u68EE b") }));
}
