#pragma once

#include "Agent/Chat/Transcript.h"
#include "Agent/KestrelAgentState.h"
#include "CoreMinimal.h"
#include "Misc/AutomationTest.h"
#include "Support/SlowMotion.h"

enum class EKestrelToolKind : uint8;

/** What every test of the plugin has in common. */
namespace KestrelTest
{
constexpr auto Flags = EAutomationTestFlags::EditorContext | EAutomationTestFlags::ProductFilter;

/** Strings are compared exactly; == would ignore case. */
bool TestSameText(FAutomationTestBase& Test, const FString& What, const FString& Actual, const FString& Expected);

/** The state's name as in the code. */
FString NameOf(EAgentState State);
/** The kind's name as it stands in the code. */
FString NameOf(EKestrelToolKind Kind);

/** True in the states in which the agent waits for the user. */
bool IsWaitingForUser(EAgentState State);

/** Runs a tool as an answer would. Fields come in pairs: a name and its text. @return the tool's result */
FString UseTool(const TCHAR* Tool, const TArray<FString>& Fields);

/** How many damaged inputs to try. Zero unless asked for: a real project is nothing to play with. */
int32 GetNumFuzzRounds();
/** Another number, other damage; 0 unless asked for. */
int32 GetFuzzSeed();

/** The plugin's own folder, absolute. */
FString PluginDir();
}

/** A folder in the project, removed with everything in it. Its name is not one that the file tree leaves out. */
class FKestrelTestFolder
{
public:
	FKestrelTestFolder();
	~FKestrelTestFolder();
	UE_NONCOPYABLE(FKestrelTestFolder)

	/** Writes UTF-8 without a byte order mark, with missing folders. */
	void Write(const FString& FileName, const FString& Text) const;
	FString Full(const FString& FileName) const { return Path / FileName; }

	const FString Path; // absolute
	const FString Name; // relative to the project directory
};

/** A prompt log, conversations and recalled prompts of a test's own: the user's must neither grow nor lose anything. */
class FKestrelTestLog
{
public:
	FKestrelTestLog();
	~FKestrelTestLog();
	UE_NONCOPYABLE(FKestrelTestLog)

	/** Where the conversations are. */
	FString GetConversations() const { return Folder.Full(TEXT("Conversations")); }

private:
	const KestrelTest::FUnhurried Unhurried; // most tests see what comes of a call as soon as it returns
	const FKestrelTestFolder Folder;
	FKestrelTranscript Before;
};

/** What the panel would be told, with the time of each message; the panel itself is unhooked meanwhile. */
class FKestrelPanelRecorder
{
public:
	struct FMessage
	{
		FString Text;
		FName FontStyle;
		float FontSize = 0.0f;
		double Time = 0.0; // seconds of FPlatformTime
	};

	FKestrelPanelRecorder();
	~FKestrelPanelRecorder();
	UE_NONCOPYABLE(FKestrelPanelRecorder)

	/** The texts; a text that comes several times in a row counts once. */
	TArray<FString> GetTexts() const;

	TArray<FMessage> Messages;
	TArray<FString> Hints;

private:
	const FKestrelTestLog Log;
	TDelegate<void(const FString&, const FLinearColor&, const FName&, float)> Unhooked;
	TDelegate<void(const FText&)> UnhookedHints;
};
