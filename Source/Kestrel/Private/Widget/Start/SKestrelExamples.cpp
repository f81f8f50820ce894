#include "Widget/Start/SKestrelExamples.h"

#include "Agent/Chat/KestrelInterface.h"
#include "Agent/Text/DisplayText.h"
#include "AssetRegistry/IAssetRegistry.h"
#include "Kestrel.h"
#include "Layout/Margin.h"
#include "Layout/Visibility.h"
#include "Misc/Attribute.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Types/WidgetActiveTimerDelegate.h"
#include "Widget/Answer/MarkdownStyle.h"
#include "Widget/Errors/SKestrelFailureHelp.h"
#include "Widget/Start/ProjectExamples.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelExamples"

namespace KestrelExamples
{
constexpr float SidePadding = 8.0f;
constexpr float RowGap = 4.0f;
constexpr float PartGap = 12.0f;
constexpr float RefreshSeconds = 0.5f;

/** As far as it is known without asking the service: what answers there, it does not say. */
FKestrelFailureHelp DescribeConnection()
{
	const FText Host = FText::FromString(KestrelDisplayText::EscapeLine(FKestrelModule::GetApiHost()));
	if (FKestrelModule::IsStageRefused())
	{
		return { LOCTEXT("Refused", "The address in Config/DefaultPlugin.ini is refused, so nothing can be sent."),
			EKestrelRemedy::OpenServiceFile };
	}
	if (FKestrelModule::GetApiKey().IsEmpty())
	{
		return { FText::Format(LOCTEXT("NoKey", "Requests go to {0}. You have not entered a key yet."), Host),
			EKestrelRemedy::OpenSettings };
	}
	return { FKestrelModule::IsServiceOfProject()
				 ? FText::Format(LOCTEXT("OfProject", "Requests go to {0}, as this project says."), Host)
				 : FText::Format(LOCTEXT("OfBuild", "Requests go to {0}."), Host),
		EKestrelRemedy::TestConnection };
}
}

void SKestrelExamples::Construct(const FArguments& InArgs)
{
	OnChosen = InArgs._OnChosen;
	SetVisibility(MakeAttributeSP(this, &SKestrelExamples::GetExamplesVisibility));
	const FTextBlockStyle Small = KestrelMarkdownStyle::MakeSmallStyle();
	// clang-format off
	ChildSlot
	[
		SNew(SVerticalBox)
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(KestrelExamples::SidePadding, 0.0f)
		[
			SNew(STextBlock)
			.Text(LOCTEXT("Heading", "To begin with, in this project:"))
			.TextStyle(&Small)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(KestrelExamples::SidePadding, 0.0f)
		[
			SAssignNew(Rows, SVerticalBox)
		]
		+ SVerticalBox::Slot()
		.AutoHeight()
		.Padding(0.0f, KestrelExamples::PartGap, 0.0f, 0.0f)
		[
			SNew(SKestrelFailureHelp).Help(KestrelExamples::DescribeConnection())
		]
	];
	// clang-format on
	Refresh();
	const IAssetRegistry* Registry = IAssetRegistry::Get();
	if (Registry && Registry->IsLoadingAssets())
	{
		RegisterActiveTimer(KestrelExamples::RefreshSeconds,
			FWidgetActiveTimerDelegate::CreateSP(this, &SKestrelExamples::RefreshWhileAssetsLoad));
	}
}

EVisibility SKestrelExamples::GetExamplesVisibility() const
{
	const FKestrelTranscript& Transcript = FKestrelInterface::Get().GetTranscript();
	return Transcript.GetEntries().IsEmpty() ? EVisibility::Visible : EVisibility::Collapsed;
}

void SKestrelExamples::Refresh()
{
	const TArray<FString> Prompts = KestrelProjectExamples::Find();
	if (Prompts == Shown)
	{
		return;
	}
	Shown = Prompts;
	Rows->ClearChildren();
	for (const FString& Prompt : Shown)
	{
		// clang-format off
		Rows->AddSlot()
		.AutoHeight()
		.HAlign(HAlign_Left)
		.Padding(0.0f, KestrelExamples::RowGap, 0.0f, 0.0f)
		[
			SNew(SButton)
			.ToolTipText(LOCTEXT("ExampleToolTip", "Put this into the prompt box"))
			.AccessibleText(FText::FromString(Prompt))
			.OnClicked(this, &SKestrelExamples::OnExampleClicked, Prompt)
			[
				SNew(STextBlock).Text(FText::FromString(Prompt)).AutoWrapText(true)
			]
		];
		// clang-format on
	}
}

EActiveTimerReturnType SKestrelExamples::RefreshWhileAssetsLoad(double InCurrentTime, float InDeltaTime)
{
	Refresh();
	const IAssetRegistry* Registry = IAssetRegistry::Get();
	return Registry && Registry->IsLoadingAssets() ? EActiveTimerReturnType::Continue : EActiveTimerReturnType::Stop;
}

FReply SKestrelExamples::OnExampleClicked(FString Prompt) const
{
	OnChosen.ExecuteIfBound(Prompt);
	return FReply::Handled();
}

#undef LOCTEXT_NAMESPACE
