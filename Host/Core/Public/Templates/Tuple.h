#pragma once

#include "Templates/TypeHash.h"

#include <type_traits>
#include <utility>

/** Two values with names; the element type of maps. Structured bindings work on it. */
template <typename InKeyType, typename InValueType>
struct TPair
{
	using KeyType = InKeyType;
	using ValueType = InValueType;

	TPair() = default;
	template <typename K, typename V>
	requires(std::is_constructible_v<InKeyType, K&&>&& std::is_constructible_v<InValueType, V&&>)
		TPair(K&& InKey, V&& InValue)
		: Key(std::forward<K>(InKey))
		, Value(std::forward<V>(InValue))
	{
	}

	bool operator==(const TPair& Other) const { return Key == Other.Key && Value == Other.Value; }

	InKeyType Key{};
	InValueType Value{};
};

template <typename K, typename V>
TPair<std::decay_t<K>, std::decay_t<V>> MakeTuple(K&& Key, V&& Value)
{
	return TPair<std::decay_t<K>, std::decay_t<V>>(std::forward<K>(Key), std::forward<V>(Value));
}

template <typename K, typename V>
uint32 GetTypeHash(const TPair<K, V>& Pair)
{
	return HashCombine(GetTypeHash(Pair.Key), GetTypeHash(Pair.Value));
}
