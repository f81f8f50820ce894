#pragma once

#include "TokenReader.h"

#include <optional>
#include <vector>

/** Reads a class, struct or interface with its members. */
class FStructReader
{
public:
	/** @param InDelegates receives the delegates that are declared among the members */
	FStructReader(FTokenReader& InReader, std::vector<FParsedDelegate>& InDelegates)
		: Reader(InReader)
		, Delegates(InDelegates)
	{
	}

	/**
	 * From behind UCLASS(...), USTRUCT(...) or UINTERFACE(...).
	 *
	 * @return nothing when it is malformed, which has been reported
	 */
	std::optional<FParsedStruct> Read(const FSourceToken& Macro, const FSpecifierList& Specifiers);

	/** The class with the I of an interface: what is declared there counts as declared in the interface. */
	void ReadNativeInterface(FParsedStruct& Interface);

private:
	void ReadBases(FParsedStruct& Struct);
	void ReadMembers(FParsedStruct& Struct);
	void ReadMember(FParsedStruct& Struct);
	void ReadReflectedMember(FParsedStruct& Struct);
	void ReadMemberDelegate(const FParsedStruct& Struct);
	bool ReadAccess();
	/** Passes braces in which nothing may be reflected. */
	void SkipBody();
	/** Looks at declarations that are not reflected but that the generated code has to know. */
	void NoteDeclaration(FParsedStruct& Struct);

	FTokenReader& Reader;
	std::vector<FParsedDelegate>& Delegates;
	EAccess Access = EAccess::Public;
};
