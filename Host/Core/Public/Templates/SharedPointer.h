#pragma once

#include "Misc/AssertionMacros.h"
#include "Templates/TypeHash.h"
#include "Templates/UnrealTemplate.h"

#include <memory>
#include <type_traits>

enum class ESPMode : uint8
{
	NotThreadSafe = 0,
	ThreadSafe = 1
};

template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe>
class TSharedRef;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe>
class TSharedPtr;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe>
class TWeakPtr;
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe>
class TSharedFromThis;

/** What MakeShareable gives: it turns into a pointer or a reference, but is neither. */
template <typename ObjectType>
struct TRawPtrProxy
{
	ObjectType* Object;
};

/** A shared reference: never null, so it has no default constructor. Rests on std::shared_ptr. */
template <typename ObjectType, ESPMode Mode>
class TSharedRef
{
public:
	using ElementType = ObjectType;

	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*>
	explicit TSharedRef(OtherType* InObject)
		: Pointer(InObject)
	{
		CheckValid();
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TSharedRef(TRawPtrProxy<OtherType> Proxy)
		: Pointer(Proxy.Object)
	{
		CheckValid();
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TSharedRef(const TSharedRef<OtherType, Mode>& Other)
		: Pointer(Other.GetStd())
	{
	}
	// A moved-from reference would be null, so moving copies.
	TSharedRef(const TSharedRef& Other)
		: Pointer(Other.Pointer)
	{
	}
	TSharedRef& operator=(const TSharedRef& Other) = default;

	ObjectType& Get() const { return *Pointer; }
	ObjectType& operator*() const { return *Pointer; }
	ObjectType* operator->() const { return Pointer.get(); }
	int32 GetSharedReferenceCount() const { return static_cast<int32>(Pointer.use_count()); }
	bool IsUnique() const { return Pointer.use_count() == 1; }
	TSharedPtr<ObjectType, Mode> ToSharedPtr() const { return TSharedPtr<ObjectType, Mode>(*this); }
	TWeakPtr<ObjectType, Mode> ToWeakPtr() const { return TWeakPtr<ObjectType, Mode>(*this); }

	const std::shared_ptr<ObjectType>& GetStd() const { return Pointer; }
	static TSharedRef FromStd(std::shared_ptr<ObjectType> InPointer)
	{
		return TSharedRef(FPrivate(), std::move(InPointer));
	}

private:
	struct FPrivate
	{
	};
	TSharedRef(FPrivate, std::shared_ptr<ObjectType> InPointer)
		: Pointer(std::move(InPointer))
	{
		CheckValid();
	}
	void CheckValid() const { checkf(Pointer, TEXT("A TSharedRef cannot be null")); }

	std::shared_ptr<ObjectType> Pointer;
};

/** A shared pointer that may be null; following a null one asserts. */
template <typename ObjectType, ESPMode Mode>
class TSharedPtr
{
public:
	using ElementType = ObjectType;

	TSharedPtr() = default;
	TSharedPtr(std::nullptr_t) {}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*>
	explicit TSharedPtr(OtherType* InObject)
		: Pointer(InObject)
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TSharedPtr(TRawPtrProxy<OtherType> Proxy)
		: Pointer(Proxy.Object)
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TSharedPtr(const TSharedPtr<OtherType, Mode>& Other)
		: Pointer(Other.GetStd())
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TSharedPtr(TSharedPtr<OtherType, Mode>&& Other)
		: Pointer(std::move(Other.GetStd()))
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TSharedPtr(const TSharedRef<OtherType, Mode>& Other)
		: Pointer(Other.GetStd())
	{
	}

	TSharedPtr& operator=(std::nullptr_t)
	{
		Pointer.reset();
		return *this;
	}

	bool IsValid() const { return Pointer != nullptr; }
	explicit operator bool() const { return IsValid(); }
	ObjectType* Get() const { return Pointer.get(); }
	template <typename DummyObjectType = ObjectType>
	DummyObjectType& operator*() const
	{
		checkf(IsValid(), TEXT("A null TSharedPtr was followed"));
		return *Pointer;
	}
	ObjectType* operator->() const
	{
		checkf(IsValid(), TEXT("A null TSharedPtr was followed"));
		return Pointer.get();
	}
	void Reset() { Pointer.reset(); }
	int32 GetSharedReferenceCount() const { return static_cast<int32>(Pointer.use_count()); }
	bool IsUnique() const { return Pointer.use_count() == 1; }
	TSharedRef<ObjectType, Mode> ToSharedRef() const
	{
		checkf(IsValid(), TEXT("A null TSharedPtr cannot become a TSharedRef"));
		return TSharedRef<ObjectType, Mode>::FromStd(Pointer);
	}
	TWeakPtr<ObjectType, Mode> ToWeakPtr() const { return TWeakPtr<ObjectType, Mode>(*this); }

	const std::shared_ptr<ObjectType>& GetStd() const& { return Pointer; }
	std::shared_ptr<ObjectType>& GetStd() & { return Pointer; }
	static TSharedPtr FromStd(std::shared_ptr<ObjectType> InPointer)
	{
		TSharedPtr Result;
		Result.Pointer = std::move(InPointer);
		return Result;
	}

private:
	std::shared_ptr<ObjectType> Pointer;
};

/** Does not keep its object alive. */
template <typename ObjectType, ESPMode Mode>
class TWeakPtr
{
public:
	TWeakPtr() = default;
	TWeakPtr(std::nullptr_t) {}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TWeakPtr(const TSharedPtr<OtherType, Mode>& Other)
		: Pointer(Other.GetStd())
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TWeakPtr(const TSharedRef<OtherType, Mode>& Other)
		: Pointer(Other.GetStd())
	{
	}
	template <typename OtherType>
	requires std::is_convertible_v<OtherType*, ObjectType*> TWeakPtr(const TWeakPtr<OtherType, Mode>& Other)
		: Pointer(Other.GetStd())
	{
	}

	TSharedPtr<ObjectType, Mode> Pin() const { return TSharedPtr<ObjectType, Mode>::FromStd(Pointer.lock()); }
	bool IsValid() const { return !Pointer.expired(); }
	void Reset() { Pointer.reset(); }
	bool HasSameObject(const void* Other) const { return Pin().Get() == Other; }

	const std::weak_ptr<ObjectType>& GetStd() const { return Pointer; }

	friend bool operator==(const TWeakPtr& A, const TWeakPtr& B) { return A.Pin().Get() == B.Pin().Get(); }
	friend bool operator==(const TWeakPtr& A, std::nullptr_t) { return !A.IsValid(); }
	friend uint32 GetTypeHash(const TWeakPtr& Weak) { return GetTypeHash(static_cast<const void*>(Weak.Pin().Get())); }

private:
	std::weak_ptr<ObjectType> Pointer;
};

template <typename A, typename B, ESPMode Mode>
bool operator==(const TSharedPtr<A, Mode>& Left, const TSharedPtr<B, Mode>& Right)
{
	return Left.Get() == Right.Get();
}
template <typename A, ESPMode Mode>
bool operator==(const TSharedPtr<A, Mode>& Left, std::nullptr_t)
{
	return !Left.IsValid();
}
template <typename A, typename B, ESPMode Mode>
bool operator==(const TSharedRef<A, Mode>& Left, const TSharedRef<B, Mode>& Right)
{
	return &Left.Get() == &Right.Get();
}
template <typename A, typename B, ESPMode Mode>
bool operator==(const TSharedPtr<A, Mode>& Left, const TSharedRef<B, Mode>& Right)
{
	return Left.Get() == &Right.Get();
}
template <typename A, ESPMode Mode>
uint32 GetTypeHash(const TSharedPtr<A, Mode>& Pointer)
{
	return GetTypeHash(static_cast<const void*>(Pointer.Get()));
}
template <typename A, ESPMode Mode>
uint32 GetTypeHash(const TSharedRef<A, Mode>& Reference)
{
	return GetTypeHash(static_cast<const void*>(&Reference.Get()));
}

/** Base of a class that can hand out shared references to itself. They exist only once a shared pointer owns it. */
template <typename ObjectType, ESPMode Mode>
class TSharedFromThis : public std::enable_shared_from_this<ObjectType>
{
public:
	TSharedRef<ObjectType, Mode> AsShared() { return TSharedRef<ObjectType, Mode>::FromStd(LockThis(*this)); }
	TSharedRef<const ObjectType, Mode> AsShared() const
	{
		return TSharedRef<const ObjectType, Mode>::FromStd(LockThis(*this));
	}
	TWeakPtr<ObjectType, Mode> AsWeak() { return AsShared(); }
	TWeakPtr<const ObjectType, Mode> AsWeak() const { return AsShared(); }
	bool DoesSharedInstanceExist() const { return !this->weak_from_this().expired(); }

protected:
	TSharedFromThis() = default;
	TSharedFromThis(const TSharedFromThis&) = default;
	TSharedFromThis& operator=(const TSharedFromThis&) = default;
	~TSharedFromThis() = default;

	template <typename OtherType>
	static TSharedRef<OtherType, Mode> SharedThis(OtherType* ThisPtr)
	{
		return TSharedRef<OtherType, Mode>::FromStd(std::static_pointer_cast<OtherType>(LockThis(*ThisPtr)));
	}
	template <typename OtherType>
	static TSharedRef<const OtherType, Mode> SharedThis(const OtherType* ThisPtr)
	{
		return TSharedRef<const OtherType, Mode>::FromStd(
			std::static_pointer_cast<const OtherType>(LockThis(*ThisPtr)));
	}

private:
	template <typename Self>
	static auto LockThis(Self& This)
	{
		auto Locked = This.weak_from_this().lock();
		checkf(Locked,
			TEXT("AsShared was called in a constructor, in a destructor, or on an object that no shared pointer owns"));
		return Locked;
	}
};

/** Only for a class that `new` could make here: one that hides its operator new, as a widget does, has its own way. */
template <typename ObjectType, ESPMode Mode = ESPMode::ThreadSafe, typename... ArgTypes>
requires requires(ArgTypes&&... Args)
{
	new ObjectType(std::forward<ArgTypes>(Args)...);
}
TSharedRef<ObjectType, Mode> MakeShared(ArgTypes&&... Args)
{
	return TSharedRef<ObjectType, Mode>::FromStd(std::make_shared<ObjectType>(std::forward<ArgTypes>(Args)...));
}

template <typename ObjectType>
TRawPtrProxy<ObjectType> MakeShareable(ObjectType* Object)
{
	return { Object };
}

template <typename CastToType, typename CastFromType, ESPMode Mode>
TSharedPtr<CastToType, Mode> StaticCastSharedPtr(const TSharedPtr<CastFromType, Mode>& Pointer)
{
	return TSharedPtr<CastToType, Mode>::FromStd(std::static_pointer_cast<CastToType>(Pointer.GetStd()));
}
template <typename CastToType, typename CastFromType, ESPMode Mode>
TSharedRef<CastToType, Mode> StaticCastSharedRef(const TSharedRef<CastFromType, Mode>& Reference)
{
	return TSharedRef<CastToType, Mode>::FromStd(std::static_pointer_cast<CastToType>(Reference.GetStd()));
}
template <typename CastToType, typename CastFromType, ESPMode Mode>
TSharedPtr<CastToType, Mode> ConstCastSharedPtr(const TSharedPtr<CastFromType, Mode>& Pointer)
{
	return TSharedPtr<CastToType, Mode>::FromStd(std::const_pointer_cast<CastToType>(Pointer.GetStd()));
}
template <typename CastToType, typename CastFromType, ESPMode Mode>
TSharedRef<CastToType, Mode> ConstCastSharedRef(const TSharedRef<CastFromType, Mode>& Reference)
{
	return TSharedRef<CastToType, Mode>::FromStd(std::const_pointer_cast<CastToType>(Reference.GetStd()));
}
