#pragma once

#include "Containers/Array.h"
#include "Features/IModularFeature.h"
#include "UObject/NameTypes.h"

/** The features that modules offer, by the names of their kinds. For the game thread. */
class IModularFeatures
{
public:
	virtual ~IModularFeatures() = default;
	static IModularFeatures& Get();

	/** The feature has to outlive its registration. */
	virtual void RegisterModularFeature(const FName Type, IModularFeature* ModularFeature) = 0;
	virtual void UnregisterModularFeature(const FName Type, IModularFeature* ModularFeature) = 0;

	/** All features of a kind, which are of the one type that the kind has. */
	template <typename FeatureType>
	TArray<FeatureType*> GetModularFeatureImplementations(const FName Type)
	{
		TArray<FeatureType*> Features;
		for (IModularFeature* const Feature : Find(Type))
		{
			Features.Add(static_cast<FeatureType*>(Feature));
		}
		return Features;
	}

protected:
	virtual TArray<IModularFeature*> Find(const FName Type) const = 0;
};
