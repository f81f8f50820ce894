#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/** Metadata in the order written; a key stands once, letter case ignored. */
class FMetaData
{
public:
	/** Adds the entry, or replaces the value of an entry of this key. */
	void Set(std::string_view Key, std::string_view Value);
	/** Adds the entry unless the key is there or the value is empty. */
	void SetDefault(std::string_view Key, std::string_view Value);
	bool Has(std::string_view Key) const;
	const std::vector<std::pair<std::string, std::string>>& GetEntries() const { return Entries; }

private:
	std::vector<std::pair<std::string, std::string>> Entries;
};

bool EqualsIgnoreCase(std::string_view A, std::string_view B);

/** A type as it is written in a declaration. */
struct FTypeName
{
	std::string Name;
	std::vector<FTypeName> Arguments; // of a template
	bool bConst = false;
	bool bPointer = false;
	bool bReference = false;

	/** As C++, without const and reference when bBare. */
	std::string ToString(bool bBare = false) const;
};

/** Names of flags of one kind, such as "CPF_Edit". */
using FFlagNames = std::vector<std::string>;

/** The flags joined with '|', or None when there are none. */
std::string JoinFlags(const FFlagNames& Flags, std::string_view None);

enum class EAccess
{
	Public,
	Protected,
	Private,
};

/** A type of which property a variable becomes. Accessors are names of functions that return the reflected type. */
struct FPropertyType
{
	std::string Kind; // enumerator of EPropertyKind in the generated code
	std::string TypeAccessor;
	std::string MetaClassAccessor;
	std::vector<FPropertyType> Inner; // element of an array or set; key and value of a map
	bool bBlueprintType = true;
	bool bWrapped = false;   // TObjectPtr or TSubclassOf, not a bare pointer
	bool bInstanced = false; // the object belongs to the one that has the variable
};

struct FParsedProperty
{
	std::string Name;
	FTypeName Type;
	FPropertyType Property;
	FFlagNames Flags;
	FMetaData Meta;
	std::string ArrayDim; // of a C array; empty for one value
	int Line = 0;
	bool bBitField = false;
	bool bEditorOnly = false;
};

enum class EEventKind
{
	None,
	Implementable, // the body is the one that the tool writes
	Native,        // the tool writes a body that calls <Name>_Implementation
};

struct FParsedFunction
{
	std::string Name;
	FFlagNames Flags;
	FMetaData Meta;
	std::vector<FParsedProperty> Parameters; // the return value, if any, is the last and named ReturnValue
	EEventKind Event = EEventKind::None;
	int Line = 0;
	bool bStatic = false;
	bool bConst = false;
	bool bImpure = false; // said so: BlueprintPure = false
	bool bReturns = false;
	bool bCustomThunk = false;
	bool bEditorOnly = false;
};

/** A class or a struct. */
struct FParsedStruct
{
	std::string Name;
	std::string Super; // empty: none
	std::string ApiMacro;
	std::string ConfigName;
	FFlagNames Flags;
	FMetaData Meta;
	std::vector<FParsedProperty> Properties;
	std::vector<FParsedFunction> Functions;
	int Line = 0;
	int BodyLine = 0; // line of GENERATED_BODY
	bool bClass = false;
	bool bNoExport = false;  // the type is declared elsewhere; only its description is wanted
	bool bIntrinsic = false; // the type is also described elsewhere: it is only known
	bool bBlueprintType = false;
	bool bInterface = false;                     // UINTERFACE; its functions are declared in the class with the I
	int NativeBodyLine = 0;                      // of an interface: line of GENERATED_BODY in the class with the I
	std::vector<std::string> Interfaces;         // further bases that are named like interfaces: "IName"
	bool bDeclaresConstructor = false;           // of whatever kind
	bool bTakesInitializer = false;              // a constructor from FObjectInitializer
	std::vector<std::string> OwnImplementations; // "<Name>_Implementation" functions that the class declares itself

	/** Without the prefix. */
	std::string GetReflectedName() const { return Name.substr(1); }
	/** Of an interface: the class that others inherit. */
	std::string GetNativeName() const { return "I" + Name.substr(1); }
};

/** A delegate that is called by a function's name. Its signature becomes a function of its own. */
struct FParsedDelegate
{
	std::string Owner; // the class that it is declared in; empty: none
	FParsedFunction Signature;
	bool bMulticast = false;

	/** As a declaration outside of the owner names it. */
	std::string GetCppName() const { return (Owner.empty() ? "" : Owner + "::") + Signature.Name; }
	/** Of the signature's function. */
	std::string GetReflectedName() const { return Signature.Name.substr(1) + "__DelegateSignature"; }
};

struct FParsedEnumerator
{
	std::string Name;
	FMetaData Meta;
};

struct FParsedEnum
{
	std::string Name;       // of the namespace, when there is one
	std::string Underlying; // empty: none is written
	FMetaData Meta;
	std::vector<FParsedEnumerator> Enumerators;
	int Line = 0;
	bool bScoped = false;
	bool bNamespaced = false; // the old form: namespace EName { enum Type { ... }; }
	bool bBlueprintType = false;
	bool bNoExport = false;
	bool bFlags = false;

	/** The C++ type: "EName::Type" of an enum that stands in a namespace of its own. */
	std::string GetCppName() const { return bNamespaced ? Name + "::Type" : Name; }
};

struct FParsedHeader
{
	std::string Path;
	std::string IncludePath; // as a source of the module includes it
	std::string Stem;
	std::vector<FParsedStruct> Structs; // classes too
	std::vector<FParsedEnum> Enums;
	std::vector<FParsedDelegate> Delegates;

	bool HasTypes() const { return !Structs.empty() || !Enums.empty() || !Delegates.empty(); }
};

enum class ETypeKind
{
	Class,
	Struct,
	Enum,
	Delegate,
	MulticastDelegate,
};

bool IsDelegate(ETypeKind Kind);

struct FKnownType
{
	ETypeKind Kind = ETypeKind::Class;
	std::string Name;
	std::string Super;      // of a class or struct
	std::string Underlying; // of an enum
	std::string Module;
	bool bScoped = false; // of an enum
	bool bBlueprintType = false;
	bool bConfig = false;    // of a class: it names a configuration itself
	bool bInstanced = false; // of a class: it says DefaultToInstanced itself
	bool bDeclaresConstructor = false;
	bool bDeclaresInitializer = false; // a constructor from FObjectInitializer
};

struct FKnownHeader
{
	std::string Stem;
	std::string Module;
};

/** The types of the module at hand and of all modules that it may use, by C++ name. */
class FTypeRegistry
{
public:
	void Add(const FKnownType& Type) { Types[Type.Name] = Type; }
	const FKnownType* Find(const std::string& Name) const;
	/** The type that the name means inside a class, where delegates of the class and of its parents come first. */
	const FKnownType* FindInClass(const std::string& Name, std::string ClassName) const;
	/** The type of the reflected name (no prefix, letter case ignored), in whichever module. */
	const FKnownType* FindReflectedName(std::string_view Name) const;
	bool IsChildOf(const std::string& Name, std::string_view Ancestor) const;
	/** The interface "UName" of "IName"; null for any other name. */
	const FKnownType* FindInterface(const std::string& NativeName) const;
	/** Whether objects of the class belong to the object that refers to them, as components do. */
	bool IsInstanced(const std::string& ClassName) const;
	/** Whether objects of the class can be constructed from FObjectInitializer. */
	bool TakesInitializer(const std::string& ClassName) const;
	const std::map<std::string, FKnownType>& GetTypes() const { return Types; }

private:
	std::map<std::string, FKnownType> Types;
};

/** The name under which the type is reflected: classes and structs lose their prefix, enums keep it. */
std::string GetReflectedName(const FKnownType& Type);

/** Errors in the form that editors and build logs understand: "file(line): error: text". */
class FErrors
{
public:
	void Add(const std::string& Path, int Line, const std::string& Text);
	bool IsEmpty() const { return Lines.empty(); }
	const std::vector<std::string>& GetLines() const { return Lines; }

private:
	std::vector<std::string> Lines;
};
