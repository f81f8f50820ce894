#include "Widget/Errors/SKestrelFailureHelp.h"

#include "Agent/Backend/HTTPAPI.h"
#include "Framework/Docking/TabManager.h"
#include "Kestrel.h"
#include "Layout/Margin.h"
#include "Misc/Paths.h"
#include "SourceCodeNavigation.h"
#include "Types/SlateEnums.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "SKestrelFailureHelp"

namespace KestrelFailureHelp
{
constexpr float SidePadding = 8.0f;
constexpr float ButtonGap = 4.0f;
const FName OutputLogTab("OutputLog");

FText GetLabel(EKestrelRemedy Remedy)
{
	switch (Remedy)
	{
	case EKestrelRemedy::OpenSettings:
		return LOCTEXT("OpenSettings", "Open settings");
	case EKestrelRemedy::TestConnection:
		return LOCTEXT("TestConnection", "Test connection");
	case EKestrelRemedy::OpenServiceFile:
		return LOCTEXT("OpenServiceFile", "Open DefaultPlugin.ini");
	case EKestrelRemedy::ShowLog:
		break;
	}
	return LOCTEXT("ShowLog", "Show log");
}
}

void SKestrelFailureHelp::Construct(const FArguments& InArgs)
{
	Remedy = InArgs._Help.Remedy;
	// clang-format off
	ChildSlot
	[
		SNew(SBox)
		.Padding(FMargin(KestrelFailureHelp::SidePadding, 0.0f))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot()
			.AutoHeight()
			[
				SAssignNew(Sentence, STextBlock)
				.Text(InArgs._Help.Sentence)
				.AutoWrapText(true)
			]
			+ SVerticalBox::Slot()
			.AutoHeight()
			.HAlign(HAlign_Left)
			.Padding(0.0f, KestrelFailureHelp::ButtonGap, 0.0f, 0.0f)
			[
				SNew(SButton)
				.Text(KestrelFailureHelp::GetLabel(Remedy))
				.OnClicked(this, &SKestrelFailureHelp::OnClicked)
			]
		]
	];
	// clang-format on
}

FReply SKestrelFailureHelp::OnClicked()
{
	switch (Remedy)
	{
	case EKestrelRemedy::OpenSettings:
		FKestrelModule::OpenSettings();
		break;
	case EKestrelRemedy::TestConnection:
		TestConnection();
		break;
	case EKestrelRemedy::OpenServiceFile:
		FSourceCodeNavigation::OpenSourceFile(
			FPaths::ConvertRelativePathToFull(FPaths::ProjectConfigDir() / TEXT("DefaultPlugin.ini")));
		break;
	case EKestrelRemedy::ShowLog:
		FGlobalTabmanager::Get()->TryInvokeTab(KestrelFailureHelp::OutputLogTab);
		break;
	}
	return FReply::Handled();
}

void SKestrelFailureHelp::TestConnection()
{
	if (bIsTesting)
	{
		return;
	}
	bIsTesting = true;
	Sentence->SetText(LOCTEXT("Testing", "Asking the service\u2026"));
	FHTTPAPI::Get().TestConnection(FOnConnectionTestedDelegate::CreateSP(this, &SKestrelFailureHelp::ShowFinding));
}

void SKestrelFailureHelp::ShowFinding(const FText& Finding)
{
	bIsTesting = false;
	Sentence->SetText(Finding);
}

#undef LOCTEXT_NAMESPACE
