#include "Types/PyNames.h"

#include "Misc/Char.h"
#include "UObject/UnrealType.h"

namespace PyNames
{
const FName ScriptName(TEXT("ScriptName"));

/** A word ends in front of a capital that follows a small letter or that a small letter follows. */
bool BeginsWord(const FString& Name, int32 Index)
{
	if (Index == 0 || !FChar::IsUpper(Name[Index]) || Name[Index - 1] == u'_')
	{
		return false;
	}
	return FChar::IsLower(Name[Index - 1]) || (Index + 1 < Name.Len() && FChar::IsLower(Name[Index + 1]));
}

FString PartWords(const FString& Name)
{
	FString Result;
	for (int32 Index = 0; Index < Name.Len(); ++Index)
	{
		if (BeginsWord(Name, Index))
		{
			Result.AppendChar(u'_');
		}
		Result.AppendChar(Name[Index]);
	}
	return Result;
}

bool IsKeyword(const FString& Word)
{
	static const TSet<FString> Keywords = { TEXT("and"), TEXT("as"), TEXT("assert"), TEXT("async"), TEXT("await"),
		TEXT("break"), TEXT("class"), TEXT("continue"), TEXT("def"), TEXT("del"), TEXT("elif"), TEXT("else"),
		TEXT("except"), TEXT("finally"), TEXT("for"), TEXT("from"), TEXT("global"), TEXT("if"), TEXT("import"),
		TEXT("in"), TEXT("is"), TEXT("lambda"), TEXT("nonlocal"), TEXT("not"), TEXT("or"), TEXT("pass"), TEXT("raise"),
		TEXT("return"), TEXT("try"), TEXT("while"), TEXT("with"), TEXT("yield") };
	return Keywords.Contains(Word);
}

FString ToSnakeCase(const FString& Name)
{
	FString Result = PartWords(Name).ToLower();
	if (IsKeyword(Result))
	{
		Result.AppendChar(u'_');
	}
	return Result;
}

FString GetName(const FProperty& Property)
{
	if (Property.HasMetaData(ScriptName))
	{
		return ToSnakeCase(Property.GetMetaData(ScriptName));
	}
	const FString Name = Property.GetName();
	const bool bPrefixed =
		Property.IsA(FBoolProperty::StaticClass()) && Name.Len() > 1 && Name[0] == u'b' && FChar::IsUpper(Name[1]);
	return ToSnakeCase(bPrefixed ? Name.RightChop(1) : Name);
}

FString GetName(const UFunction& Function)
{
	return ToSnakeCase(Function.HasMetaData(ScriptName) ? Function.GetMetaData(ScriptName) : Function.GetName());
}

FString GetTypeName(const UField& Type)
{
	if (Type.HasMetaData(ScriptName))
	{
		return Type.GetMetaData(ScriptName);
	}
	const FString Name = Type.GetName();
	const bool bPrefixed =
		Type.IsA(UEnum::StaticClass()) && Name.Len() > 1 && Name[0] == u'E' && FChar::IsUpper(Name[1]);
	return bPrefixed ? Name.RightChop(1) : Name;
}

FString GetEntryName(const UEnum& Enum, int32 Index)
{
	const FString Given = Enum.GetMetaData(TEXT("ScriptName"), Index);
	return PartWords(Given.IsEmpty() ? Enum.GetNameStringByIndex(Index) : Given).ToUpper();
}
}
