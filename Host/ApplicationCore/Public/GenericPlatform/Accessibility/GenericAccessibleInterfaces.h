#pragma once

#include "CoreMinimal.h"
#include "Math/Box2D.h"

class IAccessibleActivatable;
class IAccessibleProperty;
class IAccessibleText;

/** The role of a widget for somebody who cannot see it. */
enum class EAccessibleWidgetType : uint8
{
	Unknown,
	Button,
	CheckBox,
	ComboBox,
	Hyperlink,
	Image,
	Layout,
	ScrollBar,
	Slider,
	Text,
	TextEdit,
	Window,
	List,
	ListItem,
};

typedef int32 AccessibleWidgetId;

/**
 * One widget of the accessible tree. Only what a person could perceive is in the tree: collapsed and hidden widgets and
 * the boxes that merely arrange others are left out, their accessible children stand in their place.
 */
class IAccessibleWidget : public TSharedFromThis<IAccessibleWidget>
{
public:
	virtual ~IAccessibleWidget() = default;

	/** The same for as long as the widget lives, and never given to another one. */
	virtual AccessibleWidgetId GetId() const = 0;
	/** False once the widget is gone; every other question then has an empty answer. */
	virtual bool IsValid() const = 0;
	virtual TSharedPtr<IAccessibleWidget> GetParent() = 0;
	/** Null when there is none at this place. */
	virtual TSharedPtr<IAccessibleWidget> GetChildAt(int32 Index) = 0;
	virtual int32 GetNumberOfChildren() = 0;

	virtual EAccessibleWidgetType GetWidgetType() const = 0;
	/** The name that is read out: a button's label, a text's words. */
	virtual FString GetWidgetName() const = 0;
	virtual FString GetHelpText() const = 0;
	/** In pixels of the screen. */
	virtual FBox2D GetBounds() const = 0;
	/** Takes the widget's parents into account: inside a disabled panel nothing is enabled. */
	virtual bool IsEnabled() const = 0;
	virtual bool IsHidden() const = 0;
	virtual bool SupportsFocus() const = 0;
	virtual bool HasFocus() const = 0;
	virtual void SetFocus() = 0;

	/** These three are null for a widget that has no such side. */
	virtual IAccessibleProperty* AsProperty() { return nullptr; }
	virtual IAccessibleActivatable* AsActivatable() { return nullptr; }
	virtual IAccessibleText* AsText() { return nullptr; }
};

/** A widget that does something when it is chosen. */
class IAccessibleActivatable
{
public:
	virtual ~IAccessibleActivatable() = default;
	/** The same as a click; nothing happens while the widget is disabled. */
	virtual void Activate() = 0;
};

/** A widget with a value that can be changed. */
class IAccessibleProperty
{
public:
	virtual ~IAccessibleProperty() = default;
	virtual bool IsReadOnly() const = 0;
	virtual FString GetValue() const = 0;
	/** Replaces the value as a person would, by typing; nothing happens while it is read-only or disabled. */
	virtual void SetValue(const FString& Value) = 0;
};

/** A widget that shows a text. */
class IAccessibleText
{
public:
	virtual ~IAccessibleText() = default;
	virtual FString GetText() const = 0;
};

/** Between the application and what reads it out. Widgets that look different to somebody who listens ask it. */
class FGenericAccessibleMessageHandler
{
public:
	virtual ~FGenericAccessibleMessageHandler() = default;

	/** Somebody listens: a screen reader, or a terminal in its place. */
	bool IsActive() const { return bActive; }
	void SetActive(bool bInActive) { bActive = bInActive; }

private:
	bool bActive = false;
};
