#pragma once

#include "Delegates/Delegate.h"
#include "Internationalization/Text.h"
#include "Templates/SharedPointer.h"
#include "UObject/NameTypes.h"
#include "UObject/WeakObjectPtrTemplates.h"

class ISettingsCategory;

/** A page of settings: one object whose properties are shown and saved. */
class ISettingsSection
{
public:
	virtual ~ISettingsSection() = default;

	/** Whether the object is still there, and so can be shown. */
	virtual bool CanEdit() const = 0;
	virtual bool CanSave() const = 0;
	virtual bool CanResetDefaults() const = 0;
	/** Null once the category is gone. */
	virtual TWeakPtr<ISettingsCategory> GetCategory() = 0;
	virtual const FText& GetDescription() const = 0;
	virtual const FText& GetDisplayName() const = 0;
	virtual const FName& GetName() const = 0;
	virtual TWeakObjectPtr<UObject> GetSettingsObject() const = 0;
	/** Asks OnModified whether a change shall be saved; without an answer it shall. */
	virtual bool NotifySectionOnPropertyModified() = 0;
	/** Opens the page to the user: OnSelect. */
	virtual void Select() = 0;
	/** Gives the properties the values of the configuration's lower layers and the constructor. */
	virtual bool ResetDefaults() = 0;
	/**
	 * Writes the object: to the project's Config/Default<Name>.ini when its class is of kind DefaultConfig, to the
	 * user's own configuration otherwise. False when the object is gone or OnSave refuses.
	 */
	virtual bool Save() = 0;

	/** A property was changed; returning false keeps the page from saving. */
	DECLARE_DELEGATE_RetVal(bool, FOnModified);
	virtual FOnModified& OnModified() = 0;
	/** Resets the values in place of the section; true when it did. */
	DECLARE_DELEGATE_RetVal(bool, FOnResetDefaults);
	virtual FOnResetDefaults& OnResetDefaults() = 0;
	/** About to save; returning false prevents it. */
	DECLARE_DELEGATE_RetVal(bool, FOnSave);
	virtual FOnSave& OnSave() = 0;
	virtual FSimpleDelegate& OnSelect() = 0;
};

using ISettingsSectionPtr = TSharedPtr<ISettingsSection>;
using ISettingsSectionRef = TSharedRef<ISettingsSection>;
