#pragma once

#include "Containers/Array.h"
#include "Misc/AssertionMacros.h"
#include "UObject/NameTypes.h"

class UObject;
struct FWeakObjectPtr;

/**
 * An object and the name of one of its reflected functions.
 *
 * The object is not kept; a delegate whose object is gone counts as unbound. The function is looked up at each call, so
 * a child class's override runs. FWeakObjectPtr comes from a module above this one, hence the template.
 */
template <typename InWeakPtrType = FWeakObjectPtr>
class TScriptDelegate
{
public:
	/** Whether the object lives and its class has the function. */
	bool IsBound() const
	{
		const auto* Target = Object.Get();
		return Target && !FunctionName.IsNone() && Target->FindFunction(FunctionName);
	}
	bool IsBoundToObject(const void* InUserObject) const { return InUserObject && Object.Get() == InUserObject; }
	bool IsCompactable() const { return FunctionName.IsNone() || !Object.Get(); }

	/** The function is not looked for before IsBound or a call. */
	void BindUFunction(UObject* InObject, const FName& InFunctionName)
	{
		Object = InObject;
		FunctionName = InFunctionName;
	}
	void Unbind()
	{
		Object.Reset();
		FunctionName = NAME_None;
	}
	void Clear() { Unbind(); }

	/** Null when the object is gone. */
	UObject* GetUObject() const { return Object.Get(); }
	FName GetFunctionName() const { return FunctionName; }

	/** Calls the function; Parameters is the block that its properties describe. */
	void ProcessDelegate(void* Parameters) const
	{
		auto* const Target = Object.Get();
		checkf(Target, TEXT("ProcessDelegate() called with no object bound to delegate!"));
		checkf(!FunctionName.IsNone(), TEXT("ProcessDelegate() called with no function name set!"));
		Target->ProcessEvent(Target->FindFunctionChecked(FunctionName), Parameters);
	}

	bool operator==(const TScriptDelegate& Other) const
	{
		return FunctionName == Other.FunctionName && Object == Other.Object;
	}
	friend uint32 GetTypeHash(const TScriptDelegate& Delegate)
	{
		return GetTypeHash(Delegate.Object) * 31 + GetTypeHash(Delegate.FunctionName);
	}

protected:
	InWeakPtrType Object;
	FName FunctionName;
};

/** Any number of delegates, each object and function once. Called in the order in which they were added. */
template <typename InWeakPtrType = FWeakObjectPtr>
class TMulticastScriptDelegate
{
public:
	using FDelegate = TScriptDelegate<InWeakPtrType>;

	/** Whether there is anything in the list, be its object alive or not. */
	bool IsBound() const { return !InvocationList.IsEmpty(); }
	bool Contains(const FDelegate& InDelegate) const { return InvocationList.Contains(InDelegate); }
	bool Contains(const UObject* InObject, FName InFunctionName) const
	{
		return InvocationList.ContainsByPredicate([InObject, InFunctionName](const FDelegate& Each) {
			return Each.GetFunctionName() == InFunctionName && Each.IsBoundToObject(InObject);
		});
	}

	/** Adding what is there already is an error that is reported, and changes nothing. */
	void Add(const FDelegate& InDelegate)
	{
		CompactInvocationList();
		if (ensureMsgf(!Contains(InDelegate), TEXT("The function %s is bound to the same delegate twice"),
				*InDelegate.GetFunctionName().ToString()))
		{
			InvocationList.Add(InDelegate);
		}
	}
	void AddUnique(const FDelegate& InDelegate)
	{
		CompactInvocationList();
		InvocationList.AddUnique(InDelegate);
	}
	void Remove(const FDelegate& InDelegate)
	{
		InvocationList.Remove(InDelegate);
		CompactInvocationList();
	}
	void Remove(const UObject* InObject, FName InFunctionName)
	{
		InvocationList.RemoveAll([InObject, InFunctionName](const FDelegate& Each) {
			return Each.GetFunctionName() == InFunctionName && Each.IsBoundToObject(InObject);
		});
		CompactInvocationList();
	}
	void RemoveAll(const UObject* InObject)
	{
		InvocationList.RemoveAll([InObject](const FDelegate& Each) { return Each.IsBoundToObject(InObject); });
		CompactInvocationList();
	}
	void Clear() { InvocationList.Empty(); }
	/** Lets functions of one object be those of another, which has taken its place. */
	void Rebind(const UObject* Old, UObject* New)
	{
		for (FDelegate& Each : InvocationList)
		{
			if (Each.IsBoundToObject(Old))
			{
				Each.BindUFunction(New, Each.GetFunctionName());
			}
		}
	}
	TArray<UObject*> GetAllObjects() const
	{
		TArray<UObject*> Objects;
		for (const FDelegate& Each : InvocationList)
		{
			if (UObject* const Object = Each.GetUObject())
			{
				Objects.Add(Object);
			}
		}
		return Objects;
	}

	/** Calls all; the functions may change the list meanwhile, which counts from the next call on. */
	void ProcessMulticastDelegate(void* Parameters) const
	{
		const TArray<FDelegate> Called = InvocationList;
		for (const FDelegate& Each : Called)
		{
			if (Each.IsBound())
			{
				Each.ProcessDelegate(Parameters);
			}
		}
	}

	bool operator==(const TMulticastScriptDelegate& Other) const { return InvocationList == Other.InvocationList; }

protected:
	friend class FMulticastDelegateProperty;

	void CompactInvocationList()
	{
		InvocationList.RemoveAll([](const FDelegate& Each) { return Each.IsCompactable(); });
	}

	TArray<FDelegate> InvocationList;
};

using FScriptDelegate = TScriptDelegate<>;
using FMulticastScriptDelegate = TMulticastScriptDelegate<>;
