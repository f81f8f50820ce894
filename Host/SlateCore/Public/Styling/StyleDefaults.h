#pragma once

#include "CoreMinimal.h"

struct FSlateBrush;

class FStyleDefaults
{
public:
	/** What is drawn for a brush that a style does not have: a plain white box. */
	static const FSlateBrush* GetDefaultBrush();
	static const FSlateBrush* GetNoBrush();
};
