#pragma once

#include "Containers/Array.h"
#include "Containers/Map.h"
#include "Containers/UnrealString.h"
#include "Templates/SharedPointer.h"
#include "UObject/NameTypes.h"

/** One value of an ini file. */
struct FConfigValue
{
	FConfigValue() = default;
	FConfigValue(const FString& InValue)
		: Value(InValue)
	{
	}
	const FString& GetValue() const { return Value; }
	bool operator==(const FConfigValue& Other) const { return Value.Equals(Other.Value); }

private:
	FString Value;
};

/** The keys of one section in the order of the file; a key may stand there several times. Keys ignore case. */
class FConfigSection
{
public:
	int32 Num() const { return Values.Num(); }
	bool IsEmpty() const { return Values.IsEmpty(); }
	const FConfigValue* Find(FName Key) const;
	/** All values of a key, in order. */
	void MultiFind(FName Key, TArray<FConfigValue>& OutValues) const;
	int32 Remove(FName Key);
	void Add(FName Key, const FConfigValue& Value) { Values.Emplace(Key, Value); }
	/** Removes one value of a key. */
	void RemoveValue(FName Key, const FString& Value);
	/** Leaves one value for the key, in its first place. */
	void Set(FName Key, const FString& Value);
	/** Leaves these values for the key. */
	void SetArray(FName Key, const TArray<FString>& NewValues);
	bool operator==(const FConfigSection& Other) const { return Values == Other.Values; }

	auto begin() const { return Values.begin(); }
	auto end() const { return Values.end(); }

private:
	TArray<TPair<FName, FConfigValue>> Values;
};

/**
 * One ini file.
 *
 * "[Section]" lines, "Key=Value" with white space around both trimmed; a value in double quotes is unquoted; a line
 * that starts with ";" is a comment; a trailing "\" continues the line. "+Key" adds a value that is not there yet,
 * ".Key" one more, "-Key" removes one, "!Key" all; a repeated plain key gives several values.
 */
class FConfigFile
{
public:
	/** Empties and refills it from one file; a missing file leaves it empty and says nothing. */
	void Read(const FString& Filename);
	/** Applies a file on top of what is there: a plain key replaces the values of the layers below. */
	bool Combine(const FString& Filename);
	void CombineFromBuffer(const FString& Buffer);
	void ProcessInputFileContents(const FString& Contents);
	/** Writes what differs from Base; each array whole, with "!Key=ClearArray" in front where Base has values of it. */
	bool Write(const FString& Filename, const FConfigFile& Base) const;

	/** False and Value untouched when section or key is missing. */
	bool GetString(const TCHAR* Section, const TCHAR* Key, FString& Value) const;
	int32 GetArray(const TCHAR* Section, const TCHAR* Key, TArray<FString>& Value) const;

	const FConfigSection* FindSection(const FString& SectionName) const { return Sections.Find(SectionName); }
	FConfigSection* FindSection(const FString& SectionName) { return Sections.Find(SectionName); }
	FConfigSection& FindOrAddSection(const FString& SectionName) { return Sections.FindOrAdd(SectionName); }
	bool RemoveSection(const FString& SectionName) { return Sections.Remove(SectionName) > 0; }
	bool IsEmpty() const { return Sections.IsEmpty(); }

private:
	void ApplyLines(const FString& Contents, bool bPlainKeyReplaces);

	TMap<FString, FConfigSection> Sections;
};

/**
 * The configuration of the running editor: what Config/Default<Name>.ini holds, and above it what the user changed,
 * kept in Saved/Config/LinuxEditor/<Name>.ini. Files are named by the path of the latter.
 */
class FConfigCacheIni
{
public:
	/** Makes GConfig and loads the engine's own names. The project must be known. */
	static void InitializeConfigSystem();
	/** Loads the layers of a base name ("Engine") once and gives the file name to ask by. */
	static bool LoadGlobalIniFile(FString& OutFinalIniFilename, const TCHAR* BaseIniName);
	/** The file that a class with "config = Name" keeps its values in; the engine's own names among them. */
	static FString GetConfigFilename(const TCHAR* BaseIniName);

	bool GetString(const TCHAR* Section, const TCHAR* Key, FString& Value, const FString& Filename);
	bool GetBool(const TCHAR* Section, const TCHAR* Key, bool& Value, const FString& Filename);
	bool GetInt(const TCHAR* Section, const TCHAR* Key, int32& Value, const FString& Filename);
	bool GetFloat(const TCHAR* Section, const TCHAR* Key, float& Value, const FString& Filename);
	int32 GetArray(const TCHAR* Section, const TCHAR* Key, TArray<FString>& Value, const FString& Filename);
	void SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename);
	void SetBool(const TCHAR* Section, const TCHAR* Key, bool Value, const FString& Filename);
	void SetArray(const TCHAR* Section, const TCHAR* Key, const TArray<FString>& Value, const FString& Filename);
	bool RemoveKey(const TCHAR* Section, const TCHAR* Key, const FString& Filename);
	bool EmptySection(const TCHAR* Section, const FString& Filename);
	/** Writes changed files, atomically; with bRead also forgets them, so that they are read again when asked for. */
	void Flush(bool bRead, const FString& Filename = FString());

private:
	struct FEntry
	{
		FConfigFile Base;
		FConfigFile Current;
		bool bDirty = false;
	};

	FEntry* FindEntry(const FString& Filename);

	TMap<FString, TSharedPtr<FEntry>> Files;
};
