#pragma once

/** What every module offers to the module manager. */
class IModuleInterface
{
public:
	virtual ~IModuleInterface() = default;
	virtual void StartupModule() {}
	virtual void PreUnloadCallback() {}
	virtual void PostLoadCallback() {}
	virtual void ShutdownModule() {}
	virtual bool SupportsDynamicReloading() { return true; }
	virtual bool IsGameModule() const { return false; }
};

class FDefaultModuleImpl : public IModuleInterface
{
};

class FDefaultGameModuleImpl : public IModuleInterface
{
public:
	bool IsGameModule() const override { return true; }
};
