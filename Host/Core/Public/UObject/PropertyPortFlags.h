#pragma once

#include "CoreTypes.h"

/** How values are turned into text and back. The functions that take them take int32. */
enum EPropertyPortFlags
{
	PPF_None = 0x00000000,
	/** The value is part of a list: texts and names stand in quotes. */
	PPF_Delimited = 0x00000001,
	PPF_CheckReferences = 0x00000002,
	/** An object is written by its name alone. */
	PPF_ExportsNotFullyQualified = 0x00000004,
	PPF_ExternalEditor = 0x00000040,
	PPF_Copy = 0x00000800,
	/** An object is written by its path, without its class. */
	PPF_SimpleObjectText = 0x00002000,
	PPF_PropertyWindow = 0x00080000,
	PPF_BlueprintDebugView = 0x02000000,
};
