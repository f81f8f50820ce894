#pragma once

#include "CoreMinimal.h"

enum class EToolMenuInsertType : uint8
{
	Default,
	Before,
	After,
	First,
	Last,
};

/** Where an entry or a section goes among the others; by default behind those that are there. */
struct FToolMenuInsert
{
	FToolMenuInsert() = default;
	FToolMenuInsert(const FName InName, const EToolMenuInsertType InPosition)
		: Name(InName)
		, Position(InPosition)
	{
	}

	bool IsBeforeOrAfter() const
	{
		return Position == EToolMenuInsertType::Before || Position == EToolMenuInsertType::After;
	}
	bool operator==(const FToolMenuInsert& Other) const = default;

	/** The neighbour, for Before and After. */
	FName Name;
	EToolMenuInsertType Position = EToolMenuInsertType::Default;
};
