#pragma once

#include "Containers/Map.h"
#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"
#include "UObject/NameTypes.h"

using FAssetDataTagMap = TMap<FName, FString>;

/** The value of one tag, if there is such a tag. */
class FAssetTagValueRef
{
public:
	FAssetTagValueRef() = default;
	explicit FAssetTagValueRef(const FString* InValue)
		: Value(InValue)
	{
	}

	bool IsSet() const { return Value != nullptr; }
	/** Empty when there is no such tag. */
	FString GetValue() const { return Value ? *Value : FString(); }
	FString AsString() const { return GetValue(); }
	bool Equals(FStringView Text) const { return Value && FStringView(*Value).Equals(Text); }

private:
	const FString* Value = nullptr;
};

/** The tags of an asset; copies share them. */
class FAssetDataTagMapSharedView
{
public:
	FAssetDataTagMapSharedView() = default;
	explicit FAssetDataTagMapSharedView(FAssetDataTagMap&& InTags)
	{
		if (!InTags.IsEmpty())
		{
			Tags = MakeShared<FAssetDataTagMap>(MoveTemp(InTags));
		}
	}

	FAssetTagValueRef FindTag(FName Tag) const { return FAssetTagValueRef(Tags ? Tags->Find(Tag) : nullptr); }
	bool Contains(FName Tag) const { return FindTag(Tag).IsSet(); }
	int32 Num() const { return Tags ? Tags->Num() : 0; }
	/** Calls Func(TPair<FName, FAssetTagValueRef>) for each. */
	template <typename FunctionType>
	void ForEach(FunctionType Func) const
	{
		if (Tags)
		{
			for (const auto& Pair : *Tags)
			{
				Func(TPair<FName, FAssetTagValueRef>(Pair.Key, FAssetTagValueRef(&Pair.Value)));
			}
		}
	}

private:
	TSharedPtr<FAssetDataTagMap> Tags;
};
