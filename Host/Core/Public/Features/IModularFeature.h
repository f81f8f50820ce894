#pragma once

/** What a module offers to others that do not know the module. */
class IModularFeature
{
public:
	virtual ~IModularFeature() = default;
};
