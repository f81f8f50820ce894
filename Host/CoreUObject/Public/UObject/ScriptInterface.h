#pragma once

#include "UObject/Object.h"

/** An object and, when its class implements the interface in C++, where the interface lies in it. */
class FScriptInterface
{
public:
	FScriptInterface() = default;
	FScriptInterface(UObject* InObject, void* InInterface)
		: ObjectPointer(InObject)
		, InterfacePointer(InInterface)
	{
	}

	UObject* GetObject() const { return ObjectPointer; }
	UObject*& GetObjectRef() { return ObjectPointer; }
	/** Null also for an object that implements the interface in a Blueprint. */
	void* GetInterface() const { return ObjectPointer ? InterfacePointer : nullptr; }
	explicit operator bool() const { return ObjectPointer != nullptr; }
	bool operator==(const FScriptInterface& Other) const { return ObjectPointer == Other.ObjectPointer; }
	friend uint32 GetTypeHash(const FScriptInterface& Each) { return GetTypeHash(Each.ObjectPointer); }

private:
	UObject* ObjectPointer = nullptr;
	void* InterfacePointer = nullptr;
};

/** FScriptInterface for one interface: TScriptInterface<IName>. */
template <typename InterfaceType>
class TScriptInterface : public FScriptInterface
{
public:
	TScriptInterface() = default;
	TScriptInterface(decltype(nullptr)) {}
	/** An object that does not implement the interface in C++ leaves GetInterface() null. */
	TScriptInterface(UObject* Object)
		: FScriptInterface(
			  Object, Object ? Object->GetNativeInterfaceAddress(InterfaceType::UClassType::StaticClass()) : nullptr)
	{
	}

	InterfaceType* GetInterface() const { return static_cast<InterfaceType*>(FScriptInterface::GetInterface()); }
	InterfaceType* operator->() const { return GetInterface(); }
};
