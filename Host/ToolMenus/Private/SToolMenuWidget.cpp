#include "SToolMenuWidget.h"

#include "Framework/Commands/UICommandList.h"
#include "Styling/AppStyle.h"
#include "ToolMenus.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SSeparator.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

void SToolMenuWidget::Construct(const FArguments& InArgs)
{
	MenuName = InArgs._MenuName;
	Rebuild();
}

void SToolMenuWidget::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	const UToolMenus* const Menus = UToolMenus::TryGet();
	if (Menus != nullptr && Menus->GetVersion() != ShownVersion)
	{
		Rebuild();
	}
}

void SToolMenuWidget::Rebuild()
{
	const UToolMenus* const Menus = UToolMenus::Get();
	ShownVersion = Menus->GetVersion();
	const UToolMenu* const Menu = Menus->FindMenu(MenuName);
	const bool bIsColumn = Menu == nullptr || Menu->MenuType == EMultiBoxType::Menu;
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
	const TSharedRef<SHorizontalBox> Row = SNew(SHorizontalBox);
	for (const FToolMenuSection& Section : Menus->CollectSections(MenuName))
	{
		if (bIsColumn && Section.Label.IsSet() && !Section.Label.Get().IsEmpty())
		{
			Column->AddSlot().AutoHeight()[SNew(STextBlock).Text(Section.Label)];
		}
		for (const FToolMenuEntry& Entry : Section.Blocks)
		{
			if (bIsColumn)
			{
				Column->AddSlot().AutoHeight()[MakeEntryWidget(Entry, Orient_Horizontal)];
			}
			else
			{
				Row->AddSlot().AutoWidth()[MakeEntryWidget(Entry, Orient_Vertical)];
			}
		}
	}
	ChildSlot[bIsColumn ? TSharedRef<SWidget>(Column) : TSharedRef<SWidget>(Row)];
}

namespace ToolMenuWidget
{
static bool CanExecute(const FToolMenuEntry& Entry)
{
	const FUIAction* const Action = Entry.GetAction();
	return Action != nullptr && Action->IsBound() && Action->CanExecute();
}

static EVisibility GetVisibility(const FToolMenuEntry& Entry)
{
	const FUIAction* const Action = Entry.GetAction();
	return Action == nullptr || Action->IsVisible() ? EVisibility::Visible : EVisibility::Collapsed;
}

static FReply Execute(const FToolMenuEntry& Entry)
{
	const FUIAction* const Action = Entry.GetAction();
	if (Action != nullptr)
	{
		// What is done may change the menu.
		const FUIAction Kept = *Action;
		Kept.Execute();
	}
	return FReply::Handled();
}
}

TSharedRef<SWidget> SToolMenuWidget::MakeEntryWidget(
	const FToolMenuEntry& Entry, EOrientation SeparatorOrientation) const
{
	if (Entry.Type == EMultiBlockType::Separator)
	{
		return SNew(SSeparator).Orientation(SeparatorOrientation).Thickness(1.0f);
	}
	const FSlateBrush* const Icon = Entry.Icon.IsSet() ? Entry.Icon.Get().GetOptionalIcon() : nullptr;
	// clang-format off
	return SNew(SButton)
		.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("SimpleButton"))
		.IsFocusable(false)
		.ToolTipText(Entry.ToolTip)
		.AccessibleText(Entry.Label)
		.IsEnabled_Lambda([Entry] { return ToolMenuWidget::CanExecute(Entry); })
		.Visibility_Lambda([Entry] { return ToolMenuWidget::GetVisibility(Entry); })
		.OnClicked_Lambda([Entry] { return ToolMenuWidget::Execute(Entry); })
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(0.0f, 0.0f, 4.0f, 0.0f)
			[
				SNew(SImage)
				.Image(Icon)
				.Visibility(Icon != nullptr ? EVisibility::HitTestInvisible : EVisibility::Collapsed)
			]
			+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
			[
				SNew(STextBlock).Text(Entry.Label)
			]
		];
	// clang-format on
}
