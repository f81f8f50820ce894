#include "UObject/Class.h"

bool UEnum::SetEnums(
	TArray<TPair<FName, int64>>& InNames, ECppForm InCppForm, EEnumFlags InFlags, bool bAddMaxKeyIfMissing)
{
	Names = InNames;
	CppForm = InCppForm;
	EnumFlags = InFlags;
	if (bAddMaxKeyIfMissing && !ContainsExistingMax())
	{
		const int64 MaxValue = GetMaxEnumValue() + 1;
		const FString Scope = CppForm == ECppForm::Regular ? FString() : GetName() + TEXT("::");
		Names.Emplace(FName(*(Scope + GenerateEnumPrefix() + TEXT("_MAX"))), MaxValue);
	}
	return true;
}

FString UEnum::GenerateEnumPrefix() const
{
	FString Prefix = Names.IsEmpty() ? FString() : GetNameStringByIndex(0);
	for (int32 Index = 1; Index < Names.Num(); ++Index)
	{
		const FString Name = GetNameStringByIndex(Index);
		int32 Length = 0;
		while (Length < FMath::Min(Prefix.Len(), Name.Len()) && Prefix[Length] == Name[Length])
		{
			++Length;
		}
		Prefix.LeftInline(Length);
	}
	int32 Underscore = INDEX_NONE;
	return Prefix.FindLastChar(u'_', Underscore) && Underscore > 0 ? Prefix.Left(Underscore) : GetName();
}

bool UEnum::ContainsExistingMax() const
{
	return GetIndexByNameString(TEXT("MAX")) != INDEX_NONE ||
		   GetIndexByNameString(GenerateEnumPrefix() + TEXT("_MAX")) != INDEX_NONE;
}

FName UEnum::GetNameByIndex(int32 Index) const
{
	return Names.IsValidIndex(Index) ? Names[Index].Key : FName();
}

FString UEnum::GetNameStringByIndex(int32 Index) const
{
	if (!Names.IsValidIndex(Index))
	{
		return FString();
	}
	const FString Full = Names[Index].Key.ToString();
	const int32 Colons = Full.Find(TEXT("::"));
	return Colons == INDEX_NONE ? Full : Full.RightChop(Colons + 2);
}

FText UEnum::GetDisplayNameTextByIndex(int32 Index) const
{
	const FString DisplayName = GetMetaData(TEXT("DisplayName"), Index);
	return FText::FromString(
		DisplayName.IsEmpty() ? FName::NameToDisplayString(GetNameStringByIndex(Index), false) : DisplayName);
}

FText UEnum::GetToolTipTextByIndex(int32 Index) const
{
	const FString ToolTip = GetMetaData(TEXT("ToolTip"), Index);
	return ToolTip.IsEmpty() ? GetDisplayNameTextByIndex(Index) : FText::FromString(ToolTip);
}

int64 UEnum::GetValueByIndex(int32 Index) const
{
	return Names.IsValidIndex(Index) ? Names[Index].Value : INDEX_NONE;
}

int32 UEnum::GetIndexByNameString(const FString& Name) const
{
	const int32 Colons = Name.Find(TEXT("::"), ESearchCase::CaseSensitive, ESearchDir::FromEnd);
	const FString Short = Colons == INDEX_NONE ? Name : Name.RightChop(Colons + 2);
	for (int32 Index = 0; Index < Names.Num(); ++Index)
	{
		if (GetNameStringByIndex(Index) == Short)
		{
			return Index;
		}
	}
	return INDEX_NONE;
}

int32 UEnum::GetIndexByValue(int64 Value) const
{
	return Names.IndexOfByPredicate([Value](const TPair<FName, int64>& Entry) { return Entry.Value == Value; });
}

int64 UEnum::GetValueByNameString(const FString& Name) const
{
	return GetValueByIndex(GetIndexByNameString(Name));
}

int64 UEnum::GetMaxEnumValue() const
{
	int64 MaxValue = Names.IsEmpty() ? 0 : Names[0].Value;
	for (const TPair<FName, int64>& Entry : Names)
	{
		MaxValue = FMath::Max(MaxValue, Entry.Value);
	}
	return MaxValue;
}

FName UEnum::GetMetaDataKey(const TCHAR* Key, int32 NameIndex) const
{
	return NameIndex == INDEX_NONE ? FName(Key) : FName(*(GetNameStringByIndex(NameIndex) + TEXT(".") + Key));
}

bool UEnum::HasMetaData(const TCHAR* Key, int32 NameIndex) const
{
	return Super::HasMetaData(GetMetaDataKey(Key, NameIndex));
}

FString UEnum::GetMetaData(const TCHAR* Key, int32 NameIndex) const
{
	return Super::GetMetaData(GetMetaDataKey(Key, NameIndex));
}

void UEnum::SetMetaData(const TCHAR* Key, const TCHAR* Value, int32 NameIndex)
{
	Super::SetMetaData(GetMetaDataKey(Key, NameIndex), Value);
}
