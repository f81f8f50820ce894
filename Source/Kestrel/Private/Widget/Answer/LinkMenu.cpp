#include "Widget/Answer/LinkMenu.h"

#include "Agent/Text/DisplayText.h"
#include "Framework/Application/MenuStack.h"
#include "Framework/Application/SlateApplication.h"
#include "Framework/Text/TextLayout.h"
#include "HAL/PlatformApplicationMisc.h"
#include "HAL/PlatformProcess.h"
#include "Input/Reply.h"
#include "Layout/WidgetPath.h"
#include "SourceCodeNavigation.h"
#include "Styling/AppStyle.h"
#include "Widget/Answer/KestrelLink.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SBox.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/SMultiLineEditableText.h"

#define LOCTEXT_NAMESPACE "KestrelLinkMenu"

namespace KestrelLinkMenu
{
namespace
{
constexpr float MenuWidth = 320.0f;
constexpr float MenuPadding = 8.0f;

FText DescribeAddress(const FString& Address)
{
	const FString LookAlikes = KestrelDisplayText::FindLookAlikes(Address);
	const FText Shown = FText::FromString(KestrelDisplayText::EscapeLine(Address));
	return LookAlikes.IsEmpty()
			   ? Shown
			   : FText::Format(LOCTEXT("LookAlikes", "{0}\nCaution: characters that look like others: {1}"), Shown,
					 FText::FromString(LookAlikes));
}

TSharedRef<SWidget> MakeButton(const FText& Label, const TFunction<void()>& Act)
{
	return SNew(SButton).Text(Label).OnClicked_Lambda([Act]() {
		FSlateApplication::Get().DismissAllMenus();
		Act();
		return FReply::Handled();
	});
}

TSharedRef<SWidget> MakeMenu(const FString& Address)
{
	// clang-format off
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("Menu.Background"))
		.Padding(MenuPadding)
		[
			SNew(SBox)
			.WidthOverride(MenuWidth)
			[
				SNew(SVerticalBox)
				+ SVerticalBox::Slot()
				.AutoHeight()
				[
					SNew(SMultiLineEditableText)
					.Text(DescribeAddress(Address))
					.IsReadOnly(true)
					.AccessibleText(LOCTEXT("Address", "Where the link leads"))
					.AutoWrapText(true)
					.WrappingPolicy(ETextWrappingPolicy::AllowPerCharacterWrapping)
				]
				+ SVerticalBox::Slot()
				.AutoHeight()
				[
					MakeButton(LOCTEXT("Open", "Open in the browser"),
						[Address]() { FPlatformProcess::LaunchURL(*Address, nullptr, nullptr); })
				]
				+ SVerticalBox::Slot()
				.AutoHeight()
				[
					MakeButton(LOCTEXT("CopyAddress", "Copy the address"),
						[Address]() { FPlatformApplicationMisc::ClipboardCopy(*Address); })
				]
			]
		];
	// clang-format on
}
}

void Show(const TSharedRef<SWidget>& Owner, const FKestrelLink& Link, const FVector2D& ScreenPosition)
{
	if (!Link.File.IsEmpty())
	{
		FSourceCodeNavigation::OpenSourceFile(Link.File, Link.Line);
		return;
	}
	FSlateApplication::Get().PushMenu(Owner, FWidgetPath(), MakeMenu(Link.Address), ScreenPosition,
		FPopupTransitionEffect(FPopupTransitionEffect::ContextMenu));
}
}

#undef LOCTEXT_NAMESPACE
