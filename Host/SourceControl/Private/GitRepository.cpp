#include "GitRepository.h"

#include "HAL/FileManager.h"
#include "Misc/Paths.h"

#include <cstring>
#include <filesystem>
#include <git2.h>
#include <string>
#include <system_error>

#define LOCTEXT_NAMESPACE "GitRepository"

namespace GitRepository
{
/** libgit2 for the life of the process. What it finds must not depend on whose account the editor runs under. */
void Initialize()
{
	static const bool bDone = [] {
		git_libgit2_init();
		for (const int Level :
			{ GIT_CONFIG_LEVEL_PROGRAMDATA, GIT_CONFIG_LEVEL_SYSTEM, GIT_CONFIG_LEVEL_XDG, GIT_CONFIG_LEVEL_GLOBAL })
		{
			git_libgit2_opts(GIT_OPT_SET_SEARCH_PATH, Level, "");
		}
		git_libgit2_opts(GIT_OPT_SET_OWNER_VALIDATION, 0);
		return true;
	}();
	(void)bDone;
}

FText MakeError(const FString& File, const FString& What)
{
	return FText::FromString(File + TEXT(": ") + What);
}

FText LastError(const FString& File)
{
	const git_error* const Error = git_error_last();
	return MakeError(File, Error && Error->message ? FString(FUTF8ToTCHAR(Error->message).Get()) : TEXT("git failed"));
}

std::filesystem::path ToPath(const FString& Text)
{
	return std::filesystem::path(TCHAR_TO_UTF8(*Text));
}

EGitFileStatus ToStatus(unsigned int Flags)
{
	struct FPair
	{
		unsigned int Git;
		EGitFileStatus Own;
	};
	const FPair Pairs[] = {
		{ GIT_STATUS_INDEX_NEW, EGitFileStatus::StagedNew },
		{ GIT_STATUS_INDEX_MODIFIED | GIT_STATUS_INDEX_RENAMED | GIT_STATUS_INDEX_TYPECHANGE,
			EGitFileStatus::StagedChange },
		{ GIT_STATUS_INDEX_DELETED, EGitFileStatus::StagedDeletion },
		{ GIT_STATUS_WT_NEW, EGitFileStatus::Untracked },
		{ GIT_STATUS_WT_MODIFIED | GIT_STATUS_WT_RENAMED | GIT_STATUS_WT_TYPECHANGE | GIT_STATUS_WT_UNREADABLE,
			EGitFileStatus::Changed },
		{ GIT_STATUS_WT_DELETED, EGitFileStatus::Deleted },
		{ GIT_STATUS_IGNORED, EGitFileStatus::Ignored },
		{ GIT_STATUS_CONFLICTED, EGitFileStatus::Conflicted },
	};
	EGitFileStatus Status = EGitFileStatus::Current;
	for (const FPair& Pair : Pairs)
	{
		Status |= (Flags & Pair.Git) != 0 ? Pair.Own : EGitFileStatus::Current;
	}
	return Status;
}

/** Whether one of the folders between the work tree and the file is a repository itself. */
bool IsInNestedRepository(const std::filesystem::path& Root, const std::filesystem::path& Relative)
{
	std::error_code Error;
	std::filesystem::path Folder = Root;
	for (const std::filesystem::path& Part : Relative.parent_path())
	{
		Folder /= Part;
		if (std::filesystem::exists(Folder / ".git", Error))
		{
			return true;
		}
	}
	return false;
}

/** The tree of what was checked in last; null before the first time. */
git_tree* GetHeadTree(git_repository* Repository)
{
	git_object* Object = nullptr;
	git_revparse_single(&Object, Repository, "HEAD^{tree}");
	return reinterpret_cast<git_tree*>(Object);
}
}

FGitRepository::FGitRepository(const FString& InWorkTree)
	: WorkTree(InWorkTree)
{
	GitRepository::Initialize();
}

FGitRepository::~FGitRepository()
{
	git_index_free(Index);
	git_repository_free(Repository);
}

bool FGitRepository::HasRepository(const FString& WorkTree)
{
	// A folder, or in a linked work tree a file.
	const FString Marker = WorkTree / TEXT(".git");
	return FPaths::DirectoryExists(Marker) || FPaths::FileExists(Marker);
}

bool FGitRepository::Open(FText& OutError)
{
	if (git_repository_open_ext(&Repository, TCHAR_TO_UTF8(*WorkTree), GIT_REPOSITORY_OPEN_NO_SEARCH, nullptr) != 0)
	{
		OutError = GitRepository::LastError(WorkTree);
		return false;
	}
	if (git_repository_is_bare(Repository))
	{
		OutError = GitRepository::MakeError(WorkTree, TEXT("the repository has no work tree"));
		return false;
	}
	return true;
}

bool FGitRepository::MakePath(const FString& File, FPath& OutPath, FText& OutError) const
{
	if (FPaths::IsRelative(File))
	{
		OutError = GitRepository::MakeError(File, TEXT("the path is not absolute"));
		return false;
	}
	// The folder is followed through links, as git does; a link itself is a file.
	std::error_code Error;
	const std::filesystem::path Given = GitRepository::ToPath(File);
	const std::filesystem::path Root = std::filesystem::canonical(git_repository_workdir(Repository), Error);
	const std::filesystem::path Folder = std::filesystem::weakly_canonical(Given.parent_path(), Error);
	const std::filesystem::path Relative = (Folder / Given.filename()).lexically_relative(Root);
	const std::string First = Relative.empty() ? ".." : Relative.begin()->string();
	if (Error || First == ".." || First == "." || First == ".git" || !Given.has_filename() || Given.filename() == "..")
	{
		OutError = GitRepository::MakeError(File, TEXT("the file does not lie in the project's work tree"));
		return false;
	}
	if (GitRepository::IsInNestedRepository(Root, Relative))
	{
		OutError = GitRepository::MakeError(File, TEXT("the file lies in a repository of its own"));
		return false;
	}
	const std::string Text = Relative.string();
	OutPath.File = File;
	OutPath.Relative.Append(Text.c_str(), static_cast<int32>(Text.size()) + 1);
	return true;
}

bool FGitRepository::MakePaths(const TArray<FString>& Files, TArray<FPath>& OutPaths, FText& OutError) const
{
	if (Files.IsEmpty())
	{
		OutError = LOCTEXT("NoFiles", "No file was given.");
		return false;
	}
	for (const FString& File : Files)
	{
		if (!MakePath(File, OutPaths.AddDefaulted_GetRef(), OutError))
		{
			return false;
		}
	}
	return true;
}

bool FGitRepository::GetStatus(const FString& File, EGitFileStatus& OutStatus, FText& OutError)
{
	FPath Path;
	return MakePath(File, Path, OutError) && GetStatus(Path, OutStatus, OutError);
}

bool FGitRepository::GetStatus(const FPath& Path, EGitFileStatus& OutStatus, FText& OutError)
{
	if (FPaths::DirectoryExists(Path.File))
	{
		OutError = GitRepository::MakeError(Path.File, TEXT("this is a folder"));
		return false;
	}
	unsigned int Flags = 0;
	const int Result = git_status_file(&Flags, Repository, Path.Get());
	if (Result == GIT_ENOTFOUND)
	{
		OutStatus = EGitFileStatus::Missing;
		return true;
	}
	if (Result != 0)
	{
		OutError = GitRepository::LastError(Path.File);
		return false;
	}
	OutStatus = GitRepository::ToStatus(Flags);
	return true;
}

bool FGitRepository::ReadIndex(FText& OutError)
{
	if (Index || git_repository_index(&Index, Repository) == 0)
	{
		return true;
	}
	OutError = GitRepository::LastError(WorkTree);
	return false;
}

bool FGitRepository::WriteIndex(FText& OutError)
{
	if (git_index_write(Index) == 0)
	{
		return true;
	}
	// Another git holds the lock, as a rule.
	OutError = GitRepository::LastError(WorkTree);
	return false;
}

bool FGitRepository::CheckCanAdd(const FPath& Path, FText& OutError)
{
	EGitFileStatus Status = EGitFileStatus::Current;
	if (!GetStatus(Path, Status, OutError))
	{
		return false;
	}
	if (EnumHasAnyFlags(Status, EGitFileStatus::Missing | EGitFileStatus::Deleted) || !FPaths::FileExists(Path.File))
	{
		OutError = GitRepository::MakeError(Path.File, TEXT("there is no such file"));
		return false;
	}
	if (EnumHasAnyFlags(Status, EGitFileStatus::Ignored))
	{
		OutError = GitRepository::MakeError(Path.File, TEXT("the file is ignored (.gitignore)"));
		return false;
	}
	return true;
}

bool FGitRepository::Add(const TArray<FString>& Files, FText& OutError)
{
	TArray<FPath> Paths;
	if (!MakePaths(Files, Paths, OutError) || !ReadIndex(OutError))
	{
		return false;
	}
	for (const FPath& Path : Paths)
	{
		if (!CheckCanAdd(Path, OutError))
		{
			return false;
		}
	}
	for (const FPath& Path : Paths)
	{
		if (git_index_add_bypath(Index, Path.Get()) != 0)
		{
			OutError = GitRepository::LastError(Path.File);
			return false;
		}
	}
	return WriteIndex(OutError);
}

bool FGitRepository::CheckCanRemove(const FPath& Path, FText& OutError)
{
	EGitFileStatus Status = EGitFileStatus::Current;
	if (!GetStatus(Path, Status, OutError))
	{
		return false;
	}
	if (!git_index_get_bypath(Index, Path.Get(), 0))
	{
		OutError = GitRepository::MakeError(Path.File, TEXT("the file is not under revision control"));
		return false;
	}
	if (EnumHasAnyFlags(Status, EGitFileStatus::StagedNew | EGitFileStatus::StagedChange | EGitFileStatus::Changed |
									EGitFileStatus::Conflicted))
	{
		OutError = GitRepository::MakeError(Path.File, TEXT("the file has changes that are not checked in"));
		return false;
	}
	return true;
}

bool FGitRepository::Remove(const TArray<FString>& Files, FText& OutError)
{
	TArray<FPath> Paths;
	if (!MakePaths(Files, Paths, OutError) || !ReadIndex(OutError))
	{
		return false;
	}
	for (const FPath& Path : Paths)
	{
		if (!CheckCanRemove(Path, OutError))
		{
			return false;
		}
	}
	for (const FPath& Path : Paths)
	{
		git_index_remove_bypath(Index, Path.Get());
	}
	if (!WriteIndex(OutError))
	{
		return false;
	}
	bool bAllDeleted = true;
	for (const FPath& Path : Paths)
	{
		if (!IFileManager::Get().Delete(*Path.File, false, true))
		{
			OutError = GitRepository::MakeError(Path.File, TEXT("the file cannot be deleted"));
			bAllDeleted = false;
		}
	}
	return bAllDeleted;
}

bool FGitRepository::RestoreEntry(git_tree* Tree, const FPath& Path, FText& OutError)
{
	git_index_conflict_remove(Index, Path.Get());
	git_index_remove_bypath(Index, Path.Get());
	git_tree_entry* Entry = nullptr;
	if (!Tree || git_tree_entry_bypath(&Entry, Tree, Path.Get()) != 0)
	{
		return true;
	}
	git_index_entry Restored{};
	Restored.path = Path.Get();
	Restored.id = *git_tree_entry_id(Entry);
	Restored.mode = git_tree_entry_filemode(Entry);
	git_tree_entry_free(Entry);
	if (git_index_add(Index, &Restored) != 0)
	{
		OutError = GitRepository::LastError(Path.File);
		return false;
	}
	return true;
}

bool FGitRepository::Revert(const TArray<FString>& Files, FText& OutError)
{
	TArray<FPath> Paths;
	if (!MakePaths(Files, Paths, OutError) || !ReadIndex(OutError))
	{
		return false;
	}
	git_tree* const Tree = GitRepository::GetHeadTree(Repository);
	TArray<FPath> CheckedIn;
	bool bRestored = true;
	for (const FPath& Path : Paths)
	{
		const bool bWasKnown = git_index_get_bypath(Index, Path.Get(), 0) != nullptr;
		bRestored = bRestored && RestoreEntry(Tree, Path, OutError);
		const bool bIsKnown = git_index_get_bypath(Index, Path.Get(), 0) != nullptr;
		if (bRestored && !bWasKnown && !bIsKnown)
		{
			OutError = GitRepository::MakeError(Path.File, TEXT("the file is not under revision control"));
			bRestored = false;
		}
		if (bIsKnown)
		{
			CheckedIn.Add(Path);
		}
	}
	git_tree_free(Tree);
	return bRestored && WriteIndex(OutError) && CheckOutFromIndex(CheckedIn, OutError);
}

bool FGitRepository::CheckOutFromIndex(const TArray<FPath>& Paths, FText& OutError)
{
	if (Paths.IsEmpty())
	{
		return true;
	}
	TArray<char*> Names;
	for (const FPath& Path : Paths)
	{
		Names.Add(const_cast<char*>(Path.Get()));
	}
	git_checkout_options Options;
	git_checkout_options_init(&Options, GIT_CHECKOUT_OPTIONS_VERSION);
	Options.checkout_strategy =
		GIT_CHECKOUT_FORCE | GIT_CHECKOUT_DISABLE_PATHSPEC_MATCH | GIT_CHECKOUT_DONT_UPDATE_INDEX;
	Options.paths = { Names.GetData(), static_cast<size_t>(Names.Num()) };
	if (git_checkout_index(Repository, Index, &Options) != 0)
	{
		OutError = GitRepository::LastError(WorkTree);
		return false;
	}
	return true;
}

#undef LOCTEXT_NAMESPACE
