#include "FunctionReader.h"

#include "ParameterDefaults.h"

#include <algorithm>

void SetParameterFlags(FParsedProperty& Parameter, bool bInOut)
{
	Parameter.Flags = { "CPF_Parm" };
	if (Parameter.Type.bReference)
	{
		Parameter.Flags.push_back("CPF_OutParm");
		if (bInOut || Parameter.Type.bConst)
		{
			Parameter.Flags.push_back("CPF_ReferenceParm");
		}
	}
	if (Parameter.Type.bConst)
	{
		Parameter.Flags.push_back("CPF_ConstParm");
	}
}

void AddReturnValue(FParsedFunction& Function, FParsedProperty& Return, bool bReturns)
{
	Function.bReturns = bReturns;
	if (bReturns)
	{
		Return.Name = "ReturnValue";
		Return.Flags = { "CPF_Parm", "CPF_OutParm", "CPF_ReturnParm" };
		Function.Parameters.push_back(std::move(Return));
	}
}

void AddOutParametersFlag(FParsedFunction& Function)
{
	const bool bHasOutParameters =
		std::any_of(Function.Parameters.begin(), Function.Parameters.end(), [](const FParsedProperty& Parameter) {
			return std::find(Parameter.Flags.begin(), Parameter.Flags.end(), "CPF_OutParm") != Parameter.Flags.end();
		});
	if (bHasOutParameters)
	{
		Function.Flags.push_back("FUNC_HasOutParms");
	}
}

namespace
{
/** What is const and answers something is pure to Blueprints, unless it says that it is not. */
void AddPureFlag(FParsedFunction& Function)
{
	const auto Has = [&Function](const char* Flag) {
		return std::find(Function.Flags.begin(), Function.Flags.end(), Flag) != Function.Flags.end();
	};
	if (Function.bConst && !Function.bImpure && Has("FUNC_BlueprintCallable") && Has("FUNC_HasOutParms") &&
		!Has("FUNC_BlueprintPure"))
	{
		Function.Flags.push_back("FUNC_BlueprintPure");
	}
}

/** The default goes to the function's metadata as "CPP_Default_<Parameter>". */
void ReadParameterDefault(FTokenReader& Reader, FParsedFunction& Function, const FParsedProperty& Parameter)
{
	if (!Reader.Accept("="))
	{
		return;
	}
	std::string Default;
	int Depth = 0;
	while (!Reader.AtEnd() && (Depth > 0 || (!Reader.Peek().Is(",") && !Reader.Peek().Is(")"))))
	{
		Depth += Reader.Peek().Is("(") - Reader.Peek().Is(")");
		Default += Reader.Next().Text;
	}
	Function.Meta.Set("CPP_Default_" + Parameter.Name, GetDefaultText(Default));
}

bool ReadParameters(FTokenReader& Reader, FParsedFunction& Function)
{
	while (!Reader.Accept(")"))
	{
		FParsedProperty Parameter;
		Parameter.Line = Reader.Peek().Line;
		bool bInOut = false;
		if (Reader.Accept("UPARAM"))
		{
			const FSpecifierList Specifiers = Reader.ReadSpecifiers();
			bInOut = !Specifiers.Specifiers.empty() && EqualsIgnoreCase(Specifiers.Specifiers[0].Name, "ref");
			Parameter.Meta = Specifiers.Meta;
		}
		if (!Reader.ReadType(Parameter.Type) || !Reader.IsIdentifier())
		{
			Reader.Error("Missing parameter name in the function '" + Function.Name + "'");
			return false;
		}
		Parameter.Name = Reader.Next().Text;
		SetParameterFlags(Parameter, bInOut);
		ReadParameterDefault(Reader, Function, Parameter);
		Function.Parameters.push_back(std::move(Parameter));
		if (!Reader.Peek().Is(")") && !Reader.Expect(",", "the parameters of '" + Function.Name + "'"))
		{
			return false;
		}
	}
	return true;
}

bool ReadSignature(FTokenReader& Reader, FParsedFunction& Function)
{
	for (;;)
	{
		if (Reader.Accept("static"))
		{
			Function.bStatic = true;
		}
		else if (!Reader.Accept("virtual") && !Reader.Accept("inline") && !Reader.Accept("FORCEINLINE") &&
				 Reader.SkipAttributes().empty())
		{
			break;
		}
	}

	FParsedProperty Return;
	Return.Line = Reader.Peek().Line;
	if (!Reader.ReadType(Return.Type))
	{
		return false;
	}
	if (!Reader.IsIdentifier())
	{
		Reader.Error("Bad function name");
		return false;
	}
	Function.Name = Reader.Next().Text;
	if (!Reader.Expect("(", "the function '" + Function.Name + "'") || !ReadParameters(Reader, Function))
	{
		return false;
	}
	Function.bConst = Reader.Accept("const");
	Reader.SkipDeclaration();

	AddReturnValue(Function, Return, Return.Type.Name != "void" || Return.Type.bPointer);
	return true;
}

void FinishFunction(FTokenReader& Reader, const FSourceToken& Macro, const FParsedStruct& Struct,
	FParsedFunction& Function, EAccess Access)
{
	FFlagNames& Flags = Function.Flags;
	Flags.push_back(Access == EAccess::Public      ? "FUNC_Public"
					: Access == EAccess::Protected ? "FUNC_Protected"
												   : "FUNC_Private");
	if (Function.Event != EEventKind::Implementable)
	{
		Flags.push_back("FUNC_Native");
	}
	if (Function.bStatic)
	{
		Flags.push_back("FUNC_Static");
	}
	if (Function.bConst)
	{
		Flags.push_back("FUNC_Const");
	}
	AddOutParametersFlag(Function);
	AddPureFlag(Function);
	Function.Meta.SetDefault("ToolTip", Macro.Comment);
	for (const FParsedFunction& Other : Struct.Functions)
	{
		if (EqualsIgnoreCase(Other.Name, Function.Name))
		{
			Reader.Error(Function.Line, "'" + Function.Name + "' conflicts with 'Function " +
											Struct.GetReflectedName() + ":" + Other.Name +
											"': reflected functions cannot be overloaded");
		}
	}
}
}

std::optional<FParsedFunction> ReadFunction(FTokenReader& Reader, const FSourceToken& Macro,
	const FSpecifierList& Specifiers, const FParsedStruct& Struct, EAccess Access)
{
	FParsedFunction Function;
	Function.Line = Macro.Line;
	Function.bEditorOnly = Macro.Condition != ECondition::None;
	Reader.ErrorUnlessEmpty(Macro.Line, ApplyFunctionSpecifiers(Specifiers, Function));
	if (!Struct.bClass)
	{
		Reader.Error(Macro.Line, "USTRUCTs cannot contain UFUNCTIONs.");
		Reader.SkipDeclaration();
		return std::nullopt;
	}
	if (!ReadSignature(Reader, Function))
	{
		Reader.SkipDeclaration();
		return std::nullopt;
	}
	FinishFunction(Reader, Macro, Struct, Function, Access);
	return Function;
}
