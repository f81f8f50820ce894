#pragma once

#define ENGINE_MAJOR_VERSION 5
#define ENGINE_MINOR_VERSION 4
#define ENGINE_PATCH_VERSION 4

/** For #if: whether the engine is older than that. What came with a newer one stands behind it, and is absent here. */
#define UE_VERSION_OLDER_THAN(Major, Minor, Patch)                                                                     \
	(ENGINE_MAJOR_VERSION < Major || (ENGINE_MAJOR_VERSION == Major && ENGINE_MINOR_VERSION < Minor) ||                \
		(ENGINE_MAJOR_VERSION == Major && ENGINE_MINOR_VERSION == Minor && ENGINE_PATCH_VERSION < Patch))
