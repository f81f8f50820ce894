#include "Widget/KestrelStyle.h"

#include "Agent/Chat/KestrelInterface.h"
#include "Brushes/SlateColorBrush.h"
#include "Brushes/SlateImageBrush.h"
#include "Brushes/SlateNoResource.h"
#include "Brushes/SlateRoundedBoxBrush.h"
#include "Framework/Application/SlateApplication.h"
#include "Interfaces/IPluginManager.h"
#include "Rendering/SlateRenderer.h"
#include "Styling/SlateColor.h"
#include "Styling/SlateStyle.h"
#include "Styling/SlateStyleRegistry.h"

TSharedPtr<FSlateStyleSet> FKestrelStyle::StyleInstance;

FName FKestrelStyle::GetStyleSetName()
{
	static const FName StyleSetName(TEXT("KestrelStyle"));
	return StyleSetName;
}

void FKestrelStyle::Initialize()
{
	if (!StyleInstance.IsValid())
	{
		StyleInstance = Create();
		FSlateStyleRegistry::RegisterSlateStyle(*StyleInstance);
	}
	ReloadTextures();
	FKestrelInterface::Get().Initialize();
}

void FKestrelStyle::Shutdown()
{
	FKestrelInterface::Get().Shutdown();
	if (StyleInstance.IsValid())
	{
		FSlateStyleRegistry::UnRegisterSlateStyle(*StyleInstance);
		ensureMsgf(StyleInstance.IsUnique(), TEXT("Somebody still holds the style set, whose images are about to go"));
		StyleInstance.Reset();
	}
}

void FKestrelStyle::ReloadTextures()
{
	if (FSlateApplication::IsInitialized())
	{
		FSlateApplication::Get().GetRenderer()->ReloadTextureResources();
	}
}

const ISlateStyle& FKestrelStyle::Get()
{
	return *StyleInstance;
}

namespace KestrelStyle
{
struct FNamedColor
{
	const TCHAR* Name;
	FLinearColor Color;
};

// Each has a contrast of at least 4.5 to 1 to the ground that it stands on.
const FNamedColor TextColors[] = {
	{ TEXT("Kestrel.Text"), FLinearColor(0.90f, 0.90f, 0.90f) },
	{ TEXT("Kestrel.Text.Quiet"), FLinearColor(0.40f, 0.40f, 0.40f) },
	{ TEXT("Kestrel.Text.Link"), FLinearColor(0.20f, 0.50f, 1.0f) },
	{ TEXT("Kestrel.Text.Code"), FLinearColor(0.88f, 0.58f, 0.30f) },
	{ TEXT("Kestrel.Code.Plain"), FLinearColor(0.75f, 0.75f, 0.75f) },
	{ TEXT("Kestrel.Code.Keyword"), FLinearColor(0.26f, 0.50f, 1.0f) },
	{ TEXT("Kestrel.Code.String"), FLinearColor(0.72f, 0.38f, 0.22f) },
	{ TEXT("Kestrel.Code.Number"), FLinearColor(0.42f, 0.66f, 0.38f) },
	{ TEXT("Kestrel.Code.Comment"), FLinearColor(0.20f, 0.42f, 0.16f) },
	{ TEXT("Kestrel.Code.Directive"), FLinearColor(0.58f, 0.30f, 0.62f) },
};
}

void FKestrelStyle::SetMarkdownStyles(FSlateStyleSet& Style)
{
	for (const KestrelStyle::FNamedColor& Color : KestrelStyle::TextColors)
	{
		Style.Set(Color.Name, FSlateColor(Color.Color));
	}
	constexpr float CornerRadius = 3.0f;
	const FLinearColor LineColor(0.06f, 0.06f, 0.06f);
	Style.Set("Kestrel.Block.Answer", new FSlateNoResource());
	Style.Set("Kestrel.Block.Code", new FSlateRoundedBoxBrush(FLinearColor(0.012f, 0.012f, 0.012f), CornerRadius));
	Style.Set("Kestrel.Quote", new FSlateRoundedBoxBrush(FLinearColor(0.10f, 0.10f, 0.10f), 1.0f));
	Style.Set("Kestrel.Line", new FSlateColorBrush(FLinearColor::White));
	Style.Set("Kestrel.Table.Head", new FSlateColorBrush(LineColor));
	Style.Set("Kestrel.Table.Row", new FSlateNoResource());
}

TSharedRef<FSlateStyleSet> FKestrelStyle::Create()
{
	const TSharedRef<FSlateStyleSet> Style = MakeShared<FSlateStyleSet>(GetStyleSetName());
	if (const TSharedPtr<IPlugin> Plugin = IPluginManager::Get().FindPlugin(TEXT("Kestrel")))
	{
		Style->SetContentRoot(Plugin->GetBaseDir() / TEXT("Resources"));
	}

	const FVector2D Icon16x16(16.0, 16.0);
	const FVector2D Icon40x40(40.0, 40.0);
	const FString IconPath = Style->RootToContentDir(FString(TEXT("PlaceholderButtonIcon")), TEXT(".svg"));
	Style->Set("Kestrel.Icon", new FSlateVectorImageBrush(IconPath, Icon16x16));
	Style->Set("Kestrel.Icon.Large", new FSlateVectorImageBrush(IconPath, Icon40x40));

	// The grounds of the conversation's blocks, by who speaks.
	constexpr float CornerRadius = 4.0f;
	Style->Set("Kestrel.Block.User", new FSlateRoundedBoxBrush(FLinearColor(0.014f, 0.036f, 0.073f), CornerRadius));
	Style->Set(
		"Kestrel.Block.Assistant", new FSlateRoundedBoxBrush(FLinearColor(0.028f, 0.028f, 0.028f), CornerRadius));
	Style->Set(
		"Kestrel.Block.Cancelled", new FSlateRoundedBoxBrush(FLinearColor(0.073f, 0.016f, 0.014f), CornerRadius));
	Style->Set("Kestrel.Block.Status", new FSlateNoResource());
	Style->Set("Kestrel.Approval", new FSlateRoundedBoxBrush(FLinearColor(0.028f, 0.028f, 0.028f), CornerRadius,
									   FLinearColor(0.25f, 0.14f, 0.03f), 1.0f));

	SetMarkdownStyles(*Style);
	const FLinearColor PromptColor(0.005f, 0.005f, 0.005f);
	Style->Set("Kestrel.Prompt",
		new FSlateRoundedBoxBrush(PromptColor, CornerRadius, FLinearColor(0.07f, 0.07f, 0.07f), 1.0f));
	Style->Set("Kestrel.Prompt.Focused",
		new FSlateRoundedBoxBrush(PromptColor, CornerRadius, FLinearColor(0.0f, 0.16f, 0.75f), 1.0f));
	const FLinearColor ListColor(0.018f, 0.018f, 0.018f);
	Style->Set("Kestrel.Completion",
		new FSlateRoundedBoxBrush(ListColor, CornerRadius, FLinearColor(0.07f, 0.07f, 0.07f), 1.0f));
	Style->Set("Kestrel.Completion.Row", new FSlateNoResource());
	Style->Set(
		"Kestrel.Completion.Selected", new FSlateRoundedBoxBrush(FLinearColor(0.0f, 0.045f, 0.20f), CornerRadius));
	Style->Set("Kestrel.Block.Diff", new FSlateRoundedBoxBrush(FLinearColor(0.012f, 0.012f, 0.012f), CornerRadius));
	return Style;
}
