#pragma once

#include "CoreMinimal.h"

class SWidget;

/** Stands in every slot that was left empty. One instance serves them all; it has no size and no parent. */
class SNullWidget
{
public:
	static TSharedRef<SWidget> NullWidget;
};
