#pragma once

#include "Containers/Map.h"
#include "UObject/Object.h"

/** The tags of one asset; of two with one name, the later one is kept. */
struct FAssetRegistryTagsContextData
{
	explicit FAssetRegistryTagsContextData(const UObject* InObject)
		: Object(InObject)
	{
	}

	const UObject* Object;
	TMap<FName, UObject::FAssetRegistryTag> Tags;
};

/** Where an asset's tags are added. Copies add to the same tags. */
class FAssetRegistryTagsContext
{
public:
	FAssetRegistryTagsContext(FAssetRegistryTagsContextData& InData)
		: Data(InData)
	{
	}

	const UObject* GetObject() const { return Data.Object; }
	void AddTag(const UObject::FAssetRegistryTag& Tag) { Data.Tags.Add(Tag.Name, Tag); }

private:
	FAssetRegistryTagsContextData& Data;
};
