#include "Widgets/SWindow.h"

#include "GenericPlatform/GenericWindow.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"

void SWindow::Construct(const FArguments& InArgs)
{
	Title = InArgs._Title;
	ScreenPosition = InArgs._ScreenPosition;
	ClientSize = InArgs._ClientSize;
	bIsAutoCentered = InArgs._AutoCenter != EAutoCenter::None;
	// clang-format off
	ChildSlot
	[
		SAssignNew(Overlay, SOverlay)
		+ SOverlay::Slot().Expose(ContentSlot)
		[
			InArgs._Content.Widget
		]
	];
	// clang-format on
}

void SWindow::SetContent(TSharedRef<SWidget> InContent)
{
	ContentSlot->AttachWidget(InContent);
}

TSharedRef<SWidget> SWindow::GetContent() const
{
	return ContentSlot->GetWidget();
}

SOverlay::FScopedWidgetSlotArguments SWindow::AddOverlaySlot(const int32 ZOrder)
{
	return Overlay->AddSlot(ZOrder);
}

void SWindow::RemoveOverlaySlot(const TSharedRef<SWidget>& InContent)
{
	Overlay->RemoveSlot(InContent);
}

void SWindow::Resize(const FVector2D& NewClientSize)
{
	ClientSize = NewClientSize;
	Invalidate(EInvalidateWidgetReason::Layout);
}

float SWindow::GetDPIScaleFactor() const
{
	return NativeWindow.IsValid() ? NativeWindow->GetDPIScaleFactor() : 1.0f;
}

FGeometry SWindow::GetWindowGeometryInScreen() const
{
	const float Scale = GetDPIScaleFactor();
	return FGeometry::MakeRoot(ClientSize / Scale, FSlateLayoutTransform(Scale, ScreenPosition));
}

void SWindow::DrawAttention(const FWindowDrawAttentionParameters& Parameters)
{
	if (NativeWindow.IsValid())
	{
		NativeWindow->DrawAttention(Parameters);
	}
}

TSharedRef<FSlateAccessibleWidget> SWindow::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleWidget>(AsShared(), EAccessibleWidgetType::Window);
}
