#include "SContentBrowser.h"

#include "AssetDefinitionRegistry.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "AssetRegistry/HostForeignPackages.h"
#include "DragAndDrop/AssetDragDropOp.h"
#include "Editor.h"
#include "Framework/Application/SlateApplication.h"
#include "InputCoreTypes.h"
#include "Styling/AppStyle.h"
#include "Subsystems/AssetEditorSubsystem.h"
#include "UObject/Package.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "ContentBrowser"

namespace ContentBrowser
{
// Slate units.
constexpr float RowHeight = 26.0f;
constexpr float BadgeSize = 18.0f;
// Of the width, for name, class and folder.
constexpr float NameShare = 0.4f;
constexpr float ClassShare = 0.25f;
constexpr float FolderShare = 0.35f;

/** Of the kind of assets; kinds that nobody has described still differ from one another. */
FLinearColor GetColor(const FAssetListItem& Item)
{
	static const FColor Colors[] = { FColor(138, 86, 182), FColor(176, 66, 88), FColor(62, 138, 98),
		FColor(176, 122, 46), FColor(92, 116, 138) };
	if (Item.bForeign)
	{
		return FLinearColor(FColor(96, 96, 96));
	}
	const FAssetData& Asset = Item.Data;
	if (const UAssetDefinition* const Definition = UAssetDefinitionRegistry::Get()->GetAssetDefinitionForAsset(Asset))
	{
		return Definition->GetAssetColor();
	}
	uint32 Sum = 0;
	for (const TCHAR Letter : Asset.AssetClassPath.GetAssetName().ToString())
	{
		Sum = Sum * 31 + Letter;
	}
	return FLinearColor(Colors[Sum % UE_ARRAY_COUNT(Colors)]);
}

/** The first letter of the class, on its colour. */
TSharedRef<SWidget> MakeBadge(const FAssetListItem& Item)
{
	const TSharedRef<STextBlock> Letter = SNew(STextBlock)
											  .Text(FText::FromString(Item.ClassName.Left(1)))
											  .Font(FAppStyle::GetFontStyle("BoldFont"))
											  .ColorAndOpacity(FLinearColor::White);
	// The class itself is read out.
	Letter->SetAccessibleBehavior(EAccessibleBehavior::NotAccessible);
	// clang-format off
	return SNew(SBox).WidthOverride(BadgeSize).HeightOverride(BadgeSize)
		[
			SNew(SBorder)
			.BorderImage(FAppStyle::GetBrush("WhiteRoundedBrush"))
			.BorderBackgroundColor(FSlateColor(GetColor(Item)))
			.HAlign(HAlign_Center)
			.VAlign(VAlign_Center)
			.Padding(0.0f)
			[
				Letter
			]
		];
	// clang-format on
}

/** With an asterisk as long as the asset has changes that are not saved. */
FText GetNameText(TSharedPtr<FAssetListItem> Item)
{
	const UPackage* const Package = FindPackage(nullptr, *Item->Data.PackageName.ToString());
	const FString Name = Item->Data.AssetName.ToString();
	return FText::FromString(Package && Package->IsDirty() ? Name + TEXT("*") : Name);
}
}

void SContentBrowser::Construct(const FArguments& InArgs)
{
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight().Padding(4.0f)
		[
			SNew(SEditableTextBox)
			.HintText(LOCTEXT("Search", "Search Assets"))
			.ClearKeyboardFocusOnCommit(false)
			.OnTextChanged_Lambda([this](const FText& Text) { Assets.SetFilter(Text.ToString()); })
			.OnKeyDownHandler(this, &SContentBrowser::OnSearchKeyDown)
		]
		+ SVerticalBox::Slot().FillHeight(1.0f)
		[
			SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Recessed")).Padding(4.0f)
			[
				SAssignNew(List, SListView<FItem>)
				.AccessibleText(LOCTEXT("Assets", "Assets"))
				.ListItemsSource(&Assets.GetShown())
				.ItemHeight(ContentBrowser::RowHeight)
				.OnGenerateRow(this, &SContentBrowser::MakeRow)
				.OnMouseButtonDoubleClick(this, &SContentBrowser::Open)
				.OnSelectionChanged_Lambda([this](FItem, ESelectInfo::Type) { Complaint = FText::GetEmpty(); })
				.OnKeyDownHandler(this, &SContentBrowser::OnListKeyDown)
			]
		]
		+ SVerticalBox::Slot().AutoHeight().Padding(6.0f, 3.0f)
		[
			SNew(STextBlock).Text(this, &SContentBrowser::GetStatus)
		]
	];
	// clang-format on
	Assets.Update();
}

void SContentBrowser::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	if (Assets.Update())
	{
		List->RequestListRefresh();
	}
}

TSharedRef<ITableRow> SContentBrowser::MakeRow(FItem Item, const TSharedRef<STableViewBase>& Owner)
{
	// clang-format off
	const FText Problem = Item->bForeign ? FHostForeignPackages::Describe(Item->Data.PackageName) : FText::GetEmpty();
	return SNew(STableRow<FItem>, Owner)
		.ToolTipText(Problem)
		.OnDragDetected(this, &SContentBrowser::OnRowDragged, Item)
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(0.0f, 0.0f, 8.0f, 0.0f)
			[
				ContentBrowser::MakeBadge(*Item)
			]
			+ SHorizontalBox::Slot().FillWidth(ContentBrowser::NameShare).VAlign(VAlign_Center)
			[
				SNew(STextBlock)
				.Text_Static(&ContentBrowser::GetNameText, Item)
				.ColorAndOpacity(Item->bForeign ? FSlateColor::UseSubduedForeground() : FSlateColor::UseForeground())
				.Clipping(EWidgetClipping::ClipToBounds)
			]
			+ SHorizontalBox::Slot().FillWidth(ContentBrowser::ClassShare).VAlign(VAlign_Center)
			[
				SNew(STextBlock)
				.Text(FText::FromString(Item->ClassName))
				.ColorAndOpacity(FSlateColor::UseSubduedForeground())
				.Clipping(EWidgetClipping::ClipToBounds)
			]
			+ SHorizontalBox::Slot().FillWidth(ContentBrowser::FolderShare).VAlign(VAlign_Center)
			[
				SNew(STextBlock)
				.Text(FText::FromName(Item->Data.PackagePath))
				.ColorAndOpacity(FSlateColor::UseSubduedForeground())
				.Clipping(EWidgetClipping::ClipToBounds)
			]
		];
	// clang-format on
}

FReply SContentBrowser::OnRowDragged(const FGeometry& MyGeometry, const FPointerEvent& MouseEvent, FItem Item) const
{
	return FReply::Handled().BeginDragDrop(FAssetDragDropOp::New(TArray<FAssetData>{ Item->Data }));
}

void SContentBrowser::GetSelectedAssets(TArray<FAssetData>& OutAssets) const
{
	for (const FItem& Item : List->GetSelectedItems())
	{
		OutAssets.Add(Item->Data);
	}
}

FReply SContentBrowser::OnListKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const TArray<FItem> Selected = List->GetSelectedItems();
	if (InKeyEvent.GetKey() != EKeys::Enter || Selected.Num() == 0)
	{
		return FReply::Unhandled();
	}
	Open(Selected[0]);
	return FReply::Handled();
}

FReply SContentBrowser::OnSearchKeyDown(const FGeometry& MyGeometry, const FKeyEvent& InKeyEvent)
{
	const bool bGoesDown = InKeyEvent.GetKey() == EKeys::Down || InKeyEvent.GetKey() == EKeys::Enter;
	if (!bGoesDown || Assets.GetShown().Num() == 0)
	{
		return FReply::Unhandled();
	}
	Assets.Update();
	List->SetSelection(Assets.GetShown()[0], ESelectInfo::OnNavigation);
	return FReply::Handled().SetUserFocus(List.ToSharedRef(), EFocusCause::Navigation);
}

void SContentBrowser::Open(FItem Item)
{
	if (Item->bForeign)
	{
		Complaint = FHostForeignPackages::Describe(Item->Data.PackageName);
		return;
	}
	const bool bOpened = GEditor && GEditor->GetEditorSubsystem<UAssetEditorSubsystem>()->OpenEditorForAsset(
										Item->Data.GetObjectPathString());
	Complaint = bOpened ? FText::GetEmpty()
						: FText::Format(LOCTEXT("NoEditor", "There is no editor for {0} ({1})."),
							  FText::FromName(Item->Data.AssetName), FText::FromString(Item->ClassName));
}

FText SContentBrowser::GetStatus() const
{
	if (!Complaint.IsEmpty())
	{
		return Complaint;
	}
	const FText Count = FText::AsNumber(Assets.GetNumAssets());
	const FText Sum =
		Assets.GetShown().Num() == Assets.GetNumAssets()
			? FText::Format(LOCTEXT("All", "Assets: {0}"), Count)
			: FText::Format(LOCTEXT("Some", "Assets: {0} of {1}"), FText::AsNumber(Assets.GetShown().Num()), Count);
	return FAssetRegistryModule::GetRegistry().IsLoadingAssets()
			   ? FText::Format(LOCTEXT("Loading", "{0}, looking for more"), Sum)
			   : Sum;
}

#undef LOCTEXT_NAMESPACE
