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

class FSlateAccessibleCheckBox final : public FSlateAccessibleWidget,
									   public IAccessibleActivatable,
									   public IAccessibleProperty
{
public:
	explicit FSlateAccessibleCheckBox(TSharedRef<SWidget> InWidget)
		: FSlateAccessibleWidget(InWidget, EAccessibleWidgetType::CheckBox)
	{
	}

	virtual IAccessibleActivatable* AsActivatable() override { return this; }
	virtual IAccessibleProperty* AsProperty() override { return this; }
	virtual void Activate() override;
	/** The value is only shown: Activate changes it. */
	virtual bool IsReadOnly() const override { return true; }
	/** "true", "false", or nothing for a state between. */
	virtual FString GetValue() const override;
	virtual void SetValue(const FString& Value) override {}
};

/** Its value is what stands on the button. */
class FSlateAccessibleComboButton final : public FSlateAccessibleWidget,
										  public IAccessibleActivatable,
										  public IAccessibleText
{
public:
	explicit FSlateAccessibleComboButton(TSharedRef<SWidget> InWidget)
		: FSlateAccessibleWidget(InWidget, EAccessibleWidgetType::ComboBox)
	{
	}

	virtual IAccessibleActivatable* AsActivatable() override { return this; }
	virtual IAccessibleText* AsText() override { return this; }
	virtual void Activate() override;
	virtual FString GetText() const override;
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
