#include "Rendering/SlateRenderer.h"

#include "Fonts/FontMeasure.h"
#include "Misc/Paths.h"
#include "Rendering/SlateNullRenderer.h"
#include "Styling/ISlateStyle.h"
#include "Styling/SlateStyleRegistry.h"

DEFINE_LOG_CATEGORY_STATIC(LogSlateRenderer, Log, All);

void FSlateRenderer::ReloadTextureResources()
{
	FSlateStyleRegistry::IterateAllStyles([this](const ISlateStyle& Style) {
		LoadStyleResources(Style);
		return true;
	});
}

void FSlateRenderer::LoadStyleResources(const ISlateStyle& Style)
{
	TArray<const FSlateBrush*> Brushes;
	Style.GetResources(Brushes);
	for (const FSlateBrush* const Brush : Brushes)
	{
		const FString File = Brush->GetResourceName().IsNone() ? FString() : Brush->GetResourceName().ToString();
		if (!File.IsEmpty() && !ReportedFiles.Contains(File) && !FPaths::FileExists(File))
		{
			ReportedFiles.Add(File);
			UE_LOG(LogSlateRenderer, Warning, TEXT("The image '%s' of the style '%s' does not exist"), *File,
				*Style.GetStyleSetName().ToString());
		}
	}
}

FSlateNullRenderer::FSlateNullRenderer()
	: FSlateRenderer(MakeShared<FFixedFontMeasure>())
{
}
