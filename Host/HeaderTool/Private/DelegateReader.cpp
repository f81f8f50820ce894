#include "DelegateReader.h"

#include "FunctionReader.h"

#include <algorithm>

namespace
{
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

/** "(Ret, FName, Type, Name, Type, Name)" */
bool ReadDelegateSignature(FTokenReader& Reader, const FDelegateMacro& Macro, FParsedFunction& Signature)
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
}

bool IsDelegateMacro(const FToken& Token)
{
	return ReadDelegateMacro(Token.Text).bKnown;
}

std::optional<FParsedDelegate> ReadDelegate(FTokenReader& Reader, const std::string& Owner)
{
	FParsedDelegate Delegate;
	Delegate.Owner = Owner;
	const FSourceToken& Token = Reader.Next();
	const FDelegateMacro Macro = ReadDelegateMacro(Token.Text);
	Delegate.bMulticast = Macro.bMulticast;
	Delegate.Signature.Line = Token.Line;
	Delegate.Signature.Meta.SetDefault("ToolTip", Token.Comment);
	if (!ReadDelegateSignature(Reader, Macro, Delegate.Signature))
	{
		Reader.SkipUntil(";");
		return std::nullopt;
	}
	Reader.Accept(";");
	FFlagNames& Flags = Delegate.Signature.Flags;
	Flags = { "FUNC_Public", "FUNC_Delegate" };
	if (Macro.bMulticast)
	{
		Flags.push_back("FUNC_MulticastDelegate");
	}
	AddOutParametersFlag(Delegate.Signature);
	return Delegate;
}
