#include "Widget/KeyList.h"

#include "Styling/AppStyle.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateColor.h"
#include "Widget/KestrelStyle.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KestrelKeyList"

namespace KestrelKeyList
{
namespace
{
constexpr float Padding = 12.0f;
constexpr float RowGap = 2.0f;
constexpr float KeyGap = 8.0f;
constexpr float KeyWidth = 136.0f;
constexpr float MeaningWidth = 160.0f;

struct FRow
{
	FText Key;
	FText Meaning;
};

const TArray<FRow>& GetRows()
{
	static const TArray<FRow> Rows = {
		{ LOCTEXT("Enter", "Enter"), LOCTEXT("EnterMeaning", "send the prompt") },
		{ LOCTEXT("ShiftEnter", "Shift+Enter"), LOCTEXT("ShiftEnterMeaning", "new line") },
		{ LOCTEXT("UpDown", "Up, Down"), LOCTEXT("UpDownMeaning", "earlier and later prompts") },
		{ LOCTEXT("At", "@"), LOCTEXT("AtMeaning", "name a file, asset or class") },
		{ LOCTEXT("Tab", "Tab, Shift+Tab"), LOCTEXT("TabMeaning", "next and previous element") },
		{ LOCTEXT("Escape", "Escape"), LOCTEXT("EscapeMeaning", "close a list; back to the prompt") },
		{ LOCTEXT("Turns", "Alt+Up, Alt+Down"), LOCTEXT("TurnsMeaning", "previous and next of your turns") },
		{ LOCTEXT("Pages", "Page Up, Page Down"), LOCTEXT("PagesMeaning", "scroll the conversation") },
		{ LOCTEXT("Changes", "F8, Shift+F8"), LOCTEXT("ChangesMeaning", "next and previous change") },
		{ LOCTEXT("Help", "F1"), LOCTEXT("HelpMeaning", "this list") },
	};
	return Rows;
}
}

TSharedRef<SWidget> Make()
{
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	for (const FRow& Row : GetRows())
	{
		// clang-format off
		Column->AddSlot()
		.AutoHeight()
		.Padding(0.0f, RowGap)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot()
			.AutoWidth()
			[
				SNew(SBox)
				.WidthOverride(KeyWidth)
				[
					SNew(STextBlock).Text(Row.Key).WrapTextAt(KeyWidth - KeyGap)
				]
			]
			+ SHorizontalBox::Slot()
			.AutoWidth()
			[
				SNew(SBox)
				.WidthOverride(MeaningWidth)
				[
					SNew(STextBlock)
					.Text(Row.Meaning)
					.WrapTextAt(MeaningWidth)
					.ColorAndOpacity(FKestrelStyle::Get().GetSlateColor("Kestrel.Text"))
				]
			]
		];
		// clang-format on
	}
	return SNew(SBorder).BorderImage(FAppStyle::GetBrush("Menu.Background")).Padding(Padding)[Column];
}
}

#undef LOCTEXT_NAMESPACE
