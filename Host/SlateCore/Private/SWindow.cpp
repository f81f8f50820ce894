#include "Widgets/SWindow.h"

#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"

void SWindow::Construct(const FArguments& InArgs)
{
	Title = InArgs._Title;
	ScreenPosition = InArgs._ScreenPosition;
	ClientSize = InArgs._ClientSize;
	ChildSlot[InArgs._Content.Widget];
}

void SWindow::SetContent(TSharedRef<SWidget> InContent)
{
	ChildSlot[InContent];
}

void SWindow::Resize(const FVector2D& NewClientSize)
{
	ClientSize = NewClientSize;
	Invalidate(EInvalidateWidgetReason::Layout);
}

FGeometry SWindow::GetWindowGeometryInScreen() const
{
	return FGeometry::MakeRoot(ClientSize, FSlateLayoutTransform(1.0f, ScreenPosition));
}

TSharedRef<FSlateAccessibleWidget> SWindow::CreateAccessibleWidget()
{
	return MakeShared<FSlateAccessibleWidget>(AsShared(), EAccessibleWidgetType::Window);
}
