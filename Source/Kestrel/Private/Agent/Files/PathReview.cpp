#include "Agent/Files/PathReview.h"

#include "Agent/Files/NativeFile.h"
#include "Interfaces/IPluginManager.h"
#include "Misc/Paths.h"

#define LOCTEXT_NAMESPACE "KestrelPathReview"

namespace PathReview
{
/** Folders of revision control systems: their hooks and settings run programs. */
const TCHAR* const VersionControlFolders[] = { TEXT(".git"), TEXT(".svn"), TEXT(".hg"), TEXT(".plastic"),
	TEXT(".github"), TEXT(".gitlab"), TEXT(".circleci") };
/** Folders of other editors: their tasks run programs. */
const TCHAR* const EditorFolders[] = { TEXT(".vscode"), TEXT(".vs"), TEXT(".idea"), TEXT(".fleet") };
/** Files that revision control reads its settings from. */
const TCHAR* const VersionControlFiles[] = { TEXT(".gitattributes"), TEXT(".gitmodules"), TEXT(".gitconfig"),
	TEXT(".lfsconfig"), TEXT(".pre-commit-config.yaml"), TEXT(".hgrc"), TEXT(".p4config"), TEXT("p4config.txt") };
/** What the build tool compiles and runs itself. */
const TCHAR* const BuildEndings[] = { TEXT(".build.cs"), TEXT(".target.cs"), TEXT(".automation.cs"), TEXT(".csproj"),
	TEXT(".props"), TEXT(".targets"), TEXT(".sln"), TEXT(".vcxproj"), TEXT(".rsp"), TEXT(".cmake"), TEXT(".mk"),
	TEXT(".code-workspace") };
const TCHAR* const BuildFiles[] = { TEXT("CMakeLists.txt"), TEXT("Makefile"), TEXT(".envrc"), TEXT(".clangd"),
	TEXT("BuildConfiguration.xml"), TEXT("nuget.config"), TEXT("global.json"), TEXT("package.json"), TEXT(".gdbinit"),
	TEXT(".lldbinit"), TEXT(".gitlab-ci.yml"), TEXT(".travis.yml"), TEXT("azure-pipelines.yml"), TEXT("Jenkinsfile") };
const TCHAR* const ProjectEndings[] = { TEXT(".uproject"), TEXT(".uplugin"), TEXT(".uprojectdirs") };
/** What runs by itself when the editor starts, or with one click. */
const TCHAR* const StartupFiles[] = { TEXT("init_unreal.py") };
/** What Python runs, or takes for a module, of the folders that it looks into. */
const TCHAR* const PythonEndings[] = { TEXT(".py"), TEXT(".pyw"), TEXT(".pyc"), TEXT(".pth") };
/** What the system runs, loads or follows to something that it runs. */
const TCHAR* const ProgramEndings[] = { TEXT(".bat"), TEXT(".cmd"), TEXT(".ps1"), TEXT(".psm1"), TEXT(".psd1"),
	TEXT(".sh"), TEXT(".bash"), TEXT(".zsh"), TEXT(".command"), TEXT(".exe"), TEXT(".com"), TEXT(".scr"), TEXT(".pif"),
	TEXT(".cpl"), TEXT(".msi"), TEXT(".dll"), TEXT(".so"), TEXT(".dylib"), TEXT(".vbs"), TEXT(".vbe"), TEXT(".jse"),
	TEXT(".wsf"), TEXT(".hta"), TEXT(".reg"), TEXT(".lnk"), TEXT(".url"), TEXT(".desktop"), TEXT(".jar") };
/** Whatever lies in them runs, by a name of any kind. */
const TCHAR* const ProgramFolders[] = { TEXT("Binaries"), TEXT(".githooks"), TEXT(".husky") };

/** What a file system of Windows or the Mac may take for the same letters, regardless of case. */
struct FFolding
{
	TCHAR Character;
	const TCHAR* Letters;
};
const FFolding Foldings[] = {
	{ 0x0131, TEXT("i") }, // without a dot
	{ 0x017F, TEXT("s") }, // long s
	{ 0x212A, TEXT("k") }, // Kelvin sign
	{ 0xFB00, TEXT("ff") },
	{ 0xFB01, TEXT("fi") },
	{ 0xFB02, TEXT("fl") },
	{ 0xFB03, TEXT("ffi") },
	{ 0xFB04, TEXT("ffl") },
	{ 0xFB05, TEXT("st") },
	{ 0xFB06, TEXT("st") },
};

bool IsOneOf(const FString& Name, TArrayView<const TCHAR* const> Names)
{
	for (const TCHAR* Each : Names)
	{
		if (FCString::Stricmp(*Name, Each) == 0)
		{
			return true;
		}
	}
	return false;
}

bool EndsWithOneOf(const FString& Name, TArrayView<const TCHAR* const> Endings)
{
	for (const TCHAR* Each : Endings)
	{
		if (Name.EndsWith(Each, ESearchCase::IgnoreCase))
		{
			return true;
		}
	}
	return false;
}

/** HFS+ leaves these out of names when it compares them. */
bool IsIgnorable(TCHAR Character)
{
	return (Character >= 0x200C && Character <= 0x200F) || (Character >= 0x202A && Character <= 0x202E) ||
		   (Character >= 0x206A && Character <= 0x206F) || Character == 0xFEFF;
}

/** A name as the file systems that are least strict about it compare it, but for the case of its letters. */
FString Fold(const FString& Name)
{
	FString Folded;
	for (const TCHAR C : Name)
	{
		const FFolding* Known = nullptr;
		for (const FFolding& Each : Foldings)
		{
			Known = Each.Character == C ? &Each : Known;
		}
		if (Known)
		{
			Folded += Known->Letters;
		}
		else if (!IsIgnorable(C))
		{
			Folded.AppendChar(C);
		}
	}
	return Folded;
}

/** Nearly all names are, and then they are as they seem. */
bool IsAscii(const FString& Name)
{
	for (const TCHAR C : Name)
	{
		if (C >= 0x80)
		{
			return false;
		}
	}
	return true;
}

/** Like "GIT~1" or "GAMEBU~1.CS": up to six signs, a tilde, a number; then an ending of up to three. */
bool IsLikeShortName(const FString& Name)
{
	constexpr int32 MaxStem = 8;
	constexpr int32 MaxEnding = 3;
	const FString Stem = FPaths::GetBaseFilename(Name);
	int32 Tilde = INDEX_NONE;
	if (!Stem.FindChar(TEXT('~'), Tilde) || Tilde == 0 || Stem.Len() > MaxStem ||
		FPaths::GetExtension(Name).Len() > MaxEnding)
	{
		return false;
	}
	const FString Number = Stem.RightChop(Tilde + 1);
	return !Number.IsEmpty() && Number.IsNumeric();
}

/**
 * A path as its names, without the dots and spaces at their ends that some file systems ignore, nor what follows a
 * colon: there it names a part of the file before it.
 */
TArray<FString> SplitPath(const FString& Path)
{
	TArray<FString> Names;
	Path.ParseIntoArray(Names, TEXT("/"));
	for (FString& Name : Names)
	{
		int32 Colon = INDEX_NONE;
		if (Name.FindChar(TEXT(':'), Colon))
		{
			Name.LeftInline(Colon);
		}
		while (Name.Len() > 1 && (Name.EndsWith(TEXT(".")) || Name.EndsWith(TEXT(" "))))
		{
			Name.LeftChopInline(1);
		}
		if (!IsAscii(Name))
		{
			Name = Fold(Name);
		}
	}
	return Names;
}

struct FPlace
{
	TArray<FString> Folders;
	FString Name;
	FString Path;
	FString InProject; // the path below the project, or the whole one when it lies elsewhere
	const FKestrelOwnFolders* Own = nullptr;

	bool IsBelow(TArrayView<const TCHAR* const> FolderNames) const
	{
		return Folders.ContainsByPredicate([&](const FString& Folder) { return IsOneOf(Folder, FolderNames); });
	}
	bool IsBelow(const TCHAR* FolderName) const { return Folders.Contains(FolderName); }
};

bool IsOfVersionControl(const FPlace& Place)
{
	return Place.IsBelow(VersionControlFolders) || IsOneOf(Place.Name, VersionControlFolders) ||
		   IsOneOf(Place.Name, VersionControlFiles);
}

bool IsBuildRule(const FPlace& Place)
{
	// What the build tool has made, it runs and believes.
	const bool bIsBuilt = Place.IsBelow(TEXT("Intermediate")) && Place.IsBelow(TEXT("Build"));
	// The automation tool compiles them.
	const bool bIsTask = Place.IsBelow(TEXT("Build")) && Place.Name.EndsWith(TEXT(".cs"), ESearchCase::IgnoreCase);
	return bIsBuilt || bIsTask || EndsWithOneOf(Place.Name, BuildEndings) || IsOneOf(Place.Name, BuildFiles) ||
		   Place.IsBelow(EditorFolders);
}

bool IsProjectDescriptor(const FPlace& Place)
{
	return EndsWithOneOf(Place.Name, ProjectEndings);
}

bool IsConfiguration(const FPlace& Place)
{
	return Place.Name.EndsWith(TEXT(".ini"), ESearchCase::IgnoreCase) && Place.IsBelow(TEXT("Config"));
}

bool IsProgram(const FPlace& Place)
{
	// The editor runs what lies in a Python folder when it starts, or imports it from there.
	const bool bStartupScript = EndsWithOneOf(Place.Name, PythonEndings) && Place.IsBelow(TEXT("Python"));
	return bStartupScript || IsOneOf(Place.Name, StartupFiles) || EndsWithOneOf(Place.Name, ProgramEndings) ||
		   Place.IsBelow(ProgramFolders);
}

FString WithoutSlash(const FString& Folder)
{
	return Folder.Len() > 1 && Folder.EndsWith(TEXT("/")) ? Folder.LeftChop(1) : Folder;
}

/** Both absolute and without relative parts: nearly all paths can be told apart before the engine takes them apart. */
bool IsUnder(const FString& Path, const FString& Folder)
{
	return Path.StartsWith(Folder, ESearchCase::IgnoreCase) && FPaths::IsUnderDirectory(Path, Folder);
}

bool IsUnderOneOf(const FString& Path, TArrayView<const FString> Folders)
{
	for (const FString& Folder : Folders)
	{
		if (IsUnder(Path, Folder))
		{
			return true;
		}
	}
	return false;
}

bool IsOfThisPlugin(const FPlace& Place)
{
	return IsUnderOneOf(Place.Path, Place.Own->GetAll());
}

/** What was typed, and what files held before. */
bool IsRecord(const FPlace& Place)
{
	return IsUnderOneOf(Place.Path, Place.Own->GetRecords());
}

/** This plugin's folders as they are spelled, absolute: these stay the same as long as the editor runs. */
struct FSpelledFolders
{
	TArray<FString> All;
	TArray<FString> Records;
	FString ProjectDir;

	FSpelledFolders()
	{
		const TSharedPtr<IPlugin> Plugin = IPluginManager::Get().FindPlugin(TEXT("Kestrel"));
		const FString InProject =
			FPaths::ConvertRelativePathToFull(FPaths::ProjectPluginsDir() / TEXT("kestrel-unreal"));
		const FString Saved = FPaths::ConvertRelativePathToFull(FPaths::ProjectSavedDir() / TEXT("Kestrel"));
		All = { InProject, Saved };
		if (Plugin.IsValid())
		{
			All.Add(FPaths::ConvertRelativePathToFull(Plugin->GetBaseDir()));
		}
		Records = { InProject / TEXT("Logs"), Saved };
		ProjectDir = WithoutSlash(FPaths::ConvertRelativePathToFull(FPaths::ProjectDir()));
	}
};

const FSpelledFolders& GetSpelledFolders()
{
	static const FSpelledFolders Folders;
	return Folders;
}

/** Where they lie may change at any time: a link can be put in their way. */
TArray<FString> ResolveOwnFolders(const TArray<FString>& Folders, const FString& RealProjectDir)
{
	TArray<FString> RealFolders;
	for (const FString& Folder : Folders)
	{
		FString Below = Folder;
		const bool bIsBelow =
			!RealProjectDir.IsEmpty() &&
			Below.RemoveFromStart(GetSpelledFolders().ProjectDir + TEXT("/"), ESearchCase::CaseSensitive);
		const FString RealFolder = bIsBelow ? KestrelNativeFile::ResolveLinksBelow(RealProjectDir, Below)
											: KestrelNativeFile::ResolveLinks(Folder);
		// A project inside the plugin's folder, one for its tests, is a project like any other.
		if (!RealFolder.IsEmpty() && !IsUnder(RealProjectDir, RealFolder))
		{
			RealFolders.Add(RealFolder);
		}
	}
	return RealFolders;
}

bool HasColon(const FPlace& Place)
{
	return Place.InProject.Contains(TEXT(":"));
}

/** Which other name it stands for, only the file system knows. */
bool HasShortName(const FPlace& Place)
{
	int32 Tilde = INDEX_NONE;
	return Place.InProject.FindChar(TEXT('~'), Tilde) &&
		   (IsLikeShortName(Place.Name) || Place.Folders.ContainsByPredicate(IsLikeShortName));
}

/** The user's own settings, keys among them. */
bool IsUserSettings(const FPlace& Place)
{
	return Place.IsBelow(TEXT("Saved")) && Place.IsBelow(TEXT("Config"));
}

FPlace MakePlace(const FString& Path, const FString& InProject, const FKestrelOwnFolders& Own)
{
	FPlace Place;
	Place.Path = Path;
	Place.InProject = InProject;
	Place.Own = &Own;
	// The names of the folders that the project itself lies in say nothing about a file of the project.
	Place.Folders = SplitPath(InProject);
	Place.Name = Place.Folders.IsEmpty() ? FString() : Place.Folders.Pop();
	return Place;
}

bool AppliesToOne(bool (*Rule)(const FPlace& Place), TArrayView<const FPlace> Places)
{
	for (const FPlace& Place : Places)
	{
		if (Rule(Place))
		{
			return true;
		}
	}
	return false;
}

/** What makes a place special, and how people are told. */
struct FRule
{
	bool (*Applies)(const FPlace& Place);
	FText Caution;
	/** Even reading tells the service what it has no business to know. */
	bool bForReading = false;
	/** Whoever made the project had no business there. */
	bool bIsNotOfProject = false;
};

const TArray<FRule>& GetRules()
{
	static const TArray<FRule> Rules = {
		{ IsOfVersionControl, LOCTEXT("VersionControl", "version control settings"), true, true },
		{ IsUserSettings, LOCTEXT("UserSettings", "your own settings"), true, true },
		{ HasShortName, LOCTEXT("ShortName", "perhaps the short name of something else"), true, true },
		{ IsBuildRule, LOCTEXT("BuildFile", "build file") },
		{ IsProjectDescriptor, LOCTEXT("ProjectFile", "project or plugin descriptor") },
		{ IsConfiguration, LOCTEXT("Configuration", "configuration") },
		{ IsProgram, LOCTEXT("Program", "runs as a program") },
		{ IsRecord, LOCTEXT("OwnFiles", "this plugin's own files"), true, true },
		{ IsOfThisPlugin, LOCTEXT("OwnFiles", "this plugin's own files"), false, true },
		{ HasColon, LOCTEXT("Colon", "a colon in the name") },
	};
	return Rules;
}
}

const TArray<FString>& FKestrelOwnFolders::GetAll() const
{
	if (!All.IsSet())
	{
		All = PathReview::ResolveOwnFolders(PathReview::GetSpelledFolders().All, RealProjectDir);
	}
	return *All;
}

const TArray<FString>& FKestrelOwnFolders::GetRecords() const
{
	if (!Records.IsSet())
	{
		Records = PathReview::ResolveOwnFolders(PathReview::GetSpelledFolders().Records, RealProjectDir);
	}
	return *Records;
}

FKestrelPathReview FKestrelPathReview::Of(const FString& FullPath)
{
	return FKestrelPathReviewer().Review(FullPath, KestrelNativeFile::ResolveLinks(FullPath));
}

FKestrelPathReviewer::FKestrelPathReviewer()
	: ProjectDir(PathReview::GetSpelledFolders().ProjectDir)
	, RealProjectDir(PathReview::WithoutSlash(KestrelNativeFile::ResolveLinks(ProjectDir)))
	, OwnFolders(RealProjectDir)
{
}

FKestrelPathReview FKestrelPathReviewer::Review(
	const FString& GivenPath, const FString& RealPath, EKestrelReviewFor Purpose) const
{
	if (KestrelNativeFile::IsTooLong(GivenPath))
	{
		FKestrelPathReview TooLong;
		TooLong.ShownPath = GivenPath;
		TooLong.Cautions.Add(LOCTEXT("TooLong", "too long to be the path of a file"));
		return TooLong;
	}
	const FString FullPath = PathReview::WithoutSlash(FPaths::ConvertRelativePathToFull(GivenPath));
	const bool bHasOwnRealPath = !RealPath.IsEmpty() && !RealPath.Equals(FullPath);
	const FString Real = bHasOwnRealPath ? FPaths::ConvertRelativePathToFull(RealPath) : FullPath;
	const bool bFullIsUnder = PathReview::IsUnder(FullPath, ProjectDir);
	const bool bIsWithoutLinks = Real.Equals(FullPath) && RealProjectDir.Equals(ProjectDir);
	const bool bRealIsUnder = bIsWithoutLinks ? bFullIsUnder : PathReview::IsUnder(Real, RealProjectDir);
	const FString FullInProject = bFullIsUnder ? FullPath.RightChop(ProjectDir.Len() + 1) : FullPath;
	const FString RealInProject = bRealIsUnder ? Real.RightChop(RealProjectDir.Len() + 1) : Real;

	FKestrelPathReview Review;
	Review.RealPath = RealPath;
	Review.ShownPath = FullInProject;
	Review.RealShownPath = RealPath.IsEmpty() ? RealPath : RealInProject;
	if (RealPath.IsEmpty())
	{
		Review.Cautions.Add(LOCTEXT("UnknownPlace", "behind a link that cannot be resolved"));
	}
	else if (!bRealIsUnder)
	{
		Review.Cautions.Add(LOCTEXT("Outside", "outside the project"));
	}
	// A project that is itself behind a link says nothing about its files.
	if (!RealPath.IsEmpty() && !(bFullIsUnder == bRealIsUnder && RealInProject.Equals(FullInProject)))
	{
		Review.LinkTarget = RealPath;
	}

	// A link may hide what a file is by either of its names.
	TArray<PathReview::FPlace> Places = { PathReview::MakePlace(Real, RealInProject, OwnFolders) };
	if (!bIsWithoutLinks)
	{
		Places.Add(PathReview::MakePlace(FullPath, FullInProject, OwnFolders));
	}
	Review.bIsOfProject = Review.Cautions.IsEmpty();
	for (const PathReview::FRule& Rule : PathReview::GetRules())
	{
		const bool bMatters = Rule.bForReading || Purpose == EKestrelReviewFor::Change;
		if (bMatters && PathReview::AppliesToOne(Rule.Applies, Places))
		{
			(Rule.bForReading ? Review.Cautions : Review.CautionsOfChange).Add(Rule.Caution);
			Review.bIsOfProject &= !Rule.bIsNotOfProject;
		}
	}
	return Review;
}

#undef LOCTEXT_NAMESPACE
