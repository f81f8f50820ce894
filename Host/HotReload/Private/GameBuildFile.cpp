#include "GameBuildFile.h"

#include "HostModuleManifest.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

#define LOCTEXT_NAMESPACE "GameBuildFile"

namespace GameBuildFile
{
/** An unchanged file keeps its time, so that nothing is built again on its account. */
bool SaveIfChanged(const FString& Text, const FString& FileName)
{
	FString Present;
	return (FFileHelper::LoadFileToString(Present, *FileName) && Present.Equals(Text)) ||
		   FFileHelper::SaveStringToFile(Text, *FileName, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM);
}

FString GetApiMacro(const FString& ModuleName)
{
	return ModuleName.ToUpper() + TEXT("_API");
}

FString GetLibraryNameStart(const FString& ModuleName)
{
	return TEXT("libHostEditor-") + ModuleName + TEXT("-") + FHostModuleManifest::GetFlavour() + TEXT("-");
}

TArray<FString> WithPrefix(const TCHAR* Prefix, const TArray<FString>& Words)
{
	TArray<FString> Result;
	for (const FString& Word : Words)
	{
		Result.Add(Prefix + Word);
	}
	return Result;
}
}

FString FGameBuildFile::GetFolder()
{
	return FString(TEXT("Intermediate/Build/Linux")) / FHostModuleManifest::GetFlavour();
}

FString FGameBuildFile::GetLibraryName(const FString& ModuleName, int32 LibraryNumber)
{
	return GameBuildFile::GetLibraryNameStart(ModuleName) + FString::Printf(TEXT("%04d.so"), LibraryNumber);
}

int32 FGameBuildFile::GetLibraryNumber(const FString& LibraryName)
{
	int32 Dash = INDEX_NONE;
	if (!LibraryName.EndsWith(TEXT(".so")) || !LibraryName.FindLastChar(u'-', Dash))
	{
		return INDEX_NONE;
	}
	const FString Digits = LibraryName.Mid(Dash + 1).LeftChop(3);
	return Digits.IsNumeric() ? FCString::Atoi(*Digits) : INDEX_NONE;
}

FString FGameBuildFile::GetTypesFile(const FGameModuleRules& Module)
{
	return GetModuleFolder(Module) / (Module.Name + TEXT(".types"));
}

FString FGameBuildFile::GetUnityFile(const FGameModuleRules& Module)
{
	return GetModuleFolder(Module) / (TEXT("Module.") + Module.Name + TEXT(".gen.cpp"));
}

TArray<FString> FGameBuildFile::GetGeneratedSources(const FGameModuleRules& Module)
{
	TArray<FString> Sources;
	for (const FString& Header : Module.ReflectedHeaders)
	{
		Sources.Add(GetGeneratedFolder(Module) / (FPaths::GetBaseFilename(Header) + TEXT(".gen.cpp")));
	}
	return Sources;
}

FString FGameBuildFile::GetLibraryPath(const FGameModuleRules& Module) const
{
	return FHostModuleManifest::GetFolder(FString()) / GetLibraryName(Module.Name, Number);
}

const FGameModuleRules* FGameBuildFile::FindModule(const FString& Name) const
{
	return Modules->FindByPredicate([&Name](const FGameModuleRules& Module) { return Module.Name.Equals(Name); });
}

bool FGameBuildFile::Write(const FString& ProjectDir, const FEditorBuild& InEditor,
	const TArray<FGameModuleRules>& InModules, int32 LibraryNumber, FText& OutFailReason)
{
	Directory = ProjectDir;
	Editor = &InEditor;
	Modules = &InModules;
	Number = LibraryNumber;
	File = FNinjaFile();
	AddRules();
	for (const FGameModuleRules& Module : InModules)
	{
		if (!AddModule(Module, OutFailReason))
		{
			return false;
		}
	}
	if (!GameBuildFile::SaveIfChanged(File.GetText(), ProjectDir / GetFileName()))
	{
		OutFailReason = FText::Format(
			LOCTEXT("CannotWrite", "{0} cannot be written"), FText::FromString(ProjectDir / GetFileName()));
		return false;
	}
	return true;
}

void FGameBuildFile::AddRules()
{
	TArray<FString> Compiler = Editor->CompilerLauncher;
	Compiler.Add(Editor->Compiler);
	TArray<FString> Flags = Editor->CompileFlags;
	// A reader of the messages need not know where the compiler ran; the objects do not tell, for the compiler cache.
	Flags.Append({ TEXT("-fdiagnostics-absolute-paths"), TEXT("-fdebug-compilation-dir=."), TEXT("-Winvalid-pch"),
		TEXT("-Xclang"), TEXT("-include-pch"), TEXT("-Xclang"), Editor->PrecompiledHeader + TEXT(".pch"),
		TEXT("-Xclang"), TEXT("-include"), TEXT("-Xclang"), Editor->PrecompiledHeader });

	File.Variable(TEXT("ninja_required_version"), TEXT("1.10"));
	File.Variable(TEXT("builddir"), GetFolder());
	File.Rule(
		TEXT("read_headers"), { TEXT("command = ") + FNinjaFile::Quote(Editor->HeaderTool) + TEXT(" $arguments $in"),
								  TEXT("description = Reading the reflected headers of $name"), TEXT("restat = 1") });
	File.Rule(
		TEXT("compile"), { TEXT("command = ") + FNinjaFile::Quote(Compiler) + TEXT(" ") + FNinjaFile::Quote(Flags) +
								 TEXT(" $arguments -MMD -MF $out.d -o $out -c $in"),
							 TEXT("description = Compiling $name"), TEXT("depfile = $out.d"), TEXT("deps = gcc") });
	File.Rule(TEXT("link"), { TEXT("command = ") + FNinjaFile::Quote(Editor->Compiler) + TEXT(" ") +
									FNinjaFile::Quote(Editor->LinkFlags) + TEXT(" -o $out $in $arguments"),
								TEXT("description = Linking $name") });
}

bool FGameBuildFile::AddModule(const FGameModuleRules& Module, FText& OutFailReason)
{
	FLists Lists;
	if (!CollectDependencies(Module, Lists, OutFailReason))
	{
		return false;
	}
	const FString Api = GameBuildFile::GetApiMacro(Module.Name);
	Lists.Definitions.Add(Api + TEXT("=__attribute__((visibility(\"default\")))"));
	Lists.Definitions.Add(TEXT("UE_MODULE_NAME=\"") + Module.Name + TEXT("\""));
	TArray<FString> Arguments = GameBuildFile::WithPrefix(TEXT("-D"), Lists.Definitions);
	Arguments.Append(GameBuildFile::WithPrefix(TEXT("-I"), Module.PublicFolders));
	Arguments.Append(GameBuildFile::WithPrefix(TEXT("-I"), Module.PrivateFolders));
	if (!Module.ReflectedHeaders.IsEmpty())
	{
		Arguments.Add(TEXT("-I") + GetGeneratedFolder(Module));
	}
	Arguments.Append(GameBuildFile::WithPrefix(TEXT("-I"), Lists.IncludePaths));
	File.Variable(*(TEXT("compile_") + Module.Name), FNinjaFile::Quote(Arguments));

	TArray<FString> Objects;
	for (const FString& Source : Module.Sources)
	{
		Objects.Add(AddCompileStep(Module, Source, Source.RightChop(Module.Folder.Len() + 1)));
	}
	if (!Module.ReflectedHeaders.IsEmpty())
	{
		AddHeaderToolStep(Module, Lists);
		// Headers that lie in no folder of the include path are found by generated code all the same.
		Objects.Add(AddCompileStep(Module, GetUnityFile(Module), FPaths::GetCleanFilename(GetUnityFile(Module)),
			TEXT(" ") + FNinjaFile::Quote(TEXT("-I") + Module.Folder)));
	}
	AddLinkStep(Module, Lists, Objects);
	return true;
}

bool FGameBuildFile::CollectDependencies(const FGameModuleRules& Module, FLists& OutLists, FText& OutFailReason) const
{
	for (const FString& Name : Module.Dependencies)
	{
		if (const FEditorBuild::FModule* const Engine = Editor->Modules.Find(Name))
		{
			OutLists.IncludePaths.Append(Engine->IncludePaths);
			OutLists.Definitions.Append(Engine->Definitions);
			OutLists.Libraries.Add(Engine->Library);
		}
		else if (const FGameModuleRules* const Other = FindModule(Name))
		{
			OutLists.IncludePaths.Append(Other->PublicFolders);
			OutLists.Definitions.Add(GameBuildFile::GetApiMacro(Name) + TEXT("="));
			OutLists.Libraries.Add(GetLibraryPath(*Other));
			if (!Other->ReflectedHeaders.IsEmpty())
			{
				OutLists.IncludePaths.Add(GetGeneratedFolder(*Other));
				OutLists.Types.Add(GetTypesFile(*Other));
			}
		}
		else
		{
			OutFailReason =
				FText::Format(LOCTEXT("UnknownModule", "{0}.Build.cs lists the module {1}, which there is not"),
					FText::FromString(Module.Name), FText::FromString(Name));
			return false;
		}
	}
	return true;
}

void FGameBuildFile::AddHeaderToolStep(const FGameModuleRules& Module, const FLists& Lists)
{
	const FString Output = GetGeneratedFolder(Module);
	TArray<FString> Arguments = { TEXT("--module"), Module.Name, TEXT("--api"), GameBuildFile::GetApiMacro(Module.Name),
		TEXT("--output"), Output, TEXT("--manifest"), GetTypesFile(Module) };
	TArray<FString> Roots = Module.PublicFolders;
	Roots.Append(Module.PrivateFolders);
	Roots.AddUnique(Module.Folder);
	for (const FString& Root : Roots)
	{
		Arguments.Append({ TEXT("--root"), Root });
	}
	// A type's name must be new among all that the editor may load, whether they are listed or not.
	TArray<FString> Types = Lists.Types;
	for (const auto& Pair : Editor->Modules)
	{
		Types.Append(Pair.Value.Types.IsEmpty() ? TArray<FString>() : TArray<FString>{ Pair.Value.Types });
	}
	for (const FString& Manifest : Types)
	{
		Arguments.Append({ TEXT("--use"), Manifest });
	}

	FNinjaFile::FStep Step{ .Rule = TEXT("read_headers") };
	Step.Outputs = { GetTypesFile(Module) };
	Step.Outputs.Append(GetGeneratedSources(Module));
	for (const FString& Header : Module.ReflectedHeaders)
	{
		Step.Outputs.Add(Output / (FPaths::GetBaseFilename(Header) + TEXT(".generated.h")));
	}
	Step.Inputs = Module.ReflectedHeaders;
	Step.ImplicitInputs = Types;
	Step.ImplicitInputs.Add(Editor->HeaderTool);
	Step.Variables = { { TEXT("arguments"), FNinjaFile::Quote(Arguments) }, { TEXT("name"), Module.Name } };
	File.Step(Step);
	WriteGeneratedUnityFile(Module);
}

bool FGameBuildFile::WriteGeneratedUnityFile(const FGameModuleRules& Module) const
{
	FString Text;
	for (const FString& Source : GetGeneratedSources(Module))
	{
		Text += TEXT("#include \"Inc/") + FPaths::GetCleanFilename(Source) + TEXT("\"\n");
	}
	return GameBuildFile::SaveIfChanged(Text, Directory / GetUnityFile(Module));
}

FString FGameBuildFile::AddCompileStep(
	const FGameModuleRules& Module, const FString& Source, const FString& Object, const FString& MoreArguments)
{
	FNinjaFile::FStep Step{ .Rule = TEXT("compile") };
	Step.Outputs = { GetModuleFolder(Module) / TEXT("Obj") / (Object + TEXT(".o")) };
	Step.Inputs = { Source };
	Step.ImplicitInputs = { Editor->PrecompiledHeader + TEXT(".pch") };
	if (!Module.ReflectedHeaders.IsEmpty())
	{
		Step.OrderOnly = { GetTypesFile(Module) };
	}
	for (const FString& Name : Module.Dependencies)
	{
		const FGameModuleRules* const Other = FindModule(Name);
		if (Other && !Other->ReflectedHeaders.IsEmpty())
		{
			Step.OrderOnly.Add(GetTypesFile(*Other));
		}
	}
	Step.Variables = { { TEXT("arguments"), TEXT("$compile_") + Module.Name + MoreArguments },
		{ TEXT("name"), FNinjaFile::Escape(Source) } };
	File.Step(Step);
	return Step.Outputs[0];
}

void FGameBuildFile::AddLinkStep(const FGameModuleRules& Module, const FLists& Lists, const TArray<FString>& Objects)
{
	const FString Library = GetLibraryPath(Module);
	// Modules of the project lie side by side and are found by their file names.
	TArray<FString> Arguments = { TEXT("-Wl,-soname,") + FPaths::GetCleanFilename(Library),
		TEXT("-Wl,-rpath,$ORIGIN") };
	Arguments.Append(Lists.Libraries);
	FNinjaFile::FStep Step{ .Rule = TEXT("link") };
	Step.Outputs = { Library };
	Step.Inputs = Objects;
	for (const FString& Name : Module.Dependencies)
	{
		if (const FGameModuleRules* const Other = FindModule(Name))
		{
			Step.ImplicitInputs.Add(GetLibraryPath(*Other));
		}
	}
	Step.Variables = { { TEXT("arguments"), FNinjaFile::Quote(Arguments) },
		{ TEXT("name"), FPaths::GetCleanFilename(Library) } };
	File.Step(Step);
}

#undef LOCTEXT_NAMESPACE
