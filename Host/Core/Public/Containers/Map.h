#pragma once

#include "Containers/Set.h"

template <typename KeyType, typename ValueType, bool bInAllowDuplicateKeys = false>
struct TDefaultMapKeyFuncs : BaseKeyFuncs<TPair<KeyType, ValueType>, KeyType, bInAllowDuplicateKeys>
{
	static const KeyType& GetSetKey(const TPair<KeyType, ValueType>& Element) { return Element.Key; }
	template <typename ComparableKey>
	static bool Matches(const KeyType& A, const ComparableKey& B)
	{
		return A == B;
	}
	template <typename ComparableKey>
	static uint32 GetKeyHash(const ComparableKey& Key)
	{
		return GetTypeHash(Key);
	}
};

/**
 * A hashed map that keeps the order of insertion as long as nothing is removed.
 *
 * Keys of type FString and FName ignore case, as their == does. Adding a key that is there replaces the whole pair, the
 * key's text included, in its place.
 */
template <typename InKeyType, typename InValueType, typename SetAllocator = FDefaultSetAllocator,
	typename KeyFuncs = TDefaultMapKeyFuncs<InKeyType, InValueType>>
class TMap
{
public:
	using KeyType = InKeyType;
	using ValueType = InValueType;
	using ElementType = TPair<KeyType, ValueType>;
	using PairSetType = TSet<ElementType, KeyFuncs, SetAllocator>;

	TMap() = default;
	TMap(std::initializer_list<ElementType> InitList)
		: Pairs(InitList)
	{
	}

	int32 Num() const { return Pairs.Num(); }
	bool IsEmpty() const { return Pairs.IsEmpty(); }
	void Empty(int32 Slack = 0) { Pairs.Empty(Slack); }
	void Reset() { Pairs.Empty(); }
	void Reserve(int32 Number) { Pairs.Reserve(Number); }

	ValueType& Add(const KeyType& Key, const ValueType& Value) { return Emplace(Key, Value); }
	ValueType& Add(const KeyType& Key, ValueType&& Value) { return Emplace(Key, MoveTempIfPossible(Value)); }
	ValueType& Add(KeyType&& Key, const ValueType& Value) { return Emplace(MoveTempIfPossible(Key), Value); }
	ValueType& Add(KeyType&& Key, ValueType&& Value)
	{
		return Emplace(MoveTempIfPossible(Key), MoveTempIfPossible(Value));
	}
	ValueType& Add(const KeyType& Key) { return Emplace(Key, ValueType()); }
	template <typename K, typename V>
	ValueType& Emplace(K&& Key, V&& Value)
	{
		return Pairs[Pairs.Emplace(nullptr, ElementType(std::forward<K>(Key), std::forward<V>(Value)))].Value;
	}

	ValueType* Find(const KeyType& Key)
	{
		ElementType* Pair = Pairs.Find(Key);
		return Pair ? &Pair->Value : nullptr;
	}
	const ValueType* Find(const KeyType& Key) const { return const_cast<TMap*>(this)->Find(Key); }
	ValueType FindRef(const KeyType& Key) const
	{
		const ValueType* Value = Find(Key);
		return Value ? *Value : ValueType();
	}
	ValueType& FindOrAdd(const KeyType& Key)
	{
		ValueType* Value = Find(Key);
		return Value ? *Value : Add(Key);
	}
	ValueType& FindOrAdd(const KeyType& Key, const ValueType& Default)
	{
		ValueType* Value = Find(Key);
		return Value ? *Value : Add(Key, Default);
	}
	ValueType& FindChecked(const KeyType& Key)
	{
		ValueType* Value = Find(Key);
		checkf(Value, TEXT("The map does not hold the key"));
		return *Value;
	}
	const ValueType& FindChecked(const KeyType& Key) const { return const_cast<TMap*>(this)->FindChecked(Key); }
	ValueType& operator[](const KeyType& Key) { return FindChecked(Key); }
	const ValueType& operator[](const KeyType& Key) const { return FindChecked(Key); }
	bool Contains(const KeyType& Key) const { return Pairs.Contains(Key); }
	const KeyType* FindKey(const ValueType& Value) const
	{
		for (const ElementType& Pair : Pairs)
		{
			if (Pair.Value == Value)
			{
				return &Pair.Key;
			}
		}
		return nullptr;
	}

	int32 Remove(const KeyType& Key) { return Pairs.Remove(Key); }
	bool RemoveAndCopyValue(const KeyType& Key, ValueType& OutRemovedValue)
	{
		ValueType* Value = Find(Key);
		if (!Value)
		{
			return false;
		}
		OutRemovedValue = MoveTempIfPossible(*Value);
		Pairs.Remove(Key);
		return true;
	}
	void Append(const TMap& Other)
	{
		for (const ElementType& Pair : Other)
		{
			Add(Pair.Key, Pair.Value);
		}
	}

	int32 GetKeys(TArray<KeyType>& OutKeys) const
	{
		OutKeys.Reset();
		GenerateKeyArray(OutKeys);
		return OutKeys.Num();
	}
	void GenerateKeyArray(TArray<KeyType>& OutArray) const
	{
		OutArray.Empty(Num());
		for (const ElementType& Pair : Pairs)
		{
			OutArray.Add(Pair.Key);
		}
	}
	void GenerateValueArray(TArray<ValueType>& OutArray) const
	{
		OutArray.Empty(Num());
		for (const ElementType& Pair : Pairs)
		{
			OutArray.Add(Pair.Value);
		}
	}

	template <typename Predicate>
	void KeySort(Predicate&& Pred)
	{
		Pairs.Sort([&Pred](const ElementType& A, const ElementType& B) { return Pred(A.Key, B.Key); });
	}
	template <typename Predicate>
	void ValueSort(Predicate&& Pred)
	{
		Pairs.Sort([&Pred](const ElementType& A, const ElementType& B) { return Pred(A.Value, B.Value); });
	}

	/** An iterator over the pairs that also answers Key() and Value(). */
	template <typename SetIterator>
	class TPairIterator : public SetIterator
	{
	public:
		using SetIterator::SetIterator;
		TPairIterator(SetIterator It)
			: SetIterator(It)
		{
		}
		const KeyType& Key() const { return (**this).Key; }
		auto& Value() const { return (**this).Value; }
		TPairIterator& operator++()
		{
			SetIterator::operator++();
			return *this;
		}
	};
	using TIterator = TPairIterator<typename PairSetType::TIterator>;
	using TConstIterator = TPairIterator<typename PairSetType::TConstIterator>;

	TIterator CreateIterator() { return TIterator(Pairs.CreateIterator()); }
	TConstIterator CreateConstIterator() const { return TConstIterator(Pairs.CreateConstIterator()); }
	auto begin() { return Pairs.begin(); }
	auto begin() const { return Pairs.begin(); }
	auto end() { return Pairs.end(); }
	auto end() const { return Pairs.end(); }

private:
	PairSetType Pairs;
};
