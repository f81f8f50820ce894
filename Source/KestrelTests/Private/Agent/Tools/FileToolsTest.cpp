#include "Agent/Agent.h"
#include "Agent/Files/AssetClassCache.h"
#include "Agent/Files/FileUtils.h"
#include "Agent/Text/JsonText.h"
#include "AssetRegistry/AssetRegistryModule.h"
#include "Async/TaskGraphInterfaces.h"
#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformFileManager.h"
#include "KestrelSettings.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Support/KestrelTest.h"
#include "UObject/Class.h"

namespace FileToolsTest
{
struct FRangeCase
{
	const TCHAR* What;
	int32 StartLine;
	int32 EndLine;
	const TCHAR* Expected; // "%s" stands for the file
};

const FRangeCase RangeCases[] = {
	{ TEXT("reads the whole file from 0 to -1"), 0, -1, TEXT("one\n\nthree") },
	{ TEXT("stops at the last line when the end lies past it"), 2, 99, TEXT("\nthree") },
	{ TEXT("reads one line"), 3, 3, TEXT("three") },
	{ TEXT("names the clamped numbers when it starts past the end"), 5, -1,
		TEXT("Error: Invalid line range for file: %s (StartLine: 5, EndLine: 3, Total Lines: 3)") },
	{ TEXT("refuses a range that runs backwards"), 3, 2,
		TEXT("Error: Invalid line range for file: %s (StartLine: 3, EndLine: 2, Total Lines: 3)") },
	{ TEXT("refuses the least number there is"), 1, MIN_int32,
		TEXT("Error: Invalid line range for file: %s (StartLine: 1, EndLine: -2147483648, Total Lines: 3)") },
	{ TEXT("takes -1 alone for the last line"), 1, -2,
		TEXT("Error: Invalid line range for file: %s (StartLine: 1, EndLine: -2, Total Lines: 3)") },
};

/** Files, in the order of the file system, sorted here so that a text can be compared. */
FString SortedTree(const TSharedPtr<FJsonObject>& Tree)
{
	TArray<FString> Parts;
	for (const auto& Pair : Tree->Values)
	{
		const TSharedPtr<FJsonObject>* Folder = nullptr;
		const FString Key(*Pair.Key);
		Parts.Add(Pair.Value->TryGetObject(Folder) ? Key + TEXT("{") + SortedTree(*Folder) + TEXT("}")
												   : Key + Pair.Value->AsString());
	}
	Parts.Sort();
	return FString::Join(Parts, TEXT(" "));
}

const TArray<FString> Extensions = { TEXT("h"), TEXT("ini") };

FString TreeOf(const FString& Path, const TArray<FString>& Excluded)
{
	return SortedTree(FFileUtils::BuildJsonTree(Path, Extensions, Excluded, TSet<FName>()));
}
}

DEFINE_SPEC(FKestrelReadingSpec, "Kestrel.Reading", KestrelTest::Flags)
void FKestrelReadingSpec::Define()
{
	for (const FileToolsTest::FRangeCase& Case : FileToolsTest::RangeCases)
	{
		It(Case.What, [this, &Case]() {
			const FKestrelTestFolder Folder;
			Folder.Write(TEXT("notes.txt"), TEXT("one\r\n\nthree\n"));
			const FString Expected = FString(Case.Expected).Replace(TEXT("%s"), *Folder.Full(TEXT("notes.txt")));
			// By its relative name: the project directory itself is relative in the editor.
			const FString Actual =
				FFileUtils::ReadFileLineRange(Folder.Name / TEXT("notes.txt"), Case.StartLine, Case.EndLine);
			KestrelTest::TestSameText(*this, Case.What, Actual, Expected);
		});
	}

	It("gives a file's text as it is stored", [this]() {
		const FKestrelTestFolder Folder;
		Folder.Write(TEXT("a.txt"), TEXT("x\r\n\tä\n"));
		Folder.Write(TEXT("empty.txt"), TEXT(""));
		KestrelTest::TestSameText(
			*this, TEXT("text"), FFileUtils::ReadFile(Folder.Full(TEXT("a.txt"))), TEXT("x\r\n\tä\n"));
		KestrelTest::TestSameText(*this, TEXT("empty"), FFileUtils::ReadFile(Folder.Full(TEXT("empty.txt"))), TEXT(""));
		KestrelTest::TestSameText(*this, TEXT("range of an empty file"),
			FFileUtils::ReadFileLineRange(Folder.Full(TEXT("empty.txt")), 1, -1),
			FString::Printf(TEXT("Error: Invalid line range for file: %s (StartLine: 1, EndLine: 0, Total Lines: 0)"),
				*Folder.Full(TEXT("empty.txt"))));
	});

	It("says which file is missing, with its full path", [this]() {
		const FKestrelTestFolder Folder;
		const FString Expected = FString::Printf(TEXT("Error: File does not exist: %s"), *Folder.Full(TEXT("no.txt")));
		KestrelTest::TestSameText(*this, TEXT("whole"), FFileUtils::ReadFile(Folder.Name / TEXT("no.txt")), Expected);
		KestrelTest::TestSameText(
			*this, TEXT("range"), FFileUtils::ReadFileLineRange(Folder.Name / TEXT("no.txt"), 1, 2), Expected);
		KestrelTest::TestSameText(*this, TEXT("a folder"), FFileUtils::ReadFile(Folder.Path),
			FString::Printf(TEXT("Error: File does not exist: %s"), *Folder.Path));
	});

	It("finds a bare name in the project's Source, and refuses a broken range", [this]() {
		const FString InSource = FFileUtils::ToAbsolutePath(TEXT("Source/KestrelBareName.h"));
		FFileHelper::SaveStringToFile(TEXT("found"), *InSource);
		const auto Read = [](const TCHAR* Input) {
			return FAgent::Get().UseTool(TEXT("read_file"), TEXT("id"), KestrelJson::ParseObject(Input));
		};
		KestrelTest::TestSameText(
			*this, TEXT("bare name"), Read(TEXT("{\"path\":\"KestrelBareName.h\"}")), TEXT("found"));
		KestrelTest::TestSameText(
			*this, TEXT("wrong folder"), Read(TEXT("{\"path\":\"Nowhere/KestrelBareName.h\"}")), TEXT("found"));
		KestrelTest::TestSameText(*this, TEXT("broken range"),
			Read(TEXT("{\"path\":\"KestrelBareName.h\",\"view_range\":[1]}")),
			TEXT("Error: view_range must be an array of two numbers"));
		KestrelTest::TestSameText(*this, TEXT("huge numbers"),
			Read(TEXT("{\"path\":\"KestrelBareName.h\",\"view_range\":[-1e300,1e300,7]}")), TEXT("found"));
		IFileManager::Get().Delete(*InSource);
	});
}

DEFINE_SPEC(FKestrelFileTreeSpec, "Kestrel.FileTree", KestrelTest::Flags)
void FKestrelFileTreeSpec::Define()
{
	It("excludes by whole names, however an entry is written", [this]() {
		for (const TCHAR* Entry : { TEXT("/Saved/"), TEXT("Saved\\"), TEXT("  Saved "), TEXT("saved"), TEXT("SAVED") })
		{
			TestTrue(Entry, IsDirectoryExcluded(TEXT("../Game\\Saved/Logs"), { Entry }));
		}
		TestFalse(TEXT("part of a name"), IsDirectoryExcluded(TEXT("Game/SavedGames"), { TEXT("Saved") }));
		TestFalse(
			TEXT("an entry of two names"), IsDirectoryExcluded(TEXT("Plugins/Tools/A"), { TEXT("Plugins/Tools") }));
		TestFalse(TEXT("an empty entry"), IsDirectoryExcluded(TEXT("Game"), { TEXT(" / ") }));
	});

	It("keeps supported files, drops empty folders, puts files first", [this]() {
		const FKestrelTestFolder Folder;
		for (const TCHAR* File : { TEXT("A.H"), TEXT("b.txt"), TEXT("Sub/c.ini"), TEXT("OnlyText/d.txt"),
				 TEXT("Out/e.h"), TEXT("Sub/Deep/f.h") })
		{
			Folder.Write(File, TEXT("x"));
		}
		KestrelTest::TestSameText(*this, TEXT("tree"), FileToolsTest::TreeOf(Folder.Path, { TEXT("Out") }),
			TEXT("A.H# Sub{c.ini# Deep{f.h#}}"));
		const TSharedPtr<FJsonObject> Tree =
			FFileUtils::BuildJsonTree(Folder.Path, FileToolsTest::Extensions, {}, TSet<FName>());
		bool bFolderSeen = false;
		for (const auto& Pair : Tree->Values)
		{
			const bool bFolder = Pair.Value->Type == EJson::Object;
			TestFalse(TEXT("a file behind a folder"), bFolderSeen && !bFolder);
			bFolderSeen |= bFolder;
		}
		KestrelTest::TestSameText(
			*this, TEXT("excluded root"), FileToolsTest::TreeOf(Folder.Full(TEXT("Out")), { TEXT("out") }), TEXT(""));
	});

	It("tells the classes of assets, and keeps those that are wanted", [this]() {
		const FString Content = FFileUtils::ToAbsolutePath(TEXT("Content/KestrelClasses"));
		const auto Write = [&Content](const TCHAR* Name, const TCHAR* Class) {
			FFileHelper::SaveStringToFile(
				FString::Printf(TEXT("{\"Assets\":[{\"Name\":\"A\",\"Class\":\"/Script/%s\"}]}"), Class),
				*(Content / Name));
		};
		Write(TEXT("Gate.uasset"), TEXT("Engine.Blueprint"));
		Write(TEXT("Wall.uasset"), TEXT("Engine.StaticMesh"));
		Write(TEXT("Hat.uasset"), TEXT("UMGEditor.WidgetBlueprint"));
		Write(TEXT("Notes.ini"), TEXT("none"));
		IAssetRegistry::Get()->ScanFilesSynchronous(
			{ Content / TEXT("Gate.uasset"), Content / TEXT("Wall.uasset"), Content / TEXT("Hat.uasset") });
		const auto Tree = [&Content](const TSet<FName>& Patterns) {
			return FileToolsTest::SortedTree(
				FFileUtils::BuildJsonTree(Content, { TEXT("uasset"), TEXT("ini") }, {}, Patterns));
		};
		KestrelTest::TestSameText(
			*this, TEXT("off"), Tree({}), TEXT("Gate.uasset# Hat.uasset# Notes.ini# Wall.uasset#"));
		KestrelTest::TestSameText(
			*this, TEXT("a class"), Tree({ "staticmesh" }), TEXT("Notes.ini# Wall.uassetStaticMesh"));
		KestrelTest::TestSameText(*this, TEXT("a pattern"), Tree({ "*Blueprint", "Texture2D" }),
			TEXT("Gate.uassetBlueprint Hat.uassetWidgetBlueprint Notes.ini#"));

		FString Cache;
		const FString CacheFile = FFileUtils::ToAbsolutePath(TEXT("Plugins/kestrel-unreal/Saved/AssetClassCache.log"));
		FFileHelper::LoadFileToString(Cache, *CacheFile);
		TestTrue(TEXT("kept on disk"), Cache.Contains(TEXT("/Game/KestrelClasses/Gate=Blueprint\n")));
		FAssetClassCache::Get().Reload();
		IFileManager::Get().Delete(*(Content / TEXT("Gate.uasset")));
		IAssetRegistry::Get()->ScanFilesSynchronous({ Content / TEXT("Gate.uasset") });
		TestTrue(TEXT("the registry's word counts, once it knows all"),
			FAssetClassCache::Get().FindClass(Content / TEXT("Gate.uasset")).IsNone());
		FAssetClassCache::Get().Save();
		FFileHelper::LoadFileToString(Cache, *CacheFile);
		TestFalse(TEXT("forgotten"), Cache.Contains(TEXT("Gate=")));
		IFileManager::Get().DeleteDirectory(*Content, false, true);
	});

	It("is an empty object for a folder that is missing, unreadable or excluded", [this]() {
		const FKestrelTestFolder Folder;
		KestrelTest::TestSameText(*this, TEXT("missing"),
			FFileUtils::GetSubDirectoryStructureAsJsonObject(Folder.Full(TEXT("No"))), TEXT("{}"));
		Folder.Write(TEXT("Saved/a.h"), TEXT("x"));
		KestrelTest::TestSameText(*this, TEXT("excluded"),
			FFileUtils::GetSubDirectoryStructureAsJsonObject(Folder.Full(TEXT("Saved"))), TEXT("{}"));
	});

	It("stays in the project, whatever the service asks for", [this]() {
		const auto Tree = [](const TCHAR* DirPath) {
			const TSharedRef<FJsonObject> Input = MakeShared<FJsonObject>();
			Input->SetStringField(TEXT("dir_path"), DirPath);
			return FAgent::Get().UseTool(TEXT("get_filesystem_tree"), TEXT("id"), Input);
		};
		KestrelTest::TestSameText(*this, TEXT("the root is the project's"), Tree(TEXT("/")), Tree(TEXT("")));
		TestTrue(TEXT("with its files"), Tree(TEXT("/")).Contains(TEXT("DefaultGame.ini")));
		KestrelTest::TestSameText(*this, TEXT("another folder of the machine"), Tree(TEXT("/usr/include")), TEXT("{}"));
		for (const TCHAR* Outside : { TEXT(".."), TEXT("Config/../../"), TEXT("..\\..\\..\\..\\..\\..\\..\\..\\.."),
				 TEXT("../../../../../../../../..") })
		{
			TestTrue(Outside, Tree(Outside).StartsWith(TEXT("Error: The folder lies outside of the project: ")));
		}
		KestrelTest::TestSameText(
			*this, TEXT("out and in again"), Tree(TEXT("Config/../Config")), Tree(TEXT("Config")));
	});

	LatentIt("comes later when asked for later, and not at all to a listener that is gone",
		[this](const FDoneDelegate& Done) {
			const TSharedRef<FString> Received = MakeShared<FString>();
			TDelegate<void(const FString&)> Delegate;
			Delegate.BindLambda([this, Received, Done](const FString& Text) {
				*Received = Text;
				KestrelTest::TestSameText(*this, TEXT("tree"), Text, TEXT("{}"));
				Done.Execute();
			});
			FFileUtils::GetSubDirectoryStructureAsJsonObjectAsync(
				TEXT("/no/such/folder"), TDelegate<void(const FString&)>());
			FFileUtils::GetSubDirectoryStructureAsJsonObjectAsync(TEXT("/no/such/folder"), Delegate);
			TestTrue(TEXT("nothing inside the call"), Received->IsEmpty());
		});

	It("lists the project flat, by parts of names, sorted without regard to case", [this]() {
		const FKestrelTestFolder Folder;
		for (const TCHAR* File : { TEXT("b.cpp"), TEXT("A.h"), TEXT("c.CSV"), TEXT("d.txt"), TEXT("BuildTools/x.h"),
				 TEXT("mySharedStuff/x.h"), TEXT("EngineRoom/x.h"), TEXT("Keep/y.json") })
		{
			Folder.Write(File, TEXT("x"));
		}
		TArray<FString> List = FFileUtils::GetDirectoryStructureAsList(FPaths::ProjectDir() / Folder.Name);
		List.Sort();
		const FString Expected = FString::Join(TArray<FString>{ Folder.Name / TEXT("A.h"), Folder.Name / TEXT("b.cpp"),
												   Folder.Name / TEXT("c.CSV"), Folder.Name / TEXT("Keep/y.json") },
			TEXT("|"));
		KestrelTest::TestSameText(*this, TEXT("list"), FString::Join(List, TEXT("|")), Expected);
		TestEqual(TEXT("outside the project"), FFileUtils::GetDirectoryStructureAsList(TEXT("/usr")).Num(), 0);
		const FString Json = FFileUtils::GetProjectStructureAsJsonList();
		TestTrue(TEXT("an array, a line each"),
			Json.StartsWith(TEXT("[\n\t\"")) &&
				Json.Contains(TEXT("Config/DefaultGame.ini"), ESearchCase::CaseSensitive));
	});
}
