#include "CoreMinimal.h"
#include "Misc/Attribute.h"

#include <gtest/gtest.h>

namespace
{
struct FListener : TSharedFromThis<FListener>
{
	FString Heard;
	void Hear(const FString& Text) { Heard += Text; }
	void HearWith(const FString& Text, int32 Number) { Heard += FString::Printf(TEXT("%s%d"), *Text, Number); }
	void HearByValue(FString Text) { Heard += Text; }
};

struct FEager : TSharedFromThis<FEager>
{
	FEager() { AsShared(); }
};

using FTextDelegate = TDelegate<void(const FString&)>;

template <typename DelegateType, typename Method>
concept CBinds = requires(DelegateType D, FListener* L, Method M)
{
	D.BindRaw(L, M);
};
static_assert(CBinds<FTextDelegate, decltype(&FListener::Hear)>);
static_assert(!CBinds<FTextDelegate, decltype(&FListener::HearByValue)>, "parameter types must be the delegate's own");
static_assert(!std::is_default_constructible_v<TSharedRef<int32>>);
static_assert(!std::is_convertible_v<TSharedPtr<int32>, TSharedRef<int32>>);
static_assert(!std::is_convertible_v<TSharedPtr<int32, ESPMode::NotThreadSafe>, TSharedPtr<int32>>);
static_assert(!std::is_assignable_v<TTSDelegate<void()>&, TDelegate<void()>>);
template <typename DelegateType>
concept CExecutesIfBound = requires(DelegateType D)
{
	D.ExecuteIfBound();
};
static_assert(CExecutesIfBound<TDelegate<void()>> && !CExecutesIfBound<TDelegate<int32()>>);
}

TEST(SharedPointerDeathTest, NullAndUnownedObjectsAssert)
{
	EXPECT_DEATH(TSharedPtr<FListener>()->Hear(FString()), "null TSharedPtr");
	EXPECT_DEATH(TSharedPtr<int32>().ToSharedRef(), "cannot become a TSharedRef");
	EXPECT_DEATH(TSharedRef<int32>(static_cast<int32*>(nullptr)), "cannot be null");
	EXPECT_DEATH(MakeShared<FEager>(), "AsShared");
	FListener OnStack;
	EXPECT_DEATH(OnStack.AsShared(), "AsShared");
}

TEST(SharedPointerTest, WeakPointersLetGo)
{
	TSharedPtr<FListener> Strong = MakeShareable(new FListener);
	const TWeakPtr<FListener> Weak = Strong->AsShared();
	EXPECT_TRUE(Strong.IsUnique());
	EXPECT_TRUE(Weak.Pin() == Strong);
	Strong.Reset();
	EXPECT_FALSE(Weak.IsValid());
}

TEST(DelegateTest, WeakBindingsUnbindThemselves)
{
	TSharedPtr<FListener> Listener = MakeShared<FListener>();
	FTextDelegate Delegate;
	Delegate.BindSP(Listener.Get(), &FListener::HearWith, 7);
	EXPECT_TRUE(Delegate.ExecuteIfBound(TEXT("a")));
	EXPECT_TRUE(Listener->Heard == TEXT("a7"));
	Listener.Reset();
	EXPECT_FALSE(Delegate.IsBound());
	EXPECT_FALSE(Delegate.ExecuteIfBound(TEXT("b")));
}

TEST(DelegateTest, ADelegateMayUnbindItselfWhileItRuns)
{
	TDelegate<void()> Delegate;
	FString Captured = TEXT("still here");
	Delegate.BindLambda([&Delegate, Captured]() {
		Delegate.Unbind();
		EXPECT_TRUE(Captured == TEXT("still here"));
	});
	Delegate.Execute();
	EXPECT_FALSE(Delegate.IsBound());
}

TEST(DelegateDeathTest, ExecutingAnUnboundDelegateAsserts)
{
	EXPECT_DEATH(TDelegate<int32()>().Execute(), "unbound delegate");
	EXPECT_DEATH(TFunction<void()>()(), "unbound TFunction");
}

TEST(MulticastDelegateTest, AddingAndRemovingInsideABroadcastIsSafe)
{
	TMulticastDelegate<void()> Event;
	FString Calls;
	FDelegateHandle First = Event.AddLambda([&]() { Calls += TEXT("1"); });
	Event.AddLambda([&]() {
		Calls += TEXT("2");
		Event.Remove(First);
		Event.AddLambda([&]() { Calls += TEXT("3"); });
	});
	Event.Broadcast();
	EXPECT_TRUE(Calls == TEXT("2")) << "the removed one is not called, nor is the added one";
	FListener Listener;
	TMulticastDelegate<void(const FString&)> Texts;
	Texts.AddRaw(&Listener, &FListener::Hear);
	EXPECT_EQ(Texts.RemoveAll(&Listener), 1);
	EXPECT_FALSE(Texts.IsBound());
}

TEST(FunctionTest, UniqueFunctionsOwnWhatCannotBeCopied)
{
	TUniquePtr<int32> Owned = MakeUnique<int32>(5);
	TUniqueFunction<int32(int32)> Function = [Owned = MoveTemp(Owned)](int32 Add) { return *Owned + Add; };
	TUniqueFunction<int32(int32)> Moved = MoveTemp(Function);
	EXPECT_EQ(Moved(2), 7);
	EXPECT_FALSE(Function.IsSet());
}

TEST(SharedPointerTest, WeakPointersTellWhetherTheObjectIsThere)
{
	TSharedPtr<FListener> Owner = MakeShared<FListener>();
	const TWeakPtr<FListener> FromPointer = Owner.ToWeakPtr();
	const TWeakPtr<FListener> FromItself = Owner->AsWeak();
	EXPECT_TRUE(FromPointer.HasSameObject(Owner.Get()));
	EXPECT_TRUE(FromItself.HasSameObject(Owner.Get()));
	EXPECT_TRUE(Owner->DoesSharedInstanceExist());
	EXPECT_FALSE(FListener().DoesSharedInstanceExist());
	const TSharedPtr<const FListener> Constant = Owner;
	ConstCastSharedPtr<FListener>(Constant)->Hear(TEXT("x"));
	EXPECT_TRUE(Owner->Heard.Equals(TEXT("x")));
	ConstCastSharedRef<FListener>(Constant.ToSharedRef())->Hear(TEXT("y"));
	EXPECT_TRUE(Constant->Heard.Equals(TEXT("xy")));
	Owner.Reset();
	EXPECT_TRUE(FromPointer.IsValid()) << "the constant pointer still owns it";
}

TEST(AttributeTest, IsBoundToMethodsAndLambdas)
{
	struct FSource
	{
		int32 Read() const { return Number; }
		int32 Number = 4;
	} Source;
	const TAttribute<int32> Raw = MakeAttributeRaw(&Source, &FSource::Read);
	Source.Number = 5;
	EXPECT_EQ(Raw.Get(), 5);
	EXPECT_TRUE(Raw.GetBinding().IsBound());
	EXPECT_EQ(MakeAttributeLambda([]() { return 6; }).Get(), 6);
}
