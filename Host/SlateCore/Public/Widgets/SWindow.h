#pragma once

#include "CoreMinimal.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/SOverlay.h"

class FGenericWindow;
class SWindow;
struct FWindowDrawAttentionParameters;

/** Where a window opens. */
enum class EAutoCenter : uint8
{
	/** At its ScreenPosition. */
	None,
	PrimaryWorkArea,
	PreferredWorkArea,
};

DECLARE_DELEGATE_OneParam(FRequestDestroyWindowOverride, const TSharedRef<SWindow>&);

/**
 * The top of a widget tree. Added to the application it is laid out and painted each frame, with or without a window of
 * the operating system behind it.
 */
class SWindow : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SWindow)
		: _AutoCenter(EAutoCenter::PreferredWorkArea)
		, _ClientSize(FVector2D(1280.0, 720.0))
	{
	}
	SLATE_ATTRIBUTE(FText, Title)
	/** On the screen that it is on, and whatever ScreenPosition says. */
	SLATE_ARGUMENT(EAutoCenter, AutoCenter)
	SLATE_ARGUMENT(FVector2D, ScreenPosition)
	SLATE_ARGUMENT(FVector2D, ClientSize)
	SLATE_DEFAULT_SLOT(FArguments, Content)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs);

	FText GetTitle() const { return Title.Get(FText::GetEmpty()); }
	void SetContent(TSharedRef<SWidget> InContent);
	TSharedRef<SWidget> GetContent() const;

	/** In front of the content, over the whole window; see SOverlay::AddSlot for the order. */
	SOverlay::FScopedWidgetSlotArguments AddOverlaySlot(const int32 ZOrder = INDEX_NONE);
	/** No effect for a widget that has no such slot. */
	void RemoveOverlaySlot(const TSharedRef<SWidget>& InContent);

	/** The inner size, in pixels. The platform calls this when the user has changed it. */
	void Resize(const FVector2D& NewClientSize);
	void MoveWindowTo(const FVector2D& NewScreenPosition) { ScreenPosition = NewScreenPosition; }
	FVector2D GetClientSizeInScreen() const { return ClientSize; }
	FVector2D GetPositionInScreen() const { return ScreenPosition; }
	/** Host: whether the platform chooses the place when it opens the window. */
	bool IsAutoCentered() const { return bIsAutoCentered; }
	/** How many pixels a Slate unit is wide and high; 1 without a window of the operating system. */
	float GetDPIScaleFactor() const;
	/** Its local space is in Slate units, the absolute one in pixels. */
	FGeometry GetWindowGeometryInScreen() const;

	/** A minimised window is not painted: nothing in it ticks. */
	void SetMinimized(bool bInMinimized) { bIsMinimized = bInMinimized; }
	bool IsWindowMinimized() const { return bIsMinimized; }

	/** For a window that the user does not look at. No effect without a window of the operating system. */
	void DrawAttention(const FWindowDrawAttentionParameters& Parameters);

	void SetNativeWindow(TSharedRef<FGenericWindow> InNativeWindow) { NativeWindow = InNativeWindow; }
	TSharedPtr<FGenericWindow> GetNativeWindow() const { return NativeWindow; }

	const FRequestDestroyWindowOverride& GetRequestDestroyWindowOverride() const { return RequestDestroyOverride; }

	virtual TSharedRef<FSlateAccessibleWidget> CreateAccessibleWidget() override;

protected:
	virtual EAccessibleBehavior GetDefaultAccessibleBehavior() const override { return EAccessibleBehavior::Auto; }
	virtual FText GetDefaultAccessibleText() const override { return GetTitle(); }

private:
	TAttribute<FText> Title;
	FVector2D ScreenPosition = FVector2D(0.0, 0.0);
	FVector2D ClientSize = FVector2D(0.0, 0.0);
	bool bIsAutoCentered = true;
	bool bIsMinimized = false;
	TSharedPtr<SOverlay> Overlay;
	SOverlay::FOverlaySlot* ContentSlot = nullptr;
	TSharedPtr<FGenericWindow> NativeWindow;
	FRequestDestroyWindowOverride RequestDestroyOverride;
};
