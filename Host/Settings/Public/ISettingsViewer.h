#pragma once

#include "UObject/NameTypes.h"

/** The window that shows the sections of a container. */
class ISettingsViewer
{
public:
	virtual ~ISettingsViewer() = default;
	virtual void ShowSettings(const FName& CategoryName, const FName& SectionName) = 0;
};
