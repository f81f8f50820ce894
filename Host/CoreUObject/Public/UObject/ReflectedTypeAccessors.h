#pragma once

class UClass;
class UEnum;
class UScriptStruct;

/** The reflected form of an enum; specialised in the generated header of each UENUM. */
template <typename EnumType>
UEnum* StaticEnum();

/** The reflected form of a class. */
template <typename ClassType>
UClass* StaticClass()
{
	return ClassType::StaticClass();
}

/** The reflected form of a struct. */
template <typename StructType>
UScriptStruct* StaticStruct()
{
	return StructType::StaticStruct();
}
