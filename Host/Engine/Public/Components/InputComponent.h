#pragma once

#include "Components/ActorComponent.h"
#include "InputComponent.generated.h"

/** The value of an axis: -1 to 1 for keys and sticks, how far it went for a mouse. */
DECLARE_DELEGATE_OneParam(FInputAxisHandlerSignature, float);
DECLARE_DELEGATE(FInputActionHandlerSignature);

struct FInputAxisBinding
{
	FName AxisName;
	FInputAxisHandlerSignature AxisDelegate;
	float AxisValue = 0.0f; // what came last
};

struct FInputActionBinding
{
	FInputActionBinding() = default;
	FInputActionBinding(const FName InActionName, const EInputEvent InKeyEvent)
		: KeyEvent(InKeyEvent)
		, ActionName(InActionName)
	{
	}
	FName GetActionName() const { return ActionName; }

	TEnumAsByte<EInputEvent> KeyEvent = IE_Pressed;
	FInputActionHandlerSignature ActionDelegate;

private:
	FName ActionName;
};

/**
 * Which functions of an actor answer which input.
 *
 * There are no input devices here: whoever plays calls the delegates of the bindings.
 */
UCLASS(Transient, Config = Input, HideCategories = (Activation, "Components|Activation"))
class ENGINE_API UInputComponent : public UActorComponent
{
	GENERATED_BODY()

public:
	TArray<FInputAxisBinding> AxisBindings;

	/** Bound functions are called with 0, too, once a frame. */
	template <class UserClass>
	FInputAxisBinding& BindAxis(
		const FName AxisName, UserClass* Object, typename TMemFunPtr<UserClass, void(float)>::Type Func)
	{
		FInputAxisBinding& Binding = AxisBindings.AddDefaulted_GetRef();
		Binding.AxisName = AxisName;
		Binding.AxisDelegate.BindUObject(Object, Func);
		return Binding;
	}
	template <class UserClass>
	FInputActionBinding& BindAction(const FName ActionName, const EInputEvent KeyEvent, UserClass* Object,
		typename TMemFunPtr<UserClass, void()>::Type Func)
	{
		FInputActionBinding Binding(ActionName, KeyEvent);
		Binding.ActionDelegate.BindUObject(Object, Func);
		return AddActionBinding(MoveTemp(Binding));
	}

	FInputActionBinding& AddActionBinding(FInputActionBinding Binding);
	int32 GetNumActionBindings() const { return ActionBindings.Num(); }
	FInputActionBinding& GetActionBinding(const int32 BindingIndex) { return *ActionBindings[BindingIndex]; }
	void RemoveActionBinding(const int32 BindingIndex) { ActionBindings.RemoveAt(BindingIndex); }
	void ClearActionBindings() { ActionBindings.Reset(); }
	bool HasBindings() const { return !ActionBindings.IsEmpty() || !AxisBindings.IsEmpty(); }
	/** The sum over all bindings of the axis. */
	float GetAxisValue(const FName AxisName) const;

private:
	TArray<TSharedPtr<FInputActionBinding>> ActionBindings;
};
