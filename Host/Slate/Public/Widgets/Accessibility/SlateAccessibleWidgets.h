#pragma once

#include "CoreMinimal.h"
#include "Widgets/Accessibility/SlateCoreAccessibleWidgets.h"

class FSlateAccessibleButton final : public FSlateAccessibleWidget, public IAccessibleActivatable
{
public:
	explicit FSlateAccessibleButton(TSharedRef<SWidget> InWidget)
		: FSlateAccessibleWidget(InWidget, EAccessibleWidgetType::Button)
	{
	}

	virtual IAccessibleActivatable* AsActivatable() override { return this; }
	virtual void Activate() override;
};

class FSlateAccessibleTextBlock final : public FSlateAccessibleWidget, public IAccessibleText
{
public:
	explicit FSlateAccessibleTextBlock(TSharedRef<SWidget> InWidget)
		: FSlateAccessibleWidget(InWidget, EAccessibleWidgetType::Text)
	{
	}

	virtual IAccessibleText* AsText() override { return this; }
	virtual FString GetText() const override { return GetWidgetName(); }
};

/** Its name is its hint; its value is what it shows. */
class FSlateAccessibleMultiLineEditableText final : public FSlateAccessibleWidget,
													public IAccessibleText,
													public IAccessibleProperty
{
public:
	explicit FSlateAccessibleMultiLineEditableText(TSharedRef<SWidget> InWidget)
		: FSlateAccessibleWidget(InWidget, EAccessibleWidgetType::TextEdit)
	{
	}

	virtual IAccessibleText* AsText() override { return this; }
	virtual IAccessibleProperty* AsProperty() override { return this; }
	virtual FString GetText() const override;
	virtual bool IsReadOnly() const override;
	virtual FString GetValue() const override { return GetText(); }
	virtual void SetValue(const FString& Value) override;
};
