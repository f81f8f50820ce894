#include "HeaderParser.h"

#include "ParameterDefaults.h"
#include "TokenReader.h"

#include <algorithm>

namespace
{
bool IsTypeMacro(const FToken& Token)
{
	return Token.Is("UCLASS") || Token.Is("USTRUCT") || Token.Is("UENUM") || Token.Is("UINTERFACE");
}

bool IsMemberMacro(const FToken& Token)
{
	return Token.Is("UPROPERTY") || Token.Is("UFUNCTION");
}

/** Such as DECLARE_DYNAMIC_MULTICAST_DELEGATE_RetVal_OneParam: what the words of the name tell. */
struct FDelegateMacro
{
	bool bKnown = false;
	bool bMulticast = false;
	bool bReturns = false;
	size_t ParameterCount = 0;
};

bool Consume(std::string_view& Text, std::string_view Start)
{
	const bool bStarts = Text.starts_with(Start);
	Text.remove_prefix(bStarts ? Start.size() : 0);
	return bStarts;
}

FDelegateMacro ReadDelegateMacro(std::string_view Name)
{
	static constexpr std::string_view Counts[] = { "", "_OneParam", "_TwoParams", "_ThreeParams", "_FourParams",
		"_FiveParams", "_SixParams" };
	FDelegateMacro Macro;
	if (!Consume(Name, "DECLARE_DYNAMIC_"))
	{
		return Macro;
	}
	Macro.bMulticast = Consume(Name, "MULTICAST_");
	if (!Consume(Name, "DELEGATE"))
	{
		return Macro;
	}
	Macro.bReturns = Consume(Name, "_RetVal");
	const auto Found = std::find(std::begin(Counts), std::end(Counts), Name);
	Macro.bKnown = Found != std::end(Counts) && !(Macro.bMulticast && Macro.bReturns);
	Macro.ParameterCount = static_cast<size_t>(Found - std::begin(Counts));
	return Macro;
}

enum class EScope
{
	Namespace,
	Other,
};

class FHeaderParser
{
public:
	FHeaderParser(FParsedHeader& InHeader, const FSource& InSource, FErrors& InErrors)
		: Header(InHeader)
		, Source(InSource)
		, Errors(InErrors)
		, Reader(InSource.Tokens, InHeader.Path, InErrors)
	{
	}

	void Run()
	{
		while (!Reader.AtEnd())
		{
			ReadGlobal();
		}
		CheckIncludes();
	}

private:
	void ReadGlobal()
	{
		const FSourceToken& Token = Reader.Peek();
		if (IsTypeMacro(Token) && Reader.Peek(1).Is("("))
		{
			ReadReflectedType();
		}
		else if (ReadDelegateMacro(Token.Text).bKnown && Reader.Peek(1).Is("("))
		{
			ReadDelegate({});
		}
		else if (IsMemberMacro(Token) && Reader.Peek(1).Is("("))
		{
			Reader.Error("'" + Token.Text + "' must be inside a class or struct that is reflected itself");
			SkipMacro();
		}
		else if (FParsedStruct* const Interface = FindInterfaceHere())
		{
			ReadNativeInterface(*Interface);
		}
		else if (Token.Is("namespace"))
		{
			Reader.SkipUntil("{", ";");
			if (Reader.Accept("{"))
			{
				Scopes.push_back(EScope::Namespace);
			}
		}
		else if (Token.Is("template") && Reader.Peek(1).Is("<"))
		{
			Reader.Next();
			bAfterTemplate = true;
		}
		else
		{
			TrackScope(Token);
			Reader.Next();
		}
	}

	void TrackScope(const FToken& Token)
	{
		if (Token.Is("{"))
		{
			Scopes.push_back(EScope::Other);
		}
		else if (Token.Is("}") && !Scopes.empty())
		{
			Scopes.pop_back();
		}
		if (Token.Is("{") || Token.Is(";"))
		{
			bAfterTemplate = false;
		}
	}

	void SkipMacro()
	{
		Reader.Next();
		Reader.SkipBrackets();
	}

	/** Why a reflected type cannot stand here; empty when it can. */
	std::string GetPlacementError() const
	{
		const FSourceToken& Macro = Reader.Peek();
		if (Macro.Condition != ECondition::None)
		{
			return "'" + Macro.Text + "' must not be inside preprocessor blocks";
		}
		if (!Scopes.empty())
		{
			return "'" + Macro.Text + "' must be at global scope, not inside a " +
				   (Scopes.back() == EScope::Namespace ? "namespace" : "class or function");
		}
		if (bAfterTemplate)
		{
			return "'" + Macro.Text + "' cannot be applied to a template";
		}
		return {};
	}

	void ReadReflectedType()
	{
		const std::string PlacementError = GetPlacementError();
		if (!PlacementError.empty())
		{
			Reader.Error(PlacementError);
			SkipMacro();
			return;
		}

		const FSourceToken& Macro = Reader.Next();
		const FSpecifierList Specifiers = Reader.ReadSpecifiers();
		if (Reader.Peek().Is("template"))
		{
			Reader.Error("'" + Macro.Text + "' cannot be applied to a template");
		}
		else if (Macro.Is("UENUM"))
		{
			ReadEnum(Macro, Specifiers);
		}
		else
		{
			ReadStruct(Macro, Specifiers);
		}
	}

	/** Owner is the class around the declaration, if any. */
	void ReadDelegate(const std::string& Owner)
	{
		const std::string PlacementError = GetPlacementError();
		if (!PlacementError.empty())
		{
			Reader.Error(PlacementError);
			SkipMacro();
			return;
		}
		FParsedDelegate Delegate;
		Delegate.Owner = Owner;
		const FSourceToken& Token = Reader.Next();
		const FDelegateMacro Macro = ReadDelegateMacro(Token.Text);
		Delegate.bMulticast = Macro.bMulticast;
		Delegate.Signature.Line = Token.Line;
		Delegate.Signature.Meta.SetDefault("ToolTip", Token.Comment);
		if (!ReadDelegateSignature(Macro, Delegate.Signature))
		{
			Reader.SkipUntil(";");
			return;
		}
		Reader.Accept(";");
		FFlagNames& Flags = Delegate.Signature.Flags;
		Flags = { "FUNC_Public", "FUNC_Delegate" };
		if (Macro.bMulticast)
		{
			Flags.push_back("FUNC_MulticastDelegate");
		}
		AddOutParametersFlag(Delegate.Signature);
		Header.Delegates.push_back(std::move(Delegate));
	}

	/** "(Ret, FName, Type, Name, Type, Name)" */
	bool ReadDelegateSignature(const FDelegateMacro& Macro, FParsedFunction& Signature)
	{
		FParsedProperty Return;
		Return.Line = Signature.Line;
		Reader.Expect("(", "a delegate");
		if (Macro.bReturns && (!Reader.ReadType(Return.Type) || !Reader.Expect(",", "a delegate")))
		{
			return false;
		}
		Signature.Name = Reader.Next().Text;
		if (Signature.Name.size() < 2 || Signature.Name[0] != 'F')
		{
			Reader.Error(Signature.Line, "Delegate type declarations must start with F");
			return false;
		}
		while (Reader.Accept(","))
		{
			FParsedProperty Parameter;
			Parameter.Line = Reader.Peek().Line;
			if (!Reader.ReadType(Parameter.Type) || !Reader.Expect(",", "a delegate's parameter, which has a name"))
			{
				return false;
			}
			Parameter.Name = Reader.Next().Text;
			SetParameterFlags(Parameter, false);
			Signature.Parameters.push_back(std::move(Parameter));
		}
		if (Signature.Parameters.size() != Macro.ParameterCount)
		{
			Reader.Error(Signature.Line, "The delegate '" + Signature.Name + "' has " +
											 std::to_string(Signature.Parameters.size()) + " parameters, not " +
											 std::to_string(Macro.ParameterCount));
			return false;
		}
		AddReturnValue(Signature, Return, Macro.bReturns);
		return Reader.Expect(")", "the delegate '" + Signature.Name + "'");
	}

	static void AddReturnValue(FParsedFunction& Function, FParsedProperty& Return, bool bReturns)
	{
		Function.bReturns = bReturns;
		if (bReturns)
		{
			Return.Name = "ReturnValue";
			Return.Flags = { "CPF_Parm", "CPF_OutParm", "CPF_ReturnParm" };
			Function.Parameters.push_back(std::move(Return));
		}
	}

	static void AddOutParametersFlag(FParsedFunction& Function)
	{
		const bool bHasOutParameters =
			std::any_of(Function.Parameters.begin(), Function.Parameters.end(), [](const FParsedProperty& Parameter) {
				return std::find(Parameter.Flags.begin(), Parameter.Flags.end(), "CPF_OutParm") !=
					   Parameter.Flags.end();
			});
		if (bHasOutParameters)
		{
			Function.Flags.push_back("FUNC_HasOutParms");
		}
	}

	/** What is const and answers something is pure to Blueprints, unless it says that it is not. */
	static void AddPureFlag(FParsedFunction& Function)
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

	void ReadEnum(const FSourceToken& Macro, const FSpecifierList& Specifiers)
	{
		FParsedEnum Enum;
		Enum.Line = Macro.Line;
		ReportAt(Macro.Line, ApplyEnumSpecifiers(Specifiers, Enum));
		Enum.Meta.SetDefault("ToolTip", Macro.Comment);
		Enum.bNamespaced = Reader.Accept("namespace");
		if (Enum.bNamespaced)
		{
			Enum.Name = Reader.Next().Text;
			Reader.Expect("{", "the namespace '" + Enum.Name + "'");
		}
		if (!Reader.Expect("enum", "an enumeration"))
		{
			return;
		}
		Enum.bScoped = Reader.Accept("class") || Reader.Accept("struct");
		Reader.SkipAttributes();
		if (Enum.bNamespaced)
		{
			Reader.Expect("Type", "the enumeration in '" + Enum.Name + "'");
		}
		else
		{
			Enum.Name = Reader.Next().Text;
		}
		FTypeName Underlying;
		if (Reader.Accept(":") && Reader.ReadType(Underlying))
		{
			Enum.Underlying = Underlying.Name;
		}
		if (!Reader.Expect("{", "the enumeration '" + Enum.Name + "'"))
		{
			return;
		}
		ReadEnumerators(Enum);
		if (Enum.bNamespaced)
		{
			Reader.Accept(";");
			Reader.Expect("}", "the namespace '" + Enum.Name + "'");
		}
		CheckEnum(Enum);
		Header.Enums.push_back(std::move(Enum));
	}

	void ReadEnumerators(FParsedEnum& Enum)
	{
		while (!Reader.AtEnd() && !Reader.Accept("}"))
		{
			FParsedEnumerator Enumerator;
			std::string ToolTip = Reader.Peek().Comment;
			Enumerator.Name = Reader.Next().Text;
			ReadEnumeratorMeta(Enumerator);
			if (Reader.Accept("="))
			{
				while (
					!Reader.AtEnd() && !Reader.Peek().Is(",") && !Reader.Peek().Is("}") && !Reader.Peek().Is("UMETA"))
				{
					Reader.Peek().Is("(") ? Reader.SkipBrackets() : void(Reader.Next());
				}
				ReadEnumeratorMeta(Enumerator);
			}
			if (!Reader.Peek().Is("}") && !Reader.Expect(",", "the enumeration '" + Enum.Name + "'"))
			{
				Reader.SkipUntil(",", "}");
			}
			Enumerator.Meta.SetDefault("ToolTip", ToolTip.empty() ? Reader.Previous().TrailingComment : ToolTip);
			Enum.Enumerators.push_back(std::move(Enumerator));
		}
	}

	void ReadEnumeratorMeta(FParsedEnumerator& Enumerator)
	{
		if (Reader.Accept("UMETA"))
		{
			ReportAt(Reader.Peek().Line, ApplyEnumeratorSpecifiers(Reader.ReadSpecifiers(), Enumerator));
		}
	}

	void CheckEnum(const FParsedEnum& Enum)
	{
		// An enum of the old forms is kept in a byte, whatever it says.
		const bool bOldForm = !Enum.bScoped && Enum.Underlying == "int";
		if (Enum.bBlueprintType && Enum.Underlying != "uint8" && !bOldForm)
		{
			Reader.Error(Enum.Line, "Invalid BlueprintType enum base - currently only uint8 supported");
		}
		if (Enum.Enumerators.empty())
		{
			Reader.Error(Enum.Line, "The enumeration '" + Enum.Name + "' has no enumerators");
		}
	}

	void ReadStruct(const FSourceToken& Macro, const FSpecifierList& Specifiers)
	{
		FParsedStruct Struct;
		Struct.Line = Macro.Line;
		Struct.bInterface = Macro.Is("UINTERFACE");
		Struct.bClass = Macro.Is("UCLASS") || Struct.bInterface;
		if (Struct.bInterface)
		{
			Struct.Flags = { "CLASS_Abstract", "CLASS_Interface" };
		}
		ReportAt(Macro.Line,
			Struct.bClass ? ApplyClassSpecifiers(Specifiers, Struct) : ApplyStructSpecifiers(Specifiers, Struct));
		Struct.Meta.SetDefault("ToolTip", Macro.Comment);
		if (!Reader.Expect(Struct.bClass ? "class" : "struct", "a reflected type"))
		{
			return;
		}
		Struct.ApiMacro = Reader.SkipAttributes();
		Struct.Name = Reader.Next().Text;
		Reader.Accept("final");
		ReadBases(Struct);
		if (!Reader.Expect("{", "'" + Struct.Name + "'"))
		{
			return;
		}
		ReadMembers(Struct);
		Header.Structs.push_back(std::move(Struct));
	}

	void ReadBases(FParsedStruct& Struct)
	{
		if (!Reader.Accept(":"))
		{
			return;
		}
		while (Reader.Accept("public") || Reader.Accept("private") || Reader.Accept("protected") ||
			   Reader.Accept("virtual"))
		{
		}
		FTypeName Super;
		if (Reader.ReadType(Super))
		{
			Struct.Super = Super.Name;
		}
		// Of further bases, only interfaces are reflected.
		while (Reader.Accept(","))
		{
			while (Reader.Accept("public") || Reader.Accept("private") || Reader.Accept("protected"))
			{
			}
			if (FTypeName Base; Reader.IsIdentifier() && Reader.ReadType(Base) && Base.Name.starts_with('I'))
			{
				Struct.Interfaces.push_back(Base.Name);
			}
		}
		Reader.SkipUntil("{", ";");
	}

	/** The interface of this header whose class with the I begins here; null when none does. */
	FParsedStruct* FindInterfaceHere()
	{
		if (!Reader.Peek().Is("class") || !Scopes.empty())
		{
			return nullptr;
		}
		const size_t NameAt = Reader.Peek(2).Is("{") || Reader.Peek(2).Is(":") ? 1 : 2;
		const FToken& After = Reader.Peek(NameAt + 1);
		const auto Found = std::find_if(Header.Structs.begin(), Header.Structs.end(), [&](const FParsedStruct& Each) {
			return Each.bInterface && Each.NativeBodyLine == 0 && Each.GetNativeName() == Reader.Peek(NameAt).Text;
		});
		return Found != Header.Structs.end() && (After.Is("{") || After.Is(":")) ? &*Found : nullptr;
	}

	/** What is declared there counts as declared in the interface. */
	void ReadNativeInterface(FParsedStruct& Interface)
	{
		FParsedStruct Native;
		Native.Name = Interface.Name;
		Native.bClass = true;
		Reader.SkipUntil("{", ";");
		Reader.Accept("{");
		ReadMembers(Native);
		if (!Native.Properties.empty())
		{
			Reader.Error(Native.Properties[0].Line, "Interfaces cannot contain UPROPERTYs");
		}
		Interface.NativeBodyLine = Native.BodyLine;
		Interface.Functions = std::move(Native.Functions);
		Interface.OwnImplementations = std::move(Native.OwnImplementations);
	}

	void ReadMembers(FParsedStruct& Struct)
	{
		Access = Struct.bClass ? EAccess::Private : EAccess::Public;
		if (!Struct.bNoExport && !Reader.Peek().Is("GENERATED_BODY"))
		{
			Reader.Error("Expected a GENERATED_BODY() at the start of the " +
						 std::string(Struct.bClass ? "class" : "struct") + " '" + Struct.Name + "'");
		}
		while (!Reader.AtEnd() && !Reader.Accept("}"))
		{
			ReadMember(Struct);
		}
	}

	void ReadMember(FParsedStruct& Struct)
	{
		const FSourceToken& Token = Reader.Peek();
		if (Token.Is("GENERATED_BODY"))
		{
			Struct.BodyLine = Token.Line;
			Access = Struct.bClass ? EAccess::Private : EAccess::Public;
			SkipMacro();
			Reader.Accept(";");
		}
		else if (IsTypeMacro(Token) && Reader.Peek(1).Is("("))
		{
			Reader.Error("'" + Token.Text + "' must be at global scope, not inside a class or function");
			SkipMacro();
		}
		else if (IsMemberMacro(Token) && Reader.Peek(1).Is("("))
		{
			ReadReflectedMember(Struct);
		}
		else if (Struct.bClass && ReadDelegateMacro(Token.Text).bKnown && Reader.Peek(1).Is("("))
		{
			ReadDelegate(Struct.Name);
		}
		else if (Token.Is("{"))
		{
			SkipBody();
		}
		else if (!ReadAccess())
		{
			NoteDeclaration(Struct);
			Reader.Peek().Is("(") ? Reader.SkipBrackets() : void(Reader.Next());
		}
	}

	/** Passes braces in which nothing may be reflected. */
	void SkipBody()
	{
		int Depth = 0;
		do
		{
			const FSourceToken& Token = Reader.Peek();
			if ((IsTypeMacro(Token) || IsMemberMacro(Token)) && Reader.Peek(1).Is("("))
			{
				Reader.Error("'" + Token.Text + "' must not be inside a nested type or a function");
			}
			Depth += Token.Is("{") - Token.Is("}");
			Reader.Next();
		}
		while (Depth > 0 && !Reader.AtEnd());
	}

	bool ReadAccess()
	{
		if (!Reader.Peek(1).Is(":"))
		{
			return false;
		}
		const FToken& Token = Reader.Peek();
		if (!Token.Is("public") && !Token.Is("protected") && !Token.Is("private"))
		{
			return false;
		}
		Access = Token.Is("public") ? EAccess::Public : Token.Is("protected") ? EAccess::Protected : EAccess::Private;
		Reader.Next();
		Reader.Next();
		return true;
	}

	/** Looks at declarations that are not reflected but that the generated code has to know. */
	void NoteDeclaration(FParsedStruct& Struct)
	{
		if (!Reader.IsIdentifier() || !Reader.Peek(1).Is("("))
		{
			return;
		}
		const std::string& Name = Reader.Peek().Text;
		if (Name == Struct.Name && !Reader.Previous().Is("~"))
		{
			Struct.bDeclaresConstructor = true;
			Struct.bTakesInitializer |= Reader.Peek(2).Is("const") && Reader.Peek(3).Is("FObjectInitializer");
		}
		else if (Name.ends_with("_Implementation"))
		{
			Struct.OwnImplementations.push_back(Name);
		}
	}

	void ReadReflectedMember(FParsedStruct& Struct)
	{
		const FSourceToken& Macro = Reader.Peek();
		if (Macro.Condition == ECondition::Unknown)
		{
			Reader.Error(
				"'" + Macro.Text + "' must not be inside preprocessor blocks, except for WITH_EDITORONLY_DATA");
			SkipMacro();
			return;
		}
		Reader.Next();
		const FSpecifierList Specifiers = Reader.ReadSpecifiers();
		if (Macro.Is("UPROPERTY"))
		{
			ReadProperty(Macro, Specifiers, Struct);
		}
		else
		{
			ReadFunction(Macro, Specifiers, Struct);
		}
	}

	void ReadProperty(const FSourceToken& Macro, const FSpecifierList& Specifiers, FParsedStruct& Struct)
	{
		FParsedProperty Property;
		ReportAt(Macro.Line, ApplyPropertySpecifiers(Specifiers, Property));
		if (Macro.Condition == ECondition::Editor)
		{
			Reader.Error(
				Macro.Line, "UProperties should not be wrapped by WITH_EDITOR, use WITH_EDITORONLY_DATA instead.");
		}
		if (Macro.Condition == ECondition::EditorOnlyData)
		{
			Property.bEditorOnly = true;
			Property.Flags.push_back("CPF_EditorOnly");
		}
		Property.Line = Reader.Peek().Line;
		if (!ReadVariable(Property))
		{
			Reader.SkipDeclaration();
			return;
		}
		Reader.SkipUntil(";");
		Reader.Next();
		FinishProperty(Macro, Struct, Property);
		Struct.Properties.push_back(std::move(Property));
	}

	bool ReadVariable(FParsedProperty& Property)
	{
		if (Reader.Peek().Is("static") || Reader.Peek().Is("mutable"))
		{
			Reader.Error("'" + Reader.Peek().Text + "' is not allowed on a reflected variable");
			return false;
		}
		Reader.SkipAttributes();
		if (!Reader.ReadType(Property.Type))
		{
			return false;
		}
		if (!Reader.IsIdentifier())
		{
			Reader.Error("Missing variable name");
			return false;
		}
		Property.Name = Reader.Next().Text;
		if (Reader.Peek().Is("["))
		{
			Property.ArrayDim = Reader.Peek(1).Text;
			Reader.SkipBrackets();
		}
		if (Reader.Accept(":"))
		{
			Property.bBitField = true;
			if (Property.Type.Name != "uint8" || Reader.Peek().Text != "1")
			{
				Reader.Error(
					"Bad bit field '" + Property.Name + "': only 'uint8 " + Property.Name + " : 1' is supported");
				return false;
			}
		}
		return true;
	}

	void FinishProperty(const FSourceToken& Macro, const FParsedStruct& Struct, FParsedProperty& Property)
	{
		Property.Meta.SetDefault("ToolTip", Macro.Comment.empty() ? Reader.Previous().TrailingComment : Macro.Comment);
		const auto HasFlag = [&Property](std::string_view Flag) {
			return std::find(Property.Flags.begin(), Property.Flags.end(), Flag) != Property.Flags.end();
		};
		if (HasFlag("CPF_Edit") || HasFlag("CPF_BlueprintVisible"))
		{
			Property.Meta.SetDefault("Category", Struct.GetReflectedName());
		}
		if (HasFlag("CPF_BlueprintVisible") && Access == EAccess::Private && !Property.Meta.Has("AllowPrivateAccess"))
		{
			Reader.Error(
				Macro.Line, std::string(HasFlag("CPF_BlueprintReadOnly") ? "BlueprintReadOnly" : "BlueprintReadWrite") +
								" should not be used on private members");
		}
		if (Property.Name.ends_with("_DEPRECATED"))
		{
			Property.Name.resize(Property.Name.size() - std::string_view("_DEPRECATED").size());
			Property.Flags.push_back("CPF_Deprecated");
		}
		Property.Flags.push_back(Access == EAccess::Public      ? "CPF_NativeAccessSpecifierPublic"
								 : Access == EAccess::Protected ? "CPF_NativeAccessSpecifierProtected"
																: "CPF_NativeAccessSpecifierPrivate");
	}

	void ReadFunction(const FSourceToken& Macro, const FSpecifierList& Specifiers, FParsedStruct& Struct)
	{
		FParsedFunction Function;
		Function.Line = Macro.Line;
		Function.bEditorOnly = Macro.Condition != ECondition::None;
		ReportAt(Macro.Line, ApplyFunctionSpecifiers(Specifiers, Function));
		if (!Struct.bClass)
		{
			Reader.Error(Macro.Line, "USTRUCTs cannot contain UFUNCTIONs.");
			Reader.SkipDeclaration();
			return;
		}
		if (!ReadSignature(Function))
		{
			Reader.SkipDeclaration();
			return;
		}
		FinishFunction(Macro, Struct, Function);
		Struct.Functions.push_back(std::move(Function));
	}

	bool ReadSignature(FParsedFunction& Function)
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
		if (!Reader.Expect("(", "the function '" + Function.Name + "'") || !ReadParameters(Function))
		{
			return false;
		}
		Function.bConst = Reader.Accept("const");
		Reader.SkipDeclaration();

		AddReturnValue(Function, Return, Return.Type.Name != "void" || Return.Type.bPointer);
		return true;
	}

	bool ReadParameters(FParsedFunction& Function)
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
			ReadParameterDefault(Function, Parameter);
			Function.Parameters.push_back(std::move(Parameter));
			if (!Reader.Peek().Is(")") && !Reader.Expect(",", "the parameters of '" + Function.Name + "'"))
			{
				return false;
			}
		}
		return true;
	}

	static void SetParameterFlags(FParsedProperty& Parameter, bool bInOut)
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

	/** The default goes to the function's metadata as "CPP_Default_<Parameter>". */
	void ReadParameterDefault(FParsedFunction& Function, const FParsedProperty& Parameter)
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

	void FinishFunction(const FSourceToken& Macro, const FParsedStruct& Struct, FParsedFunction& Function)
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

	void ReportAt(int Line, const std::string& Error)
	{
		if (!Error.empty())
		{
			Reader.Error(Line, Error);
		}
	}

	void CheckIncludes()
	{
		const std::string Generated = Header.Stem + ".generated.h";
		const auto Found = std::find_if(Source.Includes.begin(), Source.Includes.end(),
			[&](const FInclude& Include) { return Include.File.ends_with(".generated.h"); });
		if (Found == Source.Includes.end())
		{
			if (Header.HasTypes() && HasExportedTypes())
			{
				Reader.Error(1, "Expected an include at the top of the header: '#include \"" + Generated + "\"'");
			}
			return;
		}
		if (!Header.HasTypes())
		{
			// What is reflected but was rejected has been reported already.
			if (Errors.IsEmpty())
			{
				Reader.Error(Found->Line, "'" + Found->File + "' is included, but the header has no reflected types");
			}
			return;
		}
		if (Found->File != Generated && !Found->File.ends_with("/" + Generated))
		{
			Reader.Error(Found->Line, "Found '" + Found->File + "' when expecting '#include \"" + Generated + "\"'");
		}
		if (Found + 1 != Source.Includes.end())
		{
			Reader.Error((Found + 1)->Line,
				"#include found after .generated.h file - the .generated.h file should always be the last #include in "
				"a header");
		}
	}

	bool HasExportedTypes() const
	{
		const auto IsExported = [](const auto& Type) { return !Type.bNoExport; };
		return !Header.Delegates.empty() || std::any_of(Header.Structs.begin(), Header.Structs.end(), IsExported) ||
			   std::any_of(Header.Enums.begin(), Header.Enums.end(), IsExported);
	}

	FParsedHeader& Header;
	const FSource& Source;
	FErrors& Errors;
	FTokenReader Reader;
	std::vector<EScope> Scopes;
	EAccess Access = EAccess::Public;
	bool bAfterTemplate = false;
};

std::string GetStem(const std::string& Path)
{
	const size_t Slash = Path.find_last_of('/');
	const std::string File = Slash == std::string::npos ? Path : Path.substr(Slash + 1);
	return File.substr(0, File.find('.'));
}
}

FParsedHeader ParseHeader(
	const std::string& Path, const std::string& IncludePath, std::string_view Text, FErrors& Errors)
{
	FParsedHeader Header;
	Header.Path = Path;
	Header.IncludePath = IncludePath;
	Header.Stem = GetStem(Path);
	const FSource Source = ResolveConditions(Tokenize(Text));
	FHeaderParser(Header, Source, Errors).Run();
	return Header;
}
