#include "Containers/Map.h"
#include "Features/IModularFeatures.h"

namespace ModularFeatures
{
class FModularFeatures final : public IModularFeatures
{
public:
	void RegisterModularFeature(const FName Type, IModularFeature* ModularFeature) override
	{
		Features.FindOrAdd(Type).AddUnique(ModularFeature);
	}

	void UnregisterModularFeature(const FName Type, IModularFeature* ModularFeature) override
	{
		Features.FindOrAdd(Type).Remove(ModularFeature);
	}

protected:
	TArray<IModularFeature*> Find(const FName Type) const override { return Features.FindRef(Type); }

private:
	TMap<FName, TArray<IModularFeature*>> Features;
};
}

IModularFeatures& IModularFeatures::Get()
{
	static ModularFeatures::FModularFeatures Instance;
	return Instance;
}
