#include "Misc/ConfigCacheIni.h"

#include "Containers/StringConv.h"
#include "CoreGlobals.h"
#include "GenericPlatform/GenericPlatformFile.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "Misc/CommandLine.h"
#include "Misc/FileHelper.h"
#include "Misc/Guid.h"
#include "Misc/Paths.h"

#include <sys/stat.h>

DEFINE_LOG_CATEGORY_STATIC(LogConfig, Log, All);

const FConfigValue* FConfigSection::Find(FName Key) const
{
	const auto* Pair = Values.FindByPredicate([Key](const auto& Entry) { return Entry.Key == Key; });
	return Pair ? &Pair->Value : nullptr;
}

void FConfigSection::MultiFind(FName Key, TArray<FConfigValue>& OutValues) const
{
	for (const auto& Pair : Values)
	{
		if (Pair.Key == Key)
		{
			OutValues.Add(Pair.Value);
		}
	}
}

int32 FConfigSection::Remove(FName Key)
{
	return Values.RemoveAll([Key](const auto& Entry) { return Entry.Key == Key; });
}

void FConfigSection::RemoveValue(FName Key, const FString& Value)
{
	Values.RemoveAll([&](const auto& Entry) { return Entry.Key == Key && Entry.Value.GetValue().Equals(Value); });
}

void FConfigSection::Set(FName Key, const FString& Value)
{
	SetArray(Key, { Value });
}

void FConfigSection::SetArray(FName Key, const TArray<FString>& NewValues)
{
	const int32 Found = Values.IndexOfByPredicate([Key](const auto& Entry) { return Entry.Key == Key; });
	Remove(Key);
	int32 At = Found == INDEX_NONE ? Values.Num() : Found;
	for (const FString& Value : NewValues)
	{
		Values.Insert(TPair<FName, FConfigValue>(Key, Value), At++);
	}
}

namespace Config
{
/** Lines of an ini text: continued ones joined, white space trimmed, empty ones and comments left out. */
TArray<FString> LogicalLines(const FString& Contents)
{
	TArray<FString> Raw;
	Contents.ParseIntoArrayLines(Raw);
	TArray<FString> Lines;
	FString Joined;
	for (const FString& Line : Raw)
	{
		Joined += Line;
		if (Joined.EndsWith(TEXT("\\")))
		{
			Joined.LeftChopInline(1);
			continue;
		}
		Joined.TrimStartAndEndInline();
		if (!Joined.IsEmpty() && !Joined.StartsWith(TEXT(";")))
		{
			Lines.Add(Joined);
		}
		Joined.Empty();
	}
	return Lines;
}

FString Unquote(const FString& Value)
{
	const bool bQuoted = Value.Len() >= 2 && Value.StartsWith(TEXT("\"")) && Value.EndsWith(TEXT("\""));
	return bQuoted ? Value.Mid(1, Value.Len() - 2).ReplaceEscapedCharWithChar() : Value;
}

/** Quotes what would not come back the same: spaces at the ends, quotes, newlines, a backslash at the end. */
FString Quote(const FString& Value)
{
	const bool bPlain = Value.Equals(Value.TrimStartAndEnd()) && !Value.Contains(TEXT("\"")) &&
						!Value.Contains(TEXT("\n")) && !Value.Contains(TEXT("\r")) && !Value.EndsWith(TEXT("\\"));
	return bPlain ? Value : TEXT("\"") + Value.ReplaceCharWithEscapedChar() + TEXT("\"");
}

bool IsOperator(TCHAR C)
{
	return C == u'+' || C == u'-' || C == u'.' || C == u'!';
}

constexpr int32 ShownKeyLength = 40; // of a key that is too long, and of its section

/** A key that starts like another kind of line would not be read again as the key that it is. */
bool IsKey(const FString& Text)
{
	return !Text.IsEmpty() && !IsOperator(Text[0]) && Text[0] != u';' && Text[0] != u'[';
}

void ApplyOperator(FConfigSection& Section, TCHAR Operator, FName Key, const FString& Value)
{
	TArray<FConfigValue> Present;
	switch (Operator)
	{
	case u'!':
		Section.Remove(Key);
		break;
	case u'-':
		Section.RemoveValue(Key, Value);
		break;
	case u'+':
		Section.MultiFind(Key, Present);
		if (!Present.Contains(FConfigValue(Value)))
		{
			Section.Add(Key, Value);
		}
		break;
	default:
		Section.Add(Key, Value);
		break;
	}
}

FString SavedConfigFile(const FString& BaseName)
{
	return FPaths::ProjectSavedDir() / TEXT("Config/LinuxEditor") / (BaseName + TEXT(".ini"));
}

struct FKnownName
{
	const TCHAR* Name;
	FString* Global;
};

TArrayView<const FKnownName> KnownNames()
{
	static const FKnownName Names[] = {
		{ TEXT("Engine"), &GEngineIni },
		{ TEXT("Game"), &GGameIni },
		{ TEXT("Editor"), &GEditorIni },
		{ TEXT("EditorPerProjectUserSettings"), &GEditorPerProjectIni },
		{ TEXT("EditorSettings"), &GEditorSettingsIni },
	};
	return Names;
}

/** "-ini:Engine:[Section]:Key=Value,[Section2]:Key2=Value2" on the command line, as lines of an ini file. */
FString CommandLineOverrides(const FString& BaseName)
{
	FString Lines;
	const FString Prefix = TEXT("-ini:") + BaseName + TEXT(":");
	for (const TCHAR* Stream = FCommandLine::Get(); *Stream;)
	{
		const FString Word = FCommandLine::Token(Stream);
		TArray<FString> Settings;
		if (Word.StartsWith(Prefix))
		{
			Word.RightChop(Prefix.Len()).ParseIntoArray(Settings, TEXT(",["));
		}
		for (const FString& Setting : Settings)
		{
			FString Section;
			FString Assignment;
			if (Setting.Split(TEXT("]:"), &Section, &Assignment))
			{
				Section.RemoveFromStart(TEXT("["));
				Lines += TEXT("[") + Section + TEXT("]") LINE_TERMINATOR + Assignment + LINE_TERMINATOR;
			}
		}
	}
	return Lines;
}

bool SaveAtomically(const FString& Filename, const FString& Text)
{
	const FString Temporary = Filename + TEXT(".") + FGuid::NewGuid().ToString() + TEXT(".tmp");
	const bool bSaved =
		FFileHelper::SaveStringToFile(Text, *Temporary, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
	// Settings may hold keys, and are the user's own.
	constexpr mode_t OwnerOnly = 0600;
	::chmod(TCHAR_TO_UTF8(*FPaths::ConvertRelativePathToFull(Temporary)), OwnerOnly);
	if (!bSaved || !IFileManager::Get().Move(*Filename, *Temporary))
	{
		FPlatformFileManager::Get().GetPlatformFile().DeleteFile(*Temporary);
		return false;
	}
	return true;
}
}

void FConfigFile::Read(const FString& Filename)
{
	Sections.Empty();
	FString Contents;
	if (FFileHelper::LoadFileToString(Contents, *Filename))
	{
		ProcessInputFileContents(Contents);
	}
}

bool FConfigFile::Combine(const FString& Filename)
{
	FString Contents;
	if (!FFileHelper::LoadFileToString(Contents, *Filename))
	{
		return false;
	}
	CombineFromBuffer(Contents);
	return true;
}

void FConfigFile::ProcessInputFileContents(const FString& Contents)
{
	ApplyLines(Contents, false);
}

void FConfigFile::CombineFromBuffer(const FString& Buffer)
{
	ApplyLines(Buffer, true);
}

void FConfigFile::ApplyLines(const FString& Contents, bool bPlainKeyReplaces)
{
	FString SectionName;
	bool bInSection = false;
	TSet<FName> Replaced; // plain keys of this file and section: the second one adds to the first
	for (const FString& Line : Config::LogicalLines(Contents))
	{
		if (Line.StartsWith(TEXT("[")) && Line.EndsWith(TEXT("]")))
		{
			SectionName = Line.Mid(1, Line.Len() - 2).TrimStartAndEnd();
			Sections.FindOrAdd(SectionName);
			bInSection = true;
			Replaced.Empty();
			continue;
		}
		FString KeyText;
		FString Value;
		if (!bInSection || !Line.Split(TEXT("="), &KeyText, &Value) || KeyText.IsEmpty())
		{
			continue;
		}
		const TCHAR Operator = Config::IsOperator(KeyText[0]) ? KeyText[0] : u'\0';
		KeyText = (Operator ? KeyText.RightChop(1) : KeyText).TrimStartAndEnd();
		if (!Config::IsKey(KeyText))
		{
			continue;
		}
		if (KeyText.Len() >= NAME_SIZE)
		{
			UE_LOG(LogConfig, Warning,
				TEXT("[%s]: a key of %d characters is ignored, since keys have at most %d: %s..."), *SectionName,
				KeyText.Len(), NAME_SIZE - 1, *KeyText.Left(Config::ShownKeyLength));
			continue;
		}
		const FName Key(*KeyText);
		FConfigSection& Section = Sections.FindChecked(SectionName);
		bool bSeen = false;
		if (!Operator && bPlainKeyReplaces)
		{
			Replaced.Add(Key, &bSeen);
			if (!bSeen)
			{
				Section.Remove(Key);
			}
		}
		Config::ApplyOperator(Section, Operator, Key, Config::Unquote(Value.TrimStartAndEnd()));
	}
}

bool FConfigFile::Write(const FString& Filename, const FConfigFile& Base) const
{
	FString Text;
	for (const auto& Pair : Sections)
	{
		const FConfigSection* BaseSection = Base.FindSection(Pair.Key);
		FString SectionText;
		TSet<FName> Done;
		for (const auto& Entry : Pair.Value)
		{
			bool bDone = false;
			Done.Add(Entry.Key, &bDone);
			if (bDone)
			{
				continue;
			}
			TArray<FConfigValue> Own;
			TArray<FConfigValue> Inherited;
			Pair.Value.MultiFind(Entry.Key, Own);
			if (BaseSection)
			{
				BaseSection->MultiFind(Entry.Key, Inherited);
			}
			if (Own == Inherited)
			{
				continue;
			}
			for (const FConfigValue& Value : Own)
			{
				SectionText += Entry.Key.ToString() + TEXT("=") + Config::Quote(Value.GetValue()) + LINE_TERMINATOR;
			}
		}
		// What the layers below hold and this file no longer has must be taken away when it is read again.
		for (const auto& Entry : BaseSection ? *BaseSection : FConfigSection())
		{
			if (!Pair.Value.Find(Entry.Key) && !Done.Contains(Entry.Key))
			{
				Done.Add(Entry.Key);
				SectionText += TEXT("!") + Entry.Key.ToString() + TEXT("=ClearArray") + LINE_TERMINATOR;
			}
		}
		if (!SectionText.IsEmpty())
		{
			Text += TEXT("[") + Pair.Key + TEXT("]") LINE_TERMINATOR + SectionText + LINE_TERMINATOR;
		}
	}
	return Config::SaveAtomically(Filename, Text);
}

bool FConfigFile::GetString(const TCHAR* Section, const TCHAR* Key, FString& Value) const
{
	const FConfigSection* Found = FindSection(Section);
	const FConfigValue* FoundValue = Found ? Found->Find(Key) : nullptr;
	if (!FoundValue)
	{
		return false;
	}
	Value = FoundValue->GetValue();
	return true;
}

int32 FConfigFile::GetArray(const TCHAR* Section, const TCHAR* Key, TArray<FString>& Value) const
{
	Value.Empty();
	TArray<FConfigValue> Found;
	if (const FConfigSection* FoundSection = FindSection(Section))
	{
		FoundSection->MultiFind(Key, Found);
	}
	for (const FConfigValue& Each : Found)
	{
		Value.Add(Each.GetValue());
	}
	return Value.Num();
}

void FConfigCacheIni::InitializeConfigSystem()
{
	delete GConfig;
	GConfig = new FConfigCacheIni;
	for (const Config::FKnownName& Known : Config::KnownNames())
	{
		LoadGlobalIniFile(*Known.Global, Known.Name);
	}
}

FString FConfigCacheIni::GetConfigFilename(const TCHAR* BaseIniName)
{
	return Config::SavedConfigFile(BaseIniName);
}

bool FConfigCacheIni::LoadGlobalIniFile(FString& OutFinalIniFilename, const TCHAR* BaseIniName)
{
	checkf(GConfig, TEXT("The configuration is read before '%s' is asked for"), BaseIniName);
	OutFinalIniFilename = GetConfigFilename(BaseIniName);
	if (GConfig->Files.Contains(OutFinalIniFilename))
	{
		return true;
	}
	const TSharedRef<FEntry> Entry = MakeShared<FEntry>();
	Entry->Base.Combine(FPaths::ProjectConfigDir() / (FString(TEXT("Default")) + BaseIniName + TEXT(".ini")));
	Entry->Current = Entry->Base;
	Entry->Current.Combine(OutFinalIniFilename);
	// Part of the base, too: what the command line says is not written to the user's file.
	const FString Overrides = Config::CommandLineOverrides(BaseIniName);
	Entry->Base.CombineFromBuffer(Overrides);
	Entry->Current.CombineFromBuffer(Overrides);
	GConfig->Files.Add(OutFinalIniFilename, Entry);
	return true;
}

FConfigCacheIni::FEntry* FConfigCacheIni::FindEntry(const FString& Filename)
{
	if (!Files.Contains(Filename))
	{
		FString Loaded;
		LoadGlobalIniFile(Loaded, *FPaths::GetBaseFilename(Filename));
	}
	const TSharedPtr<FEntry>* Entry = Files.Find(Filename);
	return Entry ? Entry->Get() : nullptr;
}

bool FConfigCacheIni::GetString(const TCHAR* Section, const TCHAR* Key, FString& Value, const FString& Filename)
{
	const FEntry* Entry = FindEntry(Filename);
	return Entry && Entry->Current.GetString(Section, Key, Value);
}

bool FConfigCacheIni::GetBool(const TCHAR* Section, const TCHAR* Key, bool& Value, const FString& Filename)
{
	FString Text;
	if (!GetString(Section, Key, Text, Filename))
	{
		return false;
	}
	Value = Text.ToBool();
	return true;
}

bool FConfigCacheIni::GetInt(const TCHAR* Section, const TCHAR* Key, int32& Value, const FString& Filename)
{
	FString Text;
	if (!GetString(Section, Key, Text, Filename))
	{
		return false;
	}
	Value = FCString::Atoi(*Text);
	return true;
}

bool FConfigCacheIni::GetFloat(const TCHAR* Section, const TCHAR* Key, float& Value, const FString& Filename)
{
	FString Text;
	if (!GetString(Section, Key, Text, Filename))
	{
		return false;
	}
	Value = FCString::Atof(*Text);
	return true;
}

int32 FConfigCacheIni::GetArray(const TCHAR* Section, const TCHAR* Key, TArray<FString>& Value, const FString& Filename)
{
	const FEntry* Entry = FindEntry(Filename);
	Value.Empty();
	return Entry ? Entry->Current.GetArray(Section, Key, Value) : 0;
}

void FConfigCacheIni::SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename)
{
	SetArray(Section, Key, { Value }, Filename);
}

void FConfigCacheIni::SetBool(const TCHAR* Section, const TCHAR* Key, bool Value, const FString& Filename)
{
	SetString(Section, Key, Value ? TEXT("True") : TEXT("False"), Filename);
}

void FConfigCacheIni::SetArray(
	const TCHAR* Section, const TCHAR* Key, const TArray<FString>& Value, const FString& Filename)
{
	if (FEntry* Entry = FindEntry(Filename))
	{
		Entry->Current.FindOrAddSection(Section).SetArray(Key, Value);
		Entry->bDirty = true;
	}
}

bool FConfigCacheIni::RemoveKey(const TCHAR* Section, const TCHAR* Key, const FString& Filename)
{
	FEntry* Entry = FindEntry(Filename);
	FConfigSection* Found = Entry ? Entry->Current.FindSection(Section) : nullptr;
	if (!Found || Found->Remove(Key) == 0)
	{
		return false;
	}
	Entry->bDirty = true;
	return true;
}

bool FConfigCacheIni::EmptySection(const TCHAR* Section, const FString& Filename)
{
	FEntry* Entry = FindEntry(Filename);
	if (!Entry || !Entry->Current.RemoveSection(Section))
	{
		return false;
	}
	Entry->bDirty = true;
	return true;
}

void FConfigCacheIni::Flush(bool bRead, const FString& Filename)
{
	TArray<FString> Names;
	Files.GetKeys(Names);
	for (const FString& Name : Names)
	{
		if (!Filename.IsEmpty() && !Name.Equals(Filename))
		{
			continue;
		}
		FEntry& Entry = *Files.FindChecked(Name);
		if (Entry.bDirty)
		{
			Entry.bDirty = !Entry.Current.Write(Name, Entry.Base);
			UE_CLOG(Entry.bDirty, LogConfig, Warning, TEXT("The configuration file %s cannot be written"), *Name);
		}
		if (bRead && !Entry.bDirty)
		{
			Files.Remove(Name);
		}
	}
}
