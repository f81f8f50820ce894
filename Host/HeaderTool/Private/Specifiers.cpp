#include "Specifiers.h"

#include <algorithm>

namespace
{
/** What a specifier stands for: flags, or a metadata key that takes its values. */
struct FSpecifierRule
{
	std::string_view Name;
	FFlagNames Flags;
	std::string_view MetaKey = {};
	std::string_view MetaValue = {}; // of a specifier without values
};

const FSpecifierRule ClassRules[] = {
	{ "Abstract", { "CLASS_Abstract" } },
	{ "AutoCollapseCategories", {}, "AutoCollapseCategories" },
	{ "AutoExpandCategories", {}, "AutoExpandCategories" },
	{ "Blueprintable", {}, "IsBlueprintBase", "true" },
	{ "BlueprintType", {}, "BlueprintType", "true" },
	{ "ClassGroup", {}, "ClassGroupNames" },
	{ "CollapseCategories", { "CLASS_CollapseCategories" } },
	{ "Config", { "CLASS_Config" } },
	{ "Const", { "CLASS_Const" } },
	{ "CustomConstructor", {} },
	{ "DefaultConfig", { "CLASS_DefaultConfig" } },
	{ "DefaultToInstanced", { "CLASS_DefaultToInstanced" } },
	{ "Deprecated", { "CLASS_Deprecated", "CLASS_NotPlaceable" } },
	{ "DontCollapseCategories", {} },
	{ "EditInlineNew", { "CLASS_EditInlineNew" } },
	{ "GlobalUserConfig", { "CLASS_GlobalUserConfig" } },
	{ "HideCategories", {}, "HideCategories" },
	{ "HideDropdown", { "CLASS_HideDropDown" } },
	{ "HideFunctions", {}, "HideFunctions" },
	{ "Intrinsic", { "CLASS_Intrinsic" } },
	{ "MinimalAPI", { "CLASS_MinimalAPI" } },
	{ "NoExport", {} },
	{ "NonTransient", {} },
	{ "NotBlueprintable", {}, "IsBlueprintBase", "false" },
	{ "NotBlueprintType", {}, "NotBlueprintType", "true" },
	{ "NotEditInlineNew", {} },
	{ "NotPlaceable", { "CLASS_NotPlaceable" } },
	{ "PerObjectConfig", { "CLASS_PerObjectConfig" } },
	{ "Placeable", {} },
	{ "PrioritizeCategories", {}, "PrioritizeCategories" },
	{ "ProjectUserConfig", { "CLASS_ProjectUserConfig" } },
	{ "ShowCategories", {}, "ShowCategories" },
	{ "ShowFunctions", {}, "ShowFunctions" },
	{ "Transient", { "CLASS_Transient" } },
	{ "Within", {} },
};

const FSpecifierRule StructRules[] = {
	{ "Atomic", { "STRUCT_Atomic" } },
	{ "BlueprintType", {}, "BlueprintType", "true" },
	{ "HasDefaults", {} },
	{ "Immutable", { "STRUCT_Immutable", "STRUCT_Atomic" } },
	{ "NoExport", { "STRUCT_NoExport" } },
};

const FSpecifierRule EnumRules[] = {
	{ "BlueprintType", {}, "BlueprintType", "true" },
	{ "Flags", {} },
	{ "NoExport", {} },
};

const FSpecifierRule PropertyRules[] = {
	{ "AdvancedDisplay", { "CPF_AdvancedDisplay" } },
	{ "AssetRegistrySearchable", { "CPF_AssetRegistrySearchable" } },
	{ "BlueprintAssignable", { "CPF_BlueprintAssignable" } },
	{ "BlueprintAuthorityOnly", { "CPF_BlueprintAuthorityOnly" } },
	{ "BlueprintCallable", { "CPF_BlueprintCallable" } },
	{ "BlueprintGetter", { "CPF_BlueprintVisible", "CPF_BlueprintReadOnly" }, "BlueprintGetter" },
	{ "BlueprintReadOnly", { "CPF_BlueprintVisible", "CPF_BlueprintReadOnly" } },
	{ "BlueprintReadWrite", { "CPF_BlueprintVisible" } },
	{ "BlueprintSetter", { "CPF_BlueprintVisible" }, "BlueprintSetter" },
	{ "Category", {}, "Category" },
	{ "Config", { "CPF_Config" } },
	{ "DuplicateTransient", { "CPF_DuplicateTransient" } },
	{ "EditAnywhere", { "CPF_Edit" } },
	{ "EditDefaultsOnly", { "CPF_Edit", "CPF_DisableEditOnInstance" } },
	{ "EditFixedSize", { "CPF_EditFixedSize" } },
	{ "EditInstanceOnly", { "CPF_Edit", "CPF_DisableEditOnTemplate" } },
	{ "Export", { "CPF_ExportObject" } },
	{ "GlobalConfig", { "CPF_Config", "CPF_GlobalConfig" } },
	{ "Instanced", { "CPF_PersistentInstance", "CPF_ExportObject", "CPF_InstancedReference" }, "EditInline", "true" },
	{ "Interp", { "CPF_Edit", "CPF_BlueprintVisible", "CPF_Interp" } },
	{ "NoClear", { "CPF_NoClear" } },
	{ "NonPIEDuplicateTransient", { "CPF_NonPIEDuplicateTransient" } },
	{ "NonTransactional", { "CPF_NonTransactional" } },
	{ "Replicated", { "CPF_Net" } },
	{ "ReplicatedUsing", { "CPF_Net", "CPF_RepNotify" }, "ReplicatedUsing" },
	{ "SaveGame", { "CPF_SaveGame" } },
	{ "SimpleDisplay", { "CPF_SimpleDisplay" } },
	{ "SkipSerialization", { "CPF_SkipSerialization" } },
	{ "TextExportTransient", { "CPF_TextExportTransient" } },
	{ "Transient", { "CPF_Transient" } },
	{ "VisibleAnywhere", { "CPF_Edit", "CPF_EditConst" } },
	{ "VisibleDefaultsOnly", { "CPF_Edit", "CPF_EditConst", "CPF_DisableEditOnInstance" } },
	{ "VisibleInstanceOnly", { "CPF_Edit", "CPF_EditConst", "CPF_DisableEditOnTemplate" } },
};

const FSpecifierRule FunctionRules[] = {
	{ "BlueprintAuthorityOnly", { "FUNC_BlueprintAuthorityOnly" } },
	{ "BlueprintCallable", { "FUNC_BlueprintCallable" } },
	{ "BlueprintCosmetic", { "FUNC_BlueprintCosmetic" } },
	{ "BlueprintGetter", { "FUNC_BlueprintCallable", "FUNC_BlueprintPure" }, "BlueprintGetter", "" },
	{ "BlueprintImplementableEvent", { "FUNC_Event", "FUNC_BlueprintEvent" } },
	{ "BlueprintInternalUseOnly", {}, "BlueprintInternalUseOnly", "true" },
	{ "BlueprintNativeEvent", { "FUNC_Event", "FUNC_BlueprintEvent" } },
	{ "BlueprintPure", { "FUNC_BlueprintCallable", "FUNC_BlueprintPure" } },
	{ "BlueprintSetter", { "FUNC_BlueprintCallable" }, "BlueprintSetter", "" },
	{ "CallInEditor", {}, "CallInEditor", "true" },
	{ "Category", {}, "Category" },
	{ "CustomThunk", {} },
	{ "Exec", { "FUNC_Exec" } },
	{ "SealedEvent", { "FUNC_Final" } },
};

std::string Join(const std::vector<std::string>& Values)
{
	std::string Result;
	for (const std::string& Value : Values)
	{
		Result += (Result.empty() ? "" : " ") + Value;
	}
	return Result;
}

void AddFlags(FFlagNames& Flags, const FFlagNames& NewFlags)
{
	for (const std::string& Flag : NewFlags)
	{
		if (std::find(Flags.begin(), Flags.end(), Flag) == Flags.end())
		{
			Flags.push_back(Flag);
		}
	}
}

/** Applies what the table says of each specifier. Returns the error of the first one that the table does not know. */
template <size_t Count>
std::string ApplyRules(const FSpecifierList& List, const FSpecifierRule (&Rules)[Count], std::string_view What,
	FFlagNames& Flags, FMetaData& Meta)
{
	for (const FSpecifier& Specifier : List.Specifiers)
	{
		const auto Rule = std::find_if(std::begin(Rules), std::end(Rules),
			[&](const FSpecifierRule& Each) { return EqualsIgnoreCase(Each.Name, Specifier.Name); });
		if (Rule == std::end(Rules))
		{
			return "Unknown " + std::string(What) + " specifier '" + Specifier.Name + "'";
		}
		AddFlags(Flags, Rule->Flags);
		if (!Rule->MetaKey.empty())
		{
			Meta.Set(Rule->MetaKey, Specifier.Values.empty() ? std::string(Rule->MetaValue) : Join(Specifier.Values));
		}
	}
	for (const auto& [Key, Value] : List.Meta.GetEntries())
	{
		Meta.Set(Key, Value);
	}
	return {};
}

const FSpecifier* FindSpecifier(const FSpecifierList& List, std::string_view Name)
{
	const auto Found = std::find_if(List.Specifiers.begin(), List.Specifiers.end(),
		[Name](const FSpecifier& Each) { return EqualsIgnoreCase(Each.Name, Name); });
	return Found == List.Specifiers.end() ? nullptr : &*Found;
}

bool HasSpecifier(const FSpecifierList& List, std::string_view Name)
{
	return FindSpecifier(List, Name) != nullptr;
}

/** Spaces around the bars of nested categories mean nothing. */
void TidyCategory(FMetaData& Meta)
{
	for (const auto& [Key, Value] : Meta.GetEntries())
	{
		if (!EqualsIgnoreCase(Key, "Category"))
		{
			continue;
		}
		std::string Tidy;
		for (const char Character : Value)
		{
			while (Character == '|' && Tidy.ends_with(' '))
			{
				Tidy.pop_back();
			}
			if (Character != ' ' || !Tidy.ends_with('|'))
			{
				Tidy += Character;
			}
		}
		Meta.Set("Category", Tidy);
		return;
	}
}

bool IsEditSpecifier(const FSpecifier& Specifier)
{
	static constexpr std::string_view Names[] = { "EditAnywhere", "EditDefaultsOnly", "EditInstanceOnly",
		"VisibleAnywhere", "VisibleDefaultsOnly", "VisibleInstanceOnly" };
	return std::any_of(std::begin(Names), std::end(Names),
		[&](std::string_view Name) { return EqualsIgnoreCase(Name, Specifier.Name); });
}
}

std::string ApplyClassSpecifiers(const FSpecifierList& List, FParsedStruct& Class)
{
	const std::string Error = ApplyRules(List, ClassRules, "class", Class.Flags, Class.Meta);
	if (const FSpecifier* Config = FindSpecifier(List, "Config"))
	{
		if (Config->Values.size() != 1)
		{
			return "The class specifier 'Config' needs the name of a configuration, such as Config = Game";
		}
		Class.ConfigName = Config->Values[0];
	}
	Class.bIntrinsic = HasSpecifier(List, "Intrinsic");
	Class.bNoExport = Class.bIntrinsic || HasSpecifier(List, "NoExport");
	Class.bBlueprintType = HasSpecifier(List, "BlueprintType") || HasSpecifier(List, "Blueprintable");
	return Error;
}

std::string ApplyStructSpecifiers(const FSpecifierList& List, FParsedStruct& Struct)
{
	Struct.bNoExport = HasSpecifier(List, "NoExport");
	Struct.bBlueprintType = HasSpecifier(List, "BlueprintType");
	return ApplyRules(List, StructRules, "struct", Struct.Flags, Struct.Meta);
}

std::string ApplyEnumSpecifiers(const FSpecifierList& List, FParsedEnum& Enum)
{
	FFlagNames NoFlags;
	Enum.bNoExport = HasSpecifier(List, "NoExport");
	Enum.bBlueprintType = HasSpecifier(List, "BlueprintType");
	Enum.bFlags = HasSpecifier(List, "Flags");
	return ApplyRules(List, EnumRules, "enum", NoFlags, Enum.Meta);
}

std::string ApplyEnumeratorSpecifiers(const FSpecifierList& List, FParsedEnumerator& Enumerator)
{
	for (const FSpecifier& Specifier : List.Specifiers)
	{
		Enumerator.Meta.Set(Specifier.Name, Join(Specifier.Values));
	}
	return {};
}

std::string ApplyPropertySpecifiers(const FSpecifierList& List, FParsedProperty& Property)
{
	const std::string Error = ApplyRules(List, PropertyRules, "variable", Property.Flags, Property.Meta);
	if (!Error.empty())
	{
		return Error;
	}
	if (std::count_if(List.Specifiers.begin(), List.Specifiers.end(), IsEditSpecifier) > 1)
	{
		return "Found more than one edit/visibility specifier, only one is allowed";
	}
	if (HasSpecifier(List, "BlueprintReadOnly") && HasSpecifier(List, "BlueprintReadWrite"))
	{
		return "Cannot specify a property as being both BlueprintReadOnly and BlueprintReadWrite";
	}
	TidyCategory(Property.Meta);
	return {};
}

std::string ApplyFunctionSpecifiers(const FSpecifierList& List, FParsedFunction& Function)
{
	const std::string Error = ApplyRules(List, FunctionRules, "function", Function.Flags, Function.Meta);
	if (!Error.empty())
	{
		return Error;
	}
	const bool bImplementable = HasSpecifier(List, "BlueprintImplementableEvent");
	const bool bNative = HasSpecifier(List, "BlueprintNativeEvent");
	if (bImplementable && bNative)
	{
		return "A function cannot be both BlueprintNativeEvent and BlueprintImplementableEvent";
	}
	Function.Event = bImplementable ? EEventKind::Implementable : bNative ? EEventKind::Native : EEventKind::None;
	Function.bCustomThunk = HasSpecifier(List, "CustomThunk");
	const FSpecifier* const Pure = FindSpecifier(List, "BlueprintPure");
	if (Pure && !Pure->Values.empty() && EqualsIgnoreCase(Pure->Values[0], "false"))
	{
		Function.bImpure = true;
		std::erase(Function.Flags, "FUNC_BlueprintPure");
	}
	TidyCategory(Function.Meta);
	return {};
}
