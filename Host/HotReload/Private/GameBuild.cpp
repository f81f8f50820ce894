#include "GameBuild.h"

#include "GameBuildFile.h"
#include "HAL/FileManager.h"
#include "HostModuleManifest.h"
#include "Interfaces/IProjectManager.h"
#include "Misc/Paths.h"

#define LOCTEXT_NAMESPACE "GameBuild"

namespace GameBuild
{
FString GetProjectDir()
{
	FString Directory = FPaths::ConvertRelativePathToFull(FPaths::ProjectDir());
	FPaths::NormalizeDirectoryName(Directory);
	return Directory;
}

/** Adds a module behind those that it lists; a circle is cut where it closes, and the linker tells. */
void AddInOrder(const FGameModuleRules& Module, const TArray<FGameModuleRules>& All, TArray<FString>& Visited,
	TArray<FGameModuleRules>& OutOrdered)
{
	if (Visited.Contains(Module.Name))
	{
		return;
	}
	Visited.Add(Module.Name);
	for (const FGameModuleRules& Other : All)
	{
		if (Module.Dependencies.Contains(Other.Name))
		{
			AddInOrder(Other, All, Visited, OutOrdered);
		}
	}
	OutOrdered.Add(Module);
}

// Numbers that this process has used: a file name cannot be loaded twice, even if its file is gone.
int32 LastNumber = 0;
}

TArray<FString> FGameBuild::GetProjectModules()
{
	TArray<FString> Names;
	const FProjectDescriptor* const Project = IProjectManager::Get().GetCurrentProject();
	for (const FModuleDescriptor& Module : Project ? Project->Modules : TArray<FModuleDescriptor>())
	{
		if (Module.IsLoadedInEditor())
		{
			Names.Add(Module.Name.ToString());
		}
	}
	return Names;
}

FString FGameBuild::DescribeMissingDependencies()
{
	FEditorBuild Editor;
	TArray<FGameModuleRules> Modules;
	FText FailReason;
	if (!Editor.Load(FailReason) || !ReadRules(GameBuild::GetProjectDir(), Modules, FailReason))
	{
		return FString();
	}
	return DescribeMissing(FindMissing(Modules, Editor));
}

TArray<FString> FGameBuild::FindMissing(const TArray<FGameModuleRules>& Modules, const FEditorBuild& Editor)
{
	TArray<FString> Missing;
	const TArray<FString> OfProject = GetProjectModules();
	for (const FGameModuleRules& Module : Modules)
	{
		for (const FString& Dependency : Module.Dependencies)
		{
			if (!Editor.Modules.Contains(Dependency) && !OfProject.Contains(Dependency))
			{
				Missing.AddUnique(Dependency);
			}
		}
	}
	return Missing;
}

FString FGameBuild::DescribeMissing(const TArray<FString>& Missing)
{
	return Missing.IsEmpty()
			   ? FString()
			   : TEXT("they need engine modules that this editor does not have: ") + FString::Join(Missing, TEXT(", "));
}

bool FGameBuild::AreLibrariesUsable()
{
	const FString Directory = GameBuild::GetProjectDir();
	FHostModuleManifest Manifest;
	FEditorBuild Editor;
	FText FailReason;
	if (!Manifest.Load(Directory) || !Editor.Load(FailReason) || !Manifest.BuildId.Equals(Editor.GetBuildId()))
	{
		return false;
	}
	for (const FString& Module : GetProjectModules())
	{
		const FString* const Library = Manifest.Libraries.Find(Module);
		if (!Library || !FPaths::FileExists(FHostModuleManifest::GetFolder(Directory) / *Library))
		{
			return false;
		}
	}
	return true;
}

void FGameBuild::DeleteOldLibraries()
{
	const FString Directory = GameBuild::GetProjectDir();
	const FString Folder = FHostModuleManifest::GetFolder(Directory);
	FHostModuleManifest Manifest;
	Manifest.Load(Directory);
	for (const FString& Module : GetProjectModules())
	{
		const FString Start = FGameBuildFile::GetLibraryName(Module, 0).LeftChop(FString(TEXT("0000.so")).Len());
		TArray<FString> Files;
		IFileManager::Get().FindFiles(Files, *(Folder / (Start + TEXT("*.so"))), true, false);
		for (const FString& File : Files)
		{
			if (!File.Equals(Manifest.Libraries.FindRef(Module)))
			{
				IFileManager::Get().Delete(*(Folder / File));
			}
		}
	}
}

bool FGameBuild::Start(FText& OutFailReason)
{
	ProjectDir = GameBuild::GetProjectDir();
	if (!Editor.Load(OutFailReason) || !ReadRules(ProjectDir, Modules, OutFailReason))
	{
		return false;
	}
	const FString Missing = DescribeMissing(FindMissing(Modules, Editor));
	if (!Missing.IsEmpty())
	{
		Lines.Add(TEXT("error: The project's C++ modules cannot be compiled here, because ") + Missing);
		Phase = EPhase::Refusing;
		return true;
	}
	const int32 PresentNumber = GetPresentNumber();
	return PresentNumber == INDEX_NONE ? StartNinja(MakeNewNumber(), false, OutFailReason)
									   : StartNinja(PresentNumber, true, OutFailReason);
}

bool FGameBuild::ReadRules(const FString& ProjectDir, TArray<FGameModuleRules>& OutModules, FText& OutFailReason)
{
	TArray<FGameModuleRules> All;
	for (const FString& Name : GetProjectModules())
	{
		if (!All.AddDefaulted_GetRef().Read(ProjectDir, Name, OutFailReason))
		{
			return false;
		}
	}
	TArray<FString> Visited;
	for (const FGameModuleRules& Module : All)
	{
		GameBuild::AddInOrder(Module, All, Visited, OutModules);
	}
	return true;
}

int32 FGameBuild::GetPresentNumber() const
{
	FHostModuleManifest Manifest;
	if (!Manifest.Load(ProjectDir) || Modules.IsEmpty())
	{
		return INDEX_NONE;
	}
	const int32 Present = FGameBuildFile::GetLibraryNumber(Manifest.Libraries.FindRef(Modules[0].Name));
	for (const FGameModuleRules& Module : Modules)
	{
		const FString Library = FGameBuildFile::GetLibraryName(Module.Name, Present);
		if (!Library.Equals(Manifest.Libraries.FindRef(Module.Name)) ||
			!FPaths::FileExists(FHostModuleManifest::GetFolder(ProjectDir) / Library))
		{
			return INDEX_NONE;
		}
	}
	return Present;
}

int32 FGameBuild::MakeNewNumber() const
{
	TArray<FString> Files;
	IFileManager::Get().FindFiles(
		Files, *(FHostModuleManifest::GetFolder(ProjectDir) / TEXT("libHostEditor-*.so")), true, false);
	for (const FString& File : Files)
	{
		GameBuild::LastNumber = FMath::Max(GameBuild::LastNumber, FGameBuildFile::GetLibraryNumber(File));
	}
	return ++GameBuild::LastNumber;
}

bool FGameBuild::StartNinja(int32 LibraryNumber, bool bOnlyCheck, FText& OutFailReason)
{
	if (!FGameBuildFile().Write(ProjectDir, Editor, Modules, LibraryNumber, OutFailReason))
	{
		return false;
	}
	Number = LibraryNumber;
	Phase = bOnlyCheck ? EPhase::Checking : EPhase::Building;
	TArray<FString> Command = { Editor.Ninja, TEXT("-f"), FGameBuildFile::GetFileName() };
	if (bOnlyCheck)
	{
		Command.Add(TEXT("-n"));
	}
	// The precompiled header carries no time, and objects do not depend on where the project lies.
	const TArray<FString> Environment = {
		TEXT("CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime"),
		TEXT("CCACHE_NOHASHDIR=1"), TEXT("NINJA_STATUS=[%f/%t] ")
	};
	Process = MakeUnique<FChildProcess>();
	if (!Process->Start(Command, ProjectDir, Environment))
	{
		OutFailReason = FText::Format(LOCTEXT("NinjaFailed", "{0} cannot be started"), FText::FromString(Editor.Ninja));
		return false;
	}
	return true;
}

bool FGameBuild::Tick()
{
	if (Phase == EPhase::Ended)
	{
		return false;
	}
	if (Phase == EPhase::Refusing)
	{
		End(bStopRequested ? ECompilationResult::Canceled : ECompilationResult::OtherCompilationError);
		return false;
	}
	const bool bRuns = Process->Poll();
	TakeLinesFromProcess();
	if (!bRuns)
	{
		Phase == EPhase::Checking ? EndCheck() : EndBuild();
	}
	return Phase != EPhase::Ended;
}

void FGameBuild::TakeLinesFromProcess()
{
	for (FString& Line : Process->TakeLines())
	{
		if (Phase == EPhase::Checking)
		{
			bNothingToDo |= Line.StartsWith(TEXT("ninja: no work to do"));
			continue;
		}
		// Behind the line that names a failed step stands its command, which tells a reader nothing.
		const bool bSkip = bSkipNextLine;
		bSkipNextLine = Line.StartsWith(TEXT("FAILED: "), ESearchCase::CaseSensitive);
		if (!bSkip && !bSkipNextLine)
		{
			const bool bOfProject = Line.StartsWith(TEXT("Source/"), ESearchCase::CaseSensitive);
			Lines.Add(bOfProject ? ProjectDir / Line : Line);
		}
	}
}

void FGameBuild::EndCheck()
{
	if (bStopRequested)
	{
		End(ECompilationResult::Canceled);
		return;
	}
	if (bNothingToDo)
	{
		FillLibraries();
		End(SaveManifest(Number) ? ECompilationResult::UpToDate : ECompilationResult::OtherCompilationError);
		return;
	}
	FText FailReason;
	if (!StartNinja(MakeNewNumber(), false, FailReason))
	{
		Lines.Add(FailReason.ToString());
		End(ECompilationResult::OtherCompilationError);
	}
}

void FGameBuild::EndBuild()
{
	if (bStopRequested)
	{
		End(ECompilationResult::Canceled);
		return;
	}
	if (Process->GetExitCode() != 0 || !SaveManifest(Number))
	{
		End(ECompilationResult::OtherCompilationError);
		return;
	}
	FillLibraries();
	End(ECompilationResult::Succeeded);
}

void FGameBuild::FillLibraries()
{
	for (const FGameModuleRules& Module : Modules)
	{
		Libraries.Emplace(FName(*Module.Name),
			FHostModuleManifest::GetFolder(ProjectDir) / FGameBuildFile::GetLibraryName(Module.Name, Number));
	}
}

void FGameBuild::End(ECompilationResult::Type InResult)
{
	Result = InResult;
	Phase = EPhase::Ended;
	Process.Reset();
}

bool FGameBuild::SaveManifest(int32 LibraryNumber) const
{
	FHostModuleManifest Manifest;
	Manifest.BuildId = Editor.GetBuildId();
	for (const FGameModuleRules& Module : Modules)
	{
		Manifest.Libraries.Add(Module.Name, FGameBuildFile::GetLibraryName(Module.Name, LibraryNumber));
	}
	return Manifest.Save(ProjectDir);
}

void FGameBuild::RequestStop()
{
	bStopRequested = true;
	if (Process)
	{
		Process->RequestStop();
	}
}

TArray<FString> FGameBuild::TakeLines()
{
	return MoveTemp(Lines);
}

#undef LOCTEXT_NAMESPACE
