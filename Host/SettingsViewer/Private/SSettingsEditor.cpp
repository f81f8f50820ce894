#include "SSettingsEditor.h"

#include "HostPropertyEdit.h"
#include "PropertyRows.h"
#include "SettingsPage.h"
#include "Styling/AppStyle.h"
#include "UObject/UnrealType.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SettingsViewer"

namespace SettingsEditor
{
// Slate units.
constexpr float SectionListWidth = 220.0f;

static const FLinearColor ErrorColor(FColor(255, 110, 90));
}

FString FSettingsPage::GetValue(const FString& Path) const
{
	FString IgnoredError;
	UObject* const Object = GetObject();
	return Object != nullptr ? FHostPropertyEdit::GetValue(*Object, Path, IgnoredError) : FString();
}

void FSettingsPage::SetValue(const FString& Path, const FString& Text)
{
	UObject* const Object = GetObject();
	if (Object == nullptr)
	{
		return;
	}
	// A box that is left commits its text, whether or not it was changed.
	GetValue(Path).Equals(Text) ? Error.Empty() : Finish(FHostPropertyEdit::SetValue(*Object, Path, Text));
}

void FSettingsPage::AddElement(const FString& Path)
{
	if (UObject* const Object = GetObject())
	{
		Finish(FHostPropertyEdit::AddElement(*Object, Path));
	}
}

void FSettingsPage::InsertElement(const FString& Path, int32 Index)
{
	if (UObject* const Object = GetObject())
	{
		Finish(FHostPropertyEdit::InsertElement(*Object, Path, Index));
	}
}

void FSettingsPage::RemoveElement(const FString& Path, int32 Index)
{
	if (UObject* const Object = GetObject())
	{
		Finish(FHostPropertyEdit::RemoveElement(*Object, Path, Index));
	}
}

void FSettingsPage::ClearElements(const FString& Path)
{
	if (UObject* const Object = GetObject())
	{
		Finish(FHostPropertyEdit::ClearElements(*Object, Path));
	}
}

void FSettingsPage::ResetDefaults()
{
	if (GetObject() != nullptr && Section->ResetDefaults())
	{
		Error.Empty();
	}
}

void FSettingsPage::Finish(const FString& EditError)
{
	Error = EditError;
	if (Error.IsEmpty())
	{
		FHostPropertyEdit::NotifySection(Section.Get());
	}
}

SSettingsEditor::~SSettingsEditor()
{
	if (Container.IsValid())
	{
		Container->OnCategoryModified().RemoveAll(this);
	}
}

void SSettingsEditor::Construct(const FArguments& InArgs, const TSharedPtr<ISettingsContainer>& InContainer)
{
	Container = InContainer;
	// clang-format off
	ChildSlot
	[
		SNew(SHorizontalBox)
		+ SHorizontalBox::Slot().AutoWidth()
		[
			SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Recessed")).Padding(8.0f)
			[
				SNew(SBox).WidthOverride(SettingsEditor::SectionListWidth)
				[
					SNew(SScrollBox)
					+ SScrollBox::Slot()
					[
						SAssignNew(SectionList, SVerticalBox)
					]
				]
			]
		]
		+ SHorizontalBox::Slot().FillWidth(1.0f)
		[
			SNew(SBorder).BorderImage(FAppStyle::GetBrush("Brushes.Panel")).Padding(12.0f, 8.0f)
			[
				MakePageFrame()
			]
		]
	];
	// clang-format on
	if (Container.IsValid())
	{
		Container->OnCategoryModified().AddRaw(this, &SSettingsEditor::OnCategoryModified);
	}
	RebuildSections();
}

TSharedRef<SWidget> SSettingsEditor::MakePageFrame()
{
	// clang-format off
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight()
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().FillWidth(1.0f).VAlign(VAlign_Center)
			[
				SNew(STextBlock)
				.Text(this, &SSettingsEditor::GetTitle)
				.TextStyle(&FAppStyle::Get().GetWidgetStyle<FTextBlockStyle>("LargeText"))
			]
			+ SHorizontalBox::Slot().AutoWidth()
			[
				SNew(SButton)
				.ContentPadding(FMargin(8.0f, 3.0f))
				.Text(LOCTEXT("Reset", "Reset to Defaults"))
				.ToolTipText(LOCTEXT("ResetTip", "Gives all values of this page back the ones they begin with"))
				.IsEnabled_Lambda([this] { return Page.IsValid() && Page->GetSection()->CanResetDefaults(); })
				.OnClicked(this, &SSettingsEditor::OnResetClicked)
			]
		]
		+ SVerticalBox::Slot().AutoHeight().Padding(0.0f, 2.0f, 0.0f, 8.0f)
		[
			SNew(STextBlock)
			.Text(this, &SSettingsEditor::GetDescription)
			.ColorAndOpacity(FSlateColor::UseSubduedForeground())
		]
		+ SVerticalBox::Slot().AutoHeight()
		[
			SNew(SEditableTextBox)
			.HintText(LOCTEXT("Search", "Search"))
			.RevertTextOnEscape(true)
			.ClearKeyboardFocusOnCommit(false)
			.OnTextChanged(this, &SSettingsEditor::OnSearchTextChanged)
		]
		+ SVerticalBox::Slot().AutoHeight().Padding(0.0f, 4.0f)
		[
			SNew(STextBlock)
			.Text(this, &SSettingsEditor::GetError)
			.ColorAndOpacity(FSlateColor(SettingsEditor::ErrorColor))
			.Visibility_Lambda([this] {
				return GetError().IsEmpty() ? EVisibility::Collapsed : EVisibility::HitTestInvisible;
			})
		]
		+ SVerticalBox::Slot().FillHeight(1.0f)
		[
			SAssignNew(ScrollBox, SScrollBox)
			+ SScrollBox::Slot()
			[
				SAssignNew(Rows, SVerticalBox)
			]
		];
	// clang-format on
}

void SSettingsEditor::OnCategoryModified(const FName& CategoryName)
{
	bSectionsAreStale = true;
}

void SSettingsEditor::RebuildSections()
{
	bSectionsAreStale = false;
	SectionList->ClearChildren();
	TArray<TSharedPtr<ISettingsCategory>> Categories;
	if (Container.IsValid())
	{
		Container->GetCategories(Categories);
	}
	TSharedPtr<ISettingsSection> Shown;
	for (const TSharedPtr<ISettingsCategory>& Category : Categories)
	{
		SectionList->AddSlot().AutoHeight().Padding(
			0.0f, 4.0f)[SNew(STextBlock).Text(Category->GetDisplayName()).Font(FAppStyle::GetFontStyle("BoldFont"))];
		TArray<TSharedPtr<ISettingsSection>> Sections;
		Category->GetSections(Sections);
		for (const TSharedPtr<ISettingsSection>& Section : Sections)
		{
			const bool bIsShown = Page.IsValid() && Page->GetSection() == Section;
			Shown = bIsShown || !Shown.IsValid() ? Section : Shown;
			const FOnClicked OnClicked = FOnClicked::CreateLambda([this, Section] {
				ShowSection(Section);
				return FReply::Handled();
			});
			// clang-format off
			SectionList->AddSlot().AutoHeight()
			[
				SNew(SButton)
				.ButtonStyle(&FAppStyle::Get().GetWidgetStyle<FButtonStyle>("SimpleButton"))
				.ContentPadding(FMargin(12.0f, 3.0f))
				.Text(Section->GetDisplayName())
				.ToolTipText(Section->GetDescription())
				.OnClicked(OnClicked)
			];
			// clang-format on
		}
	}
	ShowSection(Shown);
}

void SSettingsEditor::Select(const FName& CategoryName, const FName& SectionName)
{
	const TSharedPtr<ISettingsCategory> Category = Container.IsValid() ? Container->GetCategory(CategoryName) : nullptr;
	if (!Category.IsValid())
	{
		return;
	}
	TSharedPtr<ISettingsSection> Section = Category->GetSection(SectionName);
	if (!Section.IsValid())
	{
		TArray<TSharedPtr<ISettingsSection>> Sections;
		Section = Category->GetSections(Sections) > 0 ? Sections[0] : nullptr;
	}
	if (Section.IsValid())
	{
		ShowSection(Section);
	}
}

void SSettingsEditor::ShowSection(const TSharedPtr<ISettingsSection>& Section)
{
	const bool bIsOther = !Page.IsValid() || Page->GetSection() != Section;
	if (bIsOther && Section.IsValid())
	{
		Page = MakeShared<FSettingsPage>(Section.ToSharedRef());
		Section->Select();
		ScrollBox->ScrollToStart();
	}
	else if (!Section.IsValid())
	{
		Page.Reset();
	}
	RebuildRows();
}

void SSettingsEditor::RebuildRows()
{
	bRowsAreStale = false;
	ShownShape = GetShape();
	Rows->ClearChildren();
	const int32 NumShown = Page.IsValid() ? FPropertyRows(Page.ToSharedRef(), Filter).AddTo(*Rows) : 0;
	if (NumShown == 0)
	{
		const FText Nothing = Filter.IsEmpty() ? LOCTEXT("NoSettings", "There is nothing to set here.")
											   : LOCTEXT("NoMatch", "No setting has this in its name.");
		Rows->AddSlot().AutoHeight().Padding(6.0f)[SNew(STextBlock).Text(Nothing)];
	}
}

FString SSettingsEditor::GetShape() const
{
	FString Shape;
	const UObject* const Object = Page.IsValid() ? Page->GetObject() : nullptr;
	if (Object == nullptr)
	{
		return Shape;
	}
	for (TFieldIterator<FArrayProperty> It(Object->GetClass()); It; ++It)
	{
		Shape.AppendInt(FScriptArrayHelper(*It, It->ContainerPtrToValuePtr<void>(Object)).Num());
		Shape.AppendChar(TEXT(' '));
	}
	return Shape + TEXT("there");
}

void SSettingsEditor::Tick(const FGeometry& AllottedGeometry, const double InCurrentTime, const float InDeltaTime)
{
	// Buttons of the page change arrays, and so do others.
	const bool bRebuildRows = bRowsAreStale || !GetShape().Equals(ShownShape);
	if (!bSectionsAreStale && !bRebuildRows)
	{
		return;
	}
	bSectionsAreStale ? RebuildSections() : RebuildRows();
	// What is new is painted in this very frame.
	SlatePrepass();
}

void SSettingsEditor::OnSearchTextChanged(const FText& Text)
{
	Filter = Text.ToString().TrimStartAndEnd();
	// In the next frame: until then, what is on the screen can be clicked.
	bRowsAreStale = true;
}

FReply SSettingsEditor::OnResetClicked()
{
	Page->ResetDefaults();
	return FReply::Handled();
}

FText SSettingsEditor::GetTitle() const
{
	TSharedPtr<ISettingsCategory> Category = Page.IsValid() ? Page->GetSection()->GetCategory().Pin() : nullptr;
	return Category.IsValid() ? FText::Format(LOCTEXT("Title", "{0} - {1}"), Category->GetDisplayName(),
									Page->GetSection()->GetDisplayName())
							  : FText::GetEmpty();
}

FText SSettingsEditor::GetDescription() const
{
	return Page.IsValid() ? Page->GetSection()->GetDescription() : FText::GetEmpty();
}

FText SSettingsEditor::GetError() const
{
	return Page.IsValid() ? FText::FromString(Page->GetError()) : FText::GetEmpty();
}

#undef LOCTEXT_NAMESPACE
