#include "Model.h"

#include <algorithm>
#include <cctype>

bool EqualsIgnoreCase(std::string_view A, std::string_view B)
{
	return std::equal(A.begin(), A.end(), B.begin(), B.end(),
		[](unsigned char Left, unsigned char Right) { return std::tolower(Left) == std::tolower(Right); });
}

void FMetaData::Set(std::string_view Key, std::string_view Value)
{
	for (auto& Entry : Entries)
	{
		if (EqualsIgnoreCase(Entry.first, Key))
		{
			Entry.second = Value;
			return;
		}
	}
	Entries.emplace_back(Key, Value);
}

void FMetaData::SetDefault(std::string_view Key, std::string_view Value)
{
	if (!Value.empty() && !Has(Key))
	{
		Entries.emplace_back(Key, Value);
	}
}

bool FMetaData::Has(std::string_view Key) const
{
	return std::any_of(
		Entries.begin(), Entries.end(), [Key](const auto& Entry) { return EqualsIgnoreCase(Entry.first, Key); });
}

std::string FTypeName::ToString(bool bBare) const
{
	std::string Result = bConst && (!bBare || bPointer) ? "const " + Name : Name;
	for (size_t Index = 0; Index < Arguments.size(); ++Index)
	{
		Result += (Index == 0 ? "<" : ", ") + Arguments[Index].ToString();
	}
	Result += Arguments.empty() ? "" : ">";
	Result += bPointer ? "*" : "";
	Result += bReference && !bBare ? "&" : "";
	return Result;
}

std::string JoinFlags(const FFlagNames& Flags, std::string_view None)
{
	std::string Result;
	for (const std::string& Flag : Flags)
	{
		Result += (Result.empty() ? "" : " | ") + Flag;
	}
	return Result.empty() ? std::string(None) : Result;
}

const FKnownType* FTypeRegistry::Find(const std::string& Name) const
{
	const auto Found = Types.find(Name);
	return Found == Types.end() ? nullptr : &Found->second;
}

const FKnownType* FTypeRegistry::FindInClass(const std::string& Name, std::string ClassName) const
{
	while (const FKnownType* Class = Find(ClassName))
	{
		if (const FKnownType* Inside = Find(ClassName + "::" + Name))
		{
			return Inside;
		}
		ClassName = Class->Super;
	}
	return Find(Name);
}

const FKnownType* FTypeRegistry::FindReflectedName(std::string_view Name) const
{
	for (const auto& [CppName, Type] : Types)
	{
		if (EqualsIgnoreCase(GetReflectedName(Type), Name))
		{
			return &Type;
		}
	}
	return nullptr;
}

bool FTypeRegistry::IsChildOf(const std::string& Name, std::string_view Ancestor) const
{
	for (const FKnownType* Type = Find(Name); Type; Type = Find(Type->Super))
	{
		if (Type->Name == Ancestor)
		{
			return true;
		}
	}
	return false;
}

const FKnownType* FTypeRegistry::FindInterface(const std::string& NativeName) const
{
	const std::string Name = NativeName.starts_with('I') ? "U" + NativeName.substr(1) : std::string();
	return IsChildOf(Name, "UInterface") ? Find(Name) : nullptr;
}

bool FTypeRegistry::IsInstanced(const std::string& ClassName) const
{
	const FKnownType* Class = Find(ClassName);
	while (Class && !Class->bInstanced)
	{
		Class = Find(Class->Super);
	}
	return Class != nullptr;
}

bool FTypeRegistry::TakesInitializer(const std::string& ClassName) const
{
	const FKnownType* Class = Find(ClassName);
	while (Class && !Class->bDeclaresConstructor && !Class->Super.empty())
	{
		Class = Find(Class->Super);
	}
	return Class && (Class->bDeclaresInitializer || Class->Name == "UObject");
}

bool IsDelegate(ETypeKind Kind)
{
	return Kind == ETypeKind::Delegate || Kind == ETypeKind::MulticastDelegate;
}

std::string GetReflectedName(const FKnownType& Type)
{
	if (IsDelegate(Type.Kind))
	{
		const size_t Colon = Type.Name.rfind(':');
		const size_t Start = Colon == std::string::npos ? 0 : Colon + 1;
		return Type.Name.substr(0, Start) + Type.Name.substr(Start + 1) + "__DelegateSignature";
	}
	return Type.Kind == ETypeKind::Enum ? Type.Name.substr(0, Type.Name.find("::")) : Type.Name.substr(1);
}

void FErrors::Add(const std::string& Path, int Line, const std::string& Text)
{
	Lines.push_back(Path + "(" + std::to_string(Line) + "): error: " + Text);
}
