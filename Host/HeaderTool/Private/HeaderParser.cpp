#include "HeaderParser.h"

#include "DelegateReader.h"
#include "EnumReader.h"
#include "Macros.h"
#include "StructReader.h"

#include <algorithm>

namespace
{
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
		, Structs(Reader, InHeader.Delegates)
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
		else if (IsDelegateMacro(Token) && Reader.Peek(1).Is("("))
		{
			ReadGlobalDelegate();
		}
		else if (IsMemberMacro(Token) && Reader.Peek(1).Is("("))
		{
			Reader.Error("'" + Token.Text + "' must be inside a class or struct that is reflected itself");
			Reader.SkipMacro();
		}
		else if (FParsedStruct* const Interface = FindInterfaceHere())
		{
			Structs.ReadNativeInterface(*Interface);
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

	/** Why a reflected type cannot stand here; empty when it can. */
	std::string GetPlacementError() const
	{
		const FSourceToken& Macro = Reader.Peek();
		std::string ConditionError = GetConditionError(Macro);
		if (!ConditionError.empty())
		{
			return ConditionError;
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
			Reader.SkipMacro();
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
			if (std::optional<FParsedEnum> Enum = ReadEnum(Reader, Macro, Specifiers))
			{
				Header.Enums.push_back(std::move(*Enum));
			}
		}
		else if (std::optional<FParsedStruct> Struct = Structs.Read(Macro, Specifiers))
		{
			Header.Structs.push_back(std::move(*Struct));
		}
	}

	void ReadGlobalDelegate()
	{
		const std::string PlacementError = GetPlacementError();
		if (!PlacementError.empty())
		{
			Reader.Error(PlacementError);
			Reader.SkipMacro();
		}
		else if (std::optional<FParsedDelegate> Delegate = ReadDelegate(Reader, {}))
		{
			Header.Delegates.push_back(std::move(*Delegate));
		}
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
	FStructReader Structs;
	std::vector<EScope> Scopes;
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
