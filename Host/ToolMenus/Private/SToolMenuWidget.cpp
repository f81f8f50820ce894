#include "SToolMenuWidget.h"

#include "Framework/Application/SlateApplication.h"
#include "Framework/Commands/UICommandList.h"
#include "Styling/AppStyle.h"
#include "ToolMenus.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SMenuAnchor.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SSeparator.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

namespace ToolMenuWidget
{
// Slate units.
constexpr float IconSize = 16.0f;
constexpr float SeparatorThickness = 1.0f;

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
		// The focus goes back first: what is done may move it on.
		FSlateApplication::Get().DismissAllMenus();
		Kept.Execute();
	}
	return FReply::Handled();
}

static FText GetTick(const FToolMenuEntry& Entry)
{
	const FUIAction* const Action = Entry.GetAction();
	const bool bTicked = Action != nullptr && Action->GetActionCheckState.IsBound() &&
						 Action->GetActionCheckState.Execute() == ECheckBoxState::Checked;
	return bTicked ? INVTEXT("\u2713") : FText::GetEmpty();
}

static const FSlateBrush* GetIcon(const FToolMenuEntry& Entry)
{
	return Entry.Icon.IsSet() ? Entry.Icon.Get().GetOptionalIcon() : nullptr;
}

static TSharedRef<SWidget> MakeIcon(const FToolMenuEntry& Entry)
{
	const FSlateBrush* const Icon = GetIcon(Entry);
	return SNew(SImage).Image(Icon).Visibility(
		Icon != nullptr ? EVisibility::HitTestInvisible : EVisibility::Collapsed);
}
}

void SToolMenuWidget::Construct(const FArguments& InArgs)
{
	MenuName = InArgs._MenuName;
	OnMenuLeft = InArgs._OnMenuLeft;
	Rebuild();
}

void SToolMenuWidget::Rebuild()
{
	const UToolMenus* const Menus = UToolMenus::Get();
	ShownVersion = Menus->GetVersion();
	const UToolMenu* const Menu = Menus->FindMenu(MenuName);
	Type = Menu != nullptr ? Menu->MenuType : EMultiBoxType::Menu;
	SubMenus.Empty();
	const TArray<FToolMenuSection> Sections = Menus->CollectSections(MenuName);
	if (Type == EMultiBoxType::Menu)
	{
		const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox);
		FillColumn(Column.Get(), Sections);
		ChildSlot[Column];
	}
	else
	{
		const TSharedRef<SHorizontalBox> Row = SNew(SHorizontalBox);
		FillRow(Row.Get(), Sections);
		ChildSlot[Row];
	}
}

void SToolMenuWidget::FillColumn(SVerticalBox& Column, const TArray<FToolMenuSection>& Sections)
{
	bool bIsFirst = true;
	for (const FToolMenuSection& Section : Sections)
	{
		if (Section.Blocks.Num() > 0 && !bIsFirst)
		{
			Column.AddSlot().AutoHeight().Padding(4.0f)[SNew(SSeparator).Thickness(ToolMenuWidget::SeparatorThickness)];
		}
		if (Section.Label.IsSet() && !Section.Label.Get().IsEmpty())
		{
			Column.AddSlot().AutoHeight().Padding(8.0f, 4.0f)[SNew(STextBlock)
																  .Text(Section.Label)
																  .ColorAndOpacity(FSlateColor::UseSubduedForeground())
																  .Font(FAppStyle::GetFontStyle("SmallFont"))];
		}
		for (const FToolMenuEntry& Entry : Section.Blocks)
		{
			bIsFirst = false;
			Column.AddSlot().AutoHeight()[Entry.IsSubMenu() ? MakeSubMenu(Entry) : MakeLine(Entry)];
		}
	}
}

void SToolMenuWidget::FillRow(SHorizontalBox& Row, const TArray<FToolMenuSection>& Sections)
{
	for (const FToolMenuSection& Section : Sections)
	{
		for (const FToolMenuEntry& Entry : Section.Blocks)
		{
			Row.AddSlot().AutoWidth()[Entry.IsSubMenu() ? MakeSubMenu(Entry) : MakeRowEntry(Entry)];
		}
	}
}

TSharedRef<SWidget> SToolMenuWidget::MakeButton(const FToolMenuEntry& Entry, const TSharedRef<SWidget>& Content) const
{
	const bool bIsColumn = Type == EMultiBoxType::Menu;
	// clang-format off
	return SNew(SButton)
		.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>(bIsColumn ? "Menu.Button" : "SimpleButton"))
		.ContentPadding(bIsColumn ? FMargin(6.0f, 3.0f) : FMargin(6.0f, 2.0f))
		.ToolTipText(Entry.ToolTip)
		.AccessibleText(Entry.Label)
		.IsEnabled_Lambda([Entry] { return ToolMenuWidget::CanExecute(Entry); })
		.Visibility_Lambda([Entry] { return ToolMenuWidget::GetVisibility(Entry); })
		.OnClicked_Lambda([Entry] { return ToolMenuWidget::Execute(Entry); })
		[
			Content
		];
	// clang-format on
}

TSharedRef<SWidget> SToolMenuWidget::MakeRowEntry(const FToolMenuEntry& Entry) const
{
	if (Entry.Type == EMultiBlockType::Separator)
	{
		return SNew(SSeparator).Orientation(Orient_Vertical).Thickness(ToolMenuWidget::SeparatorThickness);
	}
	const float Gap = ToolMenuWidget::GetIcon(Entry) != nullptr ? 4.0f : 0.0f;
	// clang-format off
	return MakeButton(Entry,
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(0.0f, 0.0f, Gap, 0.0f)
		[
			ToolMenuWidget::MakeIcon(Entry)
		]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
		[
			SNew(STextBlock).Text(Entry.Label)
		]);
	// clang-format on
}

TSharedRef<SWidget> SToolMenuWidget::MakeLine(const FToolMenuEntry& Entry) const
{
	if (Entry.Type == EMultiBlockType::Separator)
	{
		return SNew(SSeparator).Thickness(ToolMenuWidget::SeparatorThickness);
	}
	// clang-format off
	return MakeButton(Entry,
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
		[
			SNew(SBox).WidthOverride(ToolMenuWidget::IconSize).HAlign(HAlign_Center)
			[
				SNew(STextBlock).Text_Lambda([Entry] { return ToolMenuWidget::GetTick(Entry); })
			]
		]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(4.0f, 0.0f)
		[
			SNew(SBox).WidthOverride(ToolMenuWidget::IconSize)
			[
				ToolMenuWidget::MakeIcon(Entry)
			]
		]
		+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
		[
			SNew(STextBlock).Text(Entry.Label)
		]
		+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(32.0f, 0.0f, 4.0f, 0.0f)
		[
			SNew(STextBlock)
			.Text(Entry.GetInputText())
			.ColorAndOpacity(FSlateColor::UseSubduedForeground())
		]);
	// clang-format on
}

TSharedRef<SWidget> SToolMenuWidget::MakeSubMenu(const FToolMenuEntry& Entry)
{
	const bool bIsColumn = Type == EMultiBoxType::Menu;
	const FName SubMenuName = UToolMenus::JoinMenuPaths(MenuName, Entry.Name);
	const FText Arrow = bIsColumn ? INVTEXT("\u25B8") : FText::GetEmpty();
	const FButtonStyle* const Style =
		&FAppStyle::Get().GetWidgetStyle<FButtonStyle>(bIsColumn ? "Menu.Button" : "SimpleButton");
	TSharedPtr<SButton> Button;
	TSharedPtr<SMenuAnchor> Anchor;
	// clang-format off
	SAssignNew(Anchor, SMenuAnchor)
		.Placement(bIsColumn ? MenuPlacement_MenuRight : MenuPlacement_BelowAnchor)
		.OnGetMenuContent(this, &SToolMenuWidget::MakeMenu, SubMenuName)
		[
			SAssignNew(Button, SButton)
			.ButtonStyle(Style)
			.ContentPadding(bIsColumn ? FMargin(6.0f, 3.0f) : FMargin(8.0f, 3.0f))
			.ClickMethod(EButtonClickMethod::MouseDown)
			.ToolTipText(Entry.ToolTip)
			.AccessibleText(Entry.Label)
			.OnClicked(this, &SToolMenuWidget::OnSubMenuClicked, SubMenus.Num())
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().FillWidth(1.0f)
				[
					SNew(STextBlock).Text(Entry.Label)
				]
				+ SHorizontalBox::Slot().AutoWidth()
				[
					SNew(STextBlock).Text(Arrow)
				]
			]
		];
	// clang-format on
	SubMenus.Add({ Anchor.ToSharedRef(), Button.ToSharedRef() });
	return Anchor.ToSharedRef();
}

TSharedRef<SWidget> SToolMenuWidget::MakeMenu(FName SubMenuName)
{
	// clang-format off
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("Menu.Background"))
		.Padding(3.0f)
		[
			SNew(SToolMenuWidget)
			.MenuName(SubMenuName)
			.OnMenuLeft(this, &SToolMenuWidget::GoToNeighbour)
		];
	// clang-format on
}

void SToolMenuWidget::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	const UToolMenus* const Menus = UToolMenus::TryGet();
	if (Menus != nullptr && Menus->GetVersion() != ShownVersion)
	{
		Rebuild();
		// It is painted in this very frame.
		SlatePrepass();
		return;
	}
	const int32 Open = FindOpenSubMenu();
	for (int32 Index = 0; Index < SubMenus.Num() && Open != INDEX_NONE; ++Index)
	{
		if (Index != Open && SubMenus[Index].Button->IsHovered())
		{
			OpenSubMenu(Index, false);
			return;
		}
	}
}

FReply SToolMenuWidget::OnSubMenuClicked(int32 Index)
{
	if (SubMenus[Index].Anchor->ShouldOpenDueToClick())
	{
		OpenSubMenu(Index, false);
		return FReply::Handled();
	}
	// The menu has given the focus back to who had it before; the button does not want it.
	const TSharedPtr<SWidget> Focused = FSlateApplication::Get().GetKeyboardFocusedWidget();
	return Focused.IsValid() ? FReply::Handled().SetUserFocus(Focused.ToSharedRef(), EFocusCause::SetDirectly)
							 : FReply::Handled();
}

void SToolMenuWidget::OpenSubMenu(int32 Index, bool bByKey)
{
	const TSharedRef<SMenuAnchor> Anchor = SubMenus[Index].Anchor;
	const int32 Open = FindOpenSubMenu();
	if (Open != INDEX_NONE)
	{
		SubMenus[Open].Anchor->SetIsOpen(false);
	}
	Anchor->SetIsOpen(true);
	if (bByKey)
	{
		FSlateApplication::Get().ProcessExternalReply(Anchor, FReply::Handled().SetNavigation(EUINavigation::Next));
	}
}

int32 SToolMenuWidget::FindOpenSubMenu() const
{
	return SubMenus.IndexOfByPredicate([](const FSubMenu& SubMenu) { return SubMenu.Anchor->IsOpen(); });
}

int32 SToolMenuWidget::FindFocusedSubMenu() const
{
	return SubMenus.IndexOfByPredicate([](const FSubMenu& SubMenu) { return SubMenu.Button->HasKeyboardFocus(); });
}

void SToolMenuWidget::GoToNeighbour(EUINavigation Direction)
{
	const int32 Open = FindOpenSubMenu();
	if (!IsMenuBar())
	{
		// In a menu of a menu: back to this one, or out of it.
		if (Direction == EUINavigation::Previous && Open != INDEX_NONE)
		{
			SubMenus[Open].Anchor->SetIsOpen(false);
			return;
		}
		OnMenuLeft.ExecuteIfBound(Direction);
		return;
	}
	const int32 Current = Open != INDEX_NONE ? Open : FindFocusedSubMenu();
	const int32 Step = Direction == EUINavigation::Next ? 1 : SubMenus.Num() - 1;
	const int32 Neighbour = (FMath::Max(Current, 0) + Step) % SubMenus.Num();
	if (Open != INDEX_NONE)
	{
		OpenSubMenu(Neighbour, true);
		return;
	}
	FSlateApplication::Get().SetKeyboardFocus(SubMenus[Neighbour].Button, EFocusCause::Navigation);
}

FReply SToolMenuWidget::OnPreviewKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const FKey Key = InKeyEvent.GetKey();
	if (Type == EMultiBoxType::ToolBar)
	{
		return FReply::Unhandled();
	}
	const int32 Focused = FindFocusedSubMenu();
	if (Focused != INDEX_NONE && (Key == EKeys::Enter || Key == EKeys::SpaceBar ||
									 (IsMenuBar() && Key == EKeys::Down) || (!IsMenuBar() && Key == EKeys::Right)))
	{
		OpenSubMenu(Focused, true);
		return FReply::Handled();
	}
	if (Key == EKeys::Left || Key == EKeys::Right)
	{
		const EUINavigation Direction = Key == EKeys::Right ? EUINavigation::Next : EUINavigation::Previous;
		IsMenuBar() ? GoToNeighbour(Direction) : void(OnMenuLeft.ExecuteIfBound(Direction));
		return FReply::Handled();
	}
	return FReply::Unhandled();
}
