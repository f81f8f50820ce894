#pragma once

#include "HAL/Platform.h"

class FName;
class FString;
class FText;
class FOutputDevice;
class FArchive;
struct FGuid;
struct FDateTime;
struct FTimespan;
struct FColor;
struct FLinearColor;
class UObject;
class UClass;

template <typename ElementType>
class TArray;
template <typename ElementType, typename KeyFuncs, typename Allocator>
class TSet;
template <typename KeyType, typename ValueType, typename SetAllocator, typename KeyFuncs>
class TMap;
