#pragma once

#include "CoreMinimal.h"
#include "Layout/Children.h"
#include "Misc/Attribute.h"
#include "SlotBase.h"
#include "Widgets/SNullWidget.h"
#include "Widgets/SWidget.h"

#include <tuple>
#include <type_traits>

/**
 * The declarative syntax: SNew(SButton).Text(...)[ ... ].
 *
 * Further arguments of the macros go to Construct after its FArguments. In SAssignNew the variable is assigned after
 * the whole right side was evaluated, so children written inside the brackets exist before it is.
 */
#define SNew(WidgetType, ...)                                                                                          \
	MakeTDecl<WidgetType>(TEXT(#WidgetType), std::make_tuple(__VA_ARGS__)) <<= WidgetType::FArguments()

#define SAssignNew(ExposeAs, WidgetType, ...)                                                                          \
	MakeTDecl<WidgetType>(TEXT(#WidgetType), std::make_tuple(__VA_ARGS__)).Expose(ExposeAs) <<= WidgetType::FArguments()

#define SArgumentNew(InArgs, WidgetType, ...)                                                                          \
	MakeTDecl<WidgetType>(TEXT(#WidgetType), std::make_tuple(__VA_ARGS__)) <<= InArgs

/** The parts of a delegate's signature, for the forms in which SLATE_EVENT and SLATE_ATTRIBUTE take a function. */
template <typename DelegateType>
struct TSlateSignature;

template <template <typename...> class DelegateTemplate, typename ReturnType, typename... ParamTypes, typename... Rest>
struct TSlateSignature<DelegateTemplate<ReturnType(ParamTypes...), Rest...>>
{
	template <typename... VarTypes>
	using TFunctionPtr = ReturnType (*)(ParamTypes..., VarTypes...);
	template <typename UserClass, typename... VarTypes>
	using TMethodPtr = ReturnType (std::remove_const_t<UserClass>::*)(ParamTypes..., VarTypes...);
	template <typename UserClass, typename... VarTypes>
	using TConstMethodPtr = ReturnType (std::remove_const_t<UserClass>::*)(ParamTypes..., VarTypes...) const;

	template <typename LambdaType, typename... VarTypes>
	static constexpr bool IsCallable = std::is_invocable_r_v<ReturnType, LambdaType&, ParamTypes..., VarTypes...>;
};

/** The value, or the getter in one of its forms; getters of an object must be const. */
#define SLATE_PRIVATE_ATTRIBUTE_FUNCTION(AttrType, AttrName)                                                           \
	WidgetArgsType& AttrName(TAttribute<AttrType> InAttribute)                                                         \
	{                                                                                                                  \
		_##AttrName = MoveTemp(InAttribute);                                                                           \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}                                                                                                                  \
	template <typename... VarTypes>                                                                                    \
	WidgetArgsType& AttrName##_Static(                                                                                 \
		std::type_identity_t<typename TSlateSignature<TDelegate<AttrType()>>::template TFunctionPtr<VarTypes...>>      \
			InFunc,                                                                                                    \
		VarTypes... Vars)                                                                                              \
	{                                                                                                                  \
		return AttrName(TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateStatic(InFunc, Vars...)));   \
	}                                                                                                                  \
	template <typename LambdaType>                                                                                     \
	requires(TSlateSignature<TDelegate<AttrType()>>::template IsCallable<std::decay_t<LambdaType>>)                    \
		WidgetArgsType& AttrName##_Lambda(LambdaType&& InLambda)                                                       \
	{                                                                                                                  \
		return AttrName(                                                                                               \
			TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateLambda(Forward<LambdaType>(InLambda)))); \
	}                                                                                                                  \
	template <typename UserClass, typename... VarTypes>                                                                \
	WidgetArgsType& AttrName##_Raw(UserClass* InUserObject,                                                            \
		std::type_identity_t<                                                                                          \
			typename TSlateSignature<TDelegate<AttrType()>>::template TConstMethodPtr<UserClass, VarTypes...>>         \
			InFunc,                                                                                                    \
		VarTypes... Vars)                                                                                              \
	{                                                                                                                  \
		return AttrName(                                                                                               \
			TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateRaw(InUserObject, InFunc, Vars...)));    \
	}                                                                                                                  \
	template <typename UserClass, typename... VarTypes>                                                                \
	WidgetArgsType& AttrName##_UObject(UserClass* InUserObject,                                                        \
		std::type_identity_t<                                                                                          \
			typename TSlateSignature<TDelegate<AttrType()>>::template TConstMethodPtr<UserClass, VarTypes...>>         \
			InFunc,                                                                                                    \
		VarTypes... Vars)                                                                                              \
	{                                                                                                                  \
		return AttrName(TAttribute<AttrType>::Create(                                                                  \
			TAttribute<AttrType>::FGetter::CreateUObject(InUserObject, InFunc, Vars...)));                             \
	}                                                                                                                  \
	template <typename UserClass, typename... VarTypes>                                                                \
	WidgetArgsType& AttrName(TSharedRef<UserClass> InUserObject,                                                       \
		std::type_identity_t<                                                                                          \
			typename TSlateSignature<TDelegate<AttrType()>>::template TConstMethodPtr<UserClass, VarTypes...>>         \
			InFunc,                                                                                                    \
		VarTypes... Vars)                                                                                              \
	{                                                                                                                  \
		return AttrName(                                                                                               \
			TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateSP(InUserObject, InFunc, Vars...)));     \
	}                                                                                                                  \
	template <typename UserClass, typename... VarTypes>                                                                \
	WidgetArgsType& AttrName(UserClass* InUserObject,                                                                  \
		std::type_identity_t<                                                                                          \
			typename TSlateSignature<TDelegate<AttrType()>>::template TConstMethodPtr<UserClass, VarTypes...>>         \
			InFunc,                                                                                                    \
		VarTypes... Vars)                                                                                              \
	{                                                                                                                  \
		return AttrName(                                                                                               \
			TAttribute<AttrType>::Create(TAttribute<AttrType>::FGetter::CreateSP(InUserObject, InFunc, Vars...)));     \
	}

#define SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, FormName, CreateName, ObjectType, MethodKind)              \
	template <typename UserClass, typename... VarTypes>                                                                \
	WidgetArgsType& FormName(ObjectType InUserObject,                                                                  \
		std::type_identity_t<typename TSlateSignature<DelegateName>::template MethodKind<UserClass, VarTypes...>>      \
			InFunc,                                                                                                    \
		VarTypes... Vars)                                                                                              \
	{                                                                                                                  \
		_##EventName = DelegateName::CreateName(InUserObject, InFunc, Vars...);                                        \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}

/** Opens FArguments with its constructor, whose body, with an initialiser list if wanted, follows the macro. */
#define SLATE_BEGIN_ARGS(InWidgetType)                                                                                 \
public:                                                                                                                \
	struct FArguments : public TSlateBaseNamedArgs<InWidgetType>                                                       \
	{                                                                                                                  \
		typedef FArguments WidgetArgsType;                                                                             \
		typedef InWidgetType WidgetType;                                                                               \
		FArguments()

#define SLATE_END_ARGS()                                                                                               \
	}                                                                                                                  \
	;

#define SLATE_PRIVATE_ARGUMENT_FUNCTION(ArgType, ArgName)                                                              \
	WidgetArgsType& ArgName(ArgType InArg)                                                                             \
	{                                                                                                                  \
		_##ArgName = MoveTemp(InArg);                                                                                  \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}

#define SLATE_ARGUMENT(ArgType, ArgName)                                                                               \
	ArgType _##ArgName{};                                                                                              \
	SLATE_PRIVATE_ARGUMENT_FUNCTION(ArgType, ArgName)

#define SLATE_ARGUMENT_DEFAULT(ArgType, ArgName)                                                                       \
	SLATE_PRIVATE_ARGUMENT_FUNCTION(ArgType, ArgName)                                                                  \
	ArgType _##ArgName

#define SLATE_STYLE_ARGUMENT(ArgType, ArgName)                                                                         \
	const ArgType* _##ArgName = nullptr;                                                                               \
	WidgetArgsType& ArgName(const ArgType* InArg)                                                                      \
	{                                                                                                                  \
		_##ArgName = InArg;                                                                                            \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}

#define SLATE_ATTRIBUTE(AttrType, AttrName)                                                                            \
	TAttribute<AttrType> _##AttrName;                                                                                  \
	SLATE_PRIVATE_ATTRIBUTE_FUNCTION(AttrType, AttrName)

#define SLATE_EVENT(DelegateName, EventName)                                                                           \
	DelegateName _##EventName;                                                                                         \
	WidgetArgsType& EventName(const DelegateName& InDelegate)                                                          \
	{                                                                                                                  \
		_##EventName = InDelegate;                                                                                     \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}                                                                                                                  \
	template <typename... VarTypes>                                                                                    \
	WidgetArgsType& EventName##_Static(                                                                                \
		std::type_identity_t<typename TSlateSignature<DelegateName>::template TFunctionPtr<VarTypes...>> InFunc,       \
		VarTypes... Vars)                                                                                              \
	{                                                                                                                  \
		_##EventName = DelegateName::CreateStatic(InFunc, Vars...);                                                    \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}                                                                                                                  \
	template <typename LambdaType, typename... VarTypes>                                                               \
	requires(TSlateSignature<DelegateName>::template IsCallable<std::decay_t<LambdaType>, VarTypes...>)                \
		WidgetArgsType& EventName##_Lambda(LambdaType&& InLambda, VarTypes... Vars)                                    \
	{                                                                                                                  \
		_##EventName = DelegateName::CreateLambda(Forward<LambdaType>(InLambda), Vars...);                             \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}                                                                                                                  \
	SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, EventName##_Raw, CreateRaw, UserClass*, TMethodPtr)            \
	SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, EventName##_Raw, CreateRaw, UserClass*, TConstMethodPtr)       \
	SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, EventName##_UObject, CreateUObject, UserClass*, TMethodPtr)    \
	SLATE_PRIVATE_EVENT_METHOD(                                                                                        \
		DelegateName, EventName, EventName##_UObject, CreateUObject, UserClass*, TConstMethodPtr)                      \
	SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, EventName, CreateSP, TSharedRef<UserClass>, TMethodPtr)        \
	SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, EventName, CreateSP, TSharedRef<UserClass>, TConstMethodPtr)   \
	SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, EventName, CreateSP, UserClass*, TMethodPtr)                   \
	SLATE_PRIVATE_EVENT_METHOD(DelegateName, EventName, EventName, CreateSP, UserClass*, TConstMethodPtr)

/** A widget that is never null: SNullWidget until another one is given. */
struct TAlwaysValidWidget
{
	TAlwaysValidWidget()
		: Widget(SNullWidget::NullWidget)
	{
	}

	TSharedRef<SWidget> Widget;
};

/** What `.Content()` returns, so that `[ ]` fills that slot. */
template <typename DeclarationType>
struct NamedSlotProperty
{
	NamedSlotProperty(DeclarationType& InOwner, TAlwaysValidWidget& InContent)
		: Owner(InOwner)
		, Content(InContent)
	{
	}

	DeclarationType& operator[](const TSharedRef<SWidget>& InChild)
	{
		Content.Widget = InChild;
		return Owner;
	}

	DeclarationType& Owner;
	TAlwaysValidWidget& Content;
};

#define SLATE_NAMED_SLOT(DeclarationType, SlotName)                                                                    \
	TAlwaysValidWidget _##SlotName;                                                                                    \
	NamedSlotProperty<DeclarationType> SlotName()                                                                      \
	{                                                                                                                  \
		return NamedSlotProperty<DeclarationType>(*this, _##SlotName);                                                 \
	}

#define SLATE_DEFAULT_SLOT(DeclarationType, SlotName)                                                                  \
	SLATE_NAMED_SLOT(DeclarationType, SlotName)                                                                        \
	DeclarationType& operator[](const TSharedRef<SWidget>& InChild)                                                    \
	{                                                                                                                  \
		_##SlotName.Widget = InChild;                                                                                  \
		return *this;                                                                                                  \
	}

#define SLATE_SLOT_ARGUMENT(SlotType, SlotName)                                                                        \
	TArray<typename SlotType::FSlotArguments> _##SlotName;                                                             \
	WidgetArgsType& operator+(typename SlotType::FSlotArguments& SlotToAdd)                                            \
	{                                                                                                                  \
		_##SlotName.Add(MoveTemp(SlotToAdd));                                                                          \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}                                                                                                                  \
	WidgetArgsType& operator+(typename SlotType::FSlotArguments&& SlotToAdd)                                           \
	{                                                                                                                  \
		_##SlotName.Add(MoveTemp(SlotToAdd));                                                                          \
		return static_cast<WidgetArgsType&>(*this);                                                                    \
	}

/** The arguments that every widget has. */
struct FSlateBaseNamedArgs
{
	TAttribute<bool> _IsEnabled;
	TAttribute<EVisibility> _Visibility;
	TAttribute<FText> _ToolTipText;
	TAttribute<FText> _AccessibleText;
	TAttribute<TOptional<EMouseCursor::Type>> _Cursor;
	TOptional<float> _RenderOpacity;
	TOptional<EWidgetClipping> _Clipping;
	FName _Tag;
};

template <typename InWidgetType>
struct TSlateBaseNamedArgs : public FSlateBaseNamedArgs
{
	typedef typename InWidgetType::FArguments WidgetArgsType;
	typedef InWidgetType WidgetType;

	SLATE_PRIVATE_ATTRIBUTE_FUNCTION(bool, IsEnabled)
	SLATE_PRIVATE_ATTRIBUTE_FUNCTION(EVisibility, Visibility)
	SLATE_PRIVATE_ATTRIBUTE_FUNCTION(FText, ToolTipText)
	SLATE_PRIVATE_ATTRIBUTE_FUNCTION(FText, AccessibleText)
	SLATE_PRIVATE_ATTRIBUTE_FUNCTION(TOptional<EMouseCursor::Type>, Cursor)
	SLATE_PRIVATE_ARGUMENT_FUNCTION(float, RenderOpacity)
	SLATE_PRIVATE_ARGUMENT_FUNCTION(EWidgetClipping, Clipping)
	SLATE_PRIVATE_ARGUMENT_FUNCTION(FName, Tag)
};

/** The only place that may allocate a widget. */
template <typename WidgetType>
struct TWidgetAllocator
{
	static TSharedRef<WidgetType> Allocate() { return MakeShareable(new WidgetType()); }
};

/** A widget in the making: allocated, not yet constructed. */
template <typename WidgetType, typename RequiredArgsType>
struct TSlateDecl
{
	TSlateDecl(const TCHAR* InType, RequiredArgsType&& InRequiredArgs)
		: Widget(TWidgetAllocator<WidgetType>::Allocate())
		, RequiredArgs(std::move(InRequiredArgs))
	{
		Widget->TypeOfWidget = FName(InType);
	}

	/** @param OutVarToInit  a TSharedPtr, TSharedRef or TWeakPtr to the widget's class or a base of it */
	template <typename VarType>
	TSlateDecl& Expose(VarType& OutVarToInit)
	{
		OutVarToInit = Widget;
		return *this;
	}

	TSharedRef<WidgetType> operator<<=(const typename WidgetType::FArguments& InArgs)
	{
		Widget->SWidgetConstruct(InArgs);
		std::apply([&](auto&&... Args) { Widget->Construct(InArgs, std::forward<decltype(Args)>(Args)...); },
			std::move(RequiredArgs));
		return Widget;
	}

private:
	const TSharedRef<WidgetType> Widget;
	RequiredArgsType RequiredArgs;
};

template <typename WidgetType, typename RequiredArgsType>
TSlateDecl<WidgetType, RequiredArgsType> MakeTDecl(const TCHAR* InType, RequiredArgsType&& InRequiredArgs)
{
	return TSlateDecl<WidgetType, RequiredArgsType>(InType, static_cast<RequiredArgsType&&>(InRequiredArgs));
}
