#pragma once

#define ENGINE_MAJOR_VERSION 5
#define ENGINE_MINOR_VERSION 4
#define ENGINE_PATCH_VERSION 4

#define UE_VERSION_AS_NUMBER(Major, Minor, Patch) ((Major) * 1000000 + (Minor) * 1000 + (Patch))

/** For #if: whether the engine is older than that. What came with a newer one stands behind it, and is absent here. */
#define UE_VERSION_OLDER_THAN(Major, Minor, Patch)                                                                     \
	(UE_VERSION_AS_NUMBER(ENGINE_MAJOR_VERSION, ENGINE_MINOR_VERSION, ENGINE_PATCH_VERSION) <                          \
		UE_VERSION_AS_NUMBER(Major, Minor, Patch))
