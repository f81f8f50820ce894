#include "StructReader.h"

#include "DelegateReader.h"
#include "FunctionReader.h"
#include "Macros.h"
#include "PropertyReader.h"

std::optional<FParsedStruct> FStructReader::Read(const FSourceToken& Macro, const FSpecifierList& Specifiers)
{
	FParsedStruct Struct;
	Struct.Line = Macro.Line;
	Struct.bInterface = Macro.Is("UINTERFACE");
	Struct.bClass = Macro.Is("UCLASS") || Struct.bInterface;
	if (Struct.bInterface)
	{
		Struct.Flags = { "CLASS_Abstract", "CLASS_Interface" };
	}
	Reader.ErrorUnlessEmpty(Macro.Line,
		Struct.bClass ? ApplyClassSpecifiers(Specifiers, Struct) : ApplyStructSpecifiers(Specifiers, Struct));
	Struct.Meta.SetDefault("ToolTip", Macro.Comment);
	if (!Reader.Expect(Struct.bClass ? "class" : "struct", "a reflected type"))
	{
		return std::nullopt;
	}
	Struct.ApiMacro = Reader.SkipAttributes();
	Struct.Name = Reader.Next().Text;
	Reader.Accept("final");
	ReadBases(Struct);
	if (!Reader.Expect("{", "'" + Struct.Name + "'"))
	{
		return std::nullopt;
	}
	ReadMembers(Struct);
	return Struct;
}

void FStructReader::ReadNativeInterface(FParsedStruct& Interface)
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

void FStructReader::ReadBases(FParsedStruct& Struct)
{
	if (!Reader.Accept(":"))
	{
		return;
	}
	while (
		Reader.Accept("public") || Reader.Accept("private") || Reader.Accept("protected") || Reader.Accept("virtual"))
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

void FStructReader::ReadMembers(FParsedStruct& Struct)
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

void FStructReader::ReadMember(FParsedStruct& Struct)
{
	const FSourceToken& Token = Reader.Peek();
	if (Token.Is("GENERATED_BODY"))
	{
		Struct.BodyLine = Token.Line;
		Access = Struct.bClass ? EAccess::Private : EAccess::Public;
		Reader.SkipMacro();
		Reader.Accept(";");
	}
	else if (IsTypeMacro(Token) && Reader.Peek(1).Is("("))
	{
		Reader.Error("'" + Token.Text + "' must be at global scope, not inside a class or function");
		Reader.SkipMacro();
	}
	else if (IsMemberMacro(Token) && Reader.Peek(1).Is("("))
	{
		ReadReflectedMember(Struct);
	}
	else if (Struct.bClass && IsDelegateMacro(Token) && Reader.Peek(1).Is("("))
	{
		ReadMemberDelegate(Struct);
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

void FStructReader::ReadReflectedMember(FParsedStruct& Struct)
{
	const FSourceToken& Macro = Reader.Peek();
	if (Macro.Condition == ECondition::Unknown)
	{
		Reader.Error("'" + Macro.Text + "' must not be inside preprocessor blocks, except for WITH_EDITORONLY_DATA");
		Reader.SkipMacro();
		return;
	}
	Reader.Next();
	const FSpecifierList Specifiers = Reader.ReadSpecifiers();
	if (Macro.Is("UPROPERTY"))
	{
		if (std::optional<FParsedProperty> Property = ReadProperty(Reader, Macro, Specifiers, Struct, Access))
		{
			Struct.Properties.push_back(std::move(*Property));
		}
	}
	else if (std::optional<FParsedFunction> Function = ReadFunction(Reader, Macro, Specifiers, Struct, Access))
	{
		Struct.Functions.push_back(std::move(*Function));
	}
}

void FStructReader::ReadMemberDelegate(const FParsedStruct& Struct)
{
	const std::string Error = GetConditionError(Reader.Peek());
	if (!Error.empty())
	{
		Reader.Error(Error);
		Reader.SkipMacro();
	}
	else if (std::optional<FParsedDelegate> Delegate = ReadDelegate(Reader, Struct.Name))
	{
		Delegates.push_back(std::move(*Delegate));
	}
}

bool FStructReader::ReadAccess()
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

void FStructReader::SkipBody()
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

void FStructReader::NoteDeclaration(FParsedStruct& Struct)
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
