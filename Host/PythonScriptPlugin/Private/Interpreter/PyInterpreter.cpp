#include "Interpreter/PyInterpreter.h"

#include "Interfaces/IPluginManager.h"
#include "Interpreter/PyError.h"
#include "Interpreter/PyOutput.h"
#include "Interpreter/PySignals.h"
#include "Interpreter/PyTimeLimit.h"
#include "Interpreter/PythonCommand.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Types/PyUnrealModule.h"
#include "Values/PyText.h"

#include <cstring>

namespace PyInterpreter
{
const FString LiteralScriptName(TEXT("<string>"));

/** A forked editor would go on in two processes, a replaced one would be gone. */
int RefuseEvent(const char* Event, PyObject*, void*)
{
	for (const char* Refused : { "os.fork", "os.forkpty", "os.exec" })
	{
		if (std::strcmp(Event, Refused) == 0)
		{
			PyErr_Format(PyExc_RuntimeError, "%s is not possible inside the editor: use the module subprocess", Event);
			return -1;
		}
	}
	return 0;
}

bool SucceedsOrLogs(const PyStatus& Status)
{
	if (PyStatus_Exception(Status))
	{
		UE_LOG(LogPython, Error, TEXT("Python cannot be started: %s"),
			*FString(Status.err_msg ? Status.err_msg : "it has left"));
		return false;
	}
	return true;
}

PyStatus SetConfiguration(PyConfig& Config)
{
	PyConfig_InitIsolatedConfig(&Config);
	Config.site_import = 0;
	Config.write_bytecode = 0; // the project's folders are no place for it
	Config.buffered_stdio = 0;
	const struct
	{
		wchar_t** Member;
		const char* Value;
	} Texts[] = {
		{ &Config.home, PYTHON_PREFIX },
		// What a script starts as sys.executable is Python, and not a second editor.
		{ &Config.program_name, PYTHON_PREFIX "/bin/python3" },
		{ &Config.executable, PYTHON_PREFIX "/bin/python3" },
		{ &Config.stdio_encoding, "utf-8" },
		{ &Config.stdio_errors, "backslashreplace" },
	};
	for (const auto& Text : Texts)
	{
		const PyStatus Status = PyConfig_SetBytesString(&Config, Text.Member, Text.Value);
		if (PyStatus_Exception(Status))
		{
			return Status;
		}
	}
	return PyStatus_Ok();
}

FPyRef ToList(const TArray<FString>& Texts)
{
	const FPyRef List = FPyRef::Steal(PyList_New(0));
	for (const FString& Text : Texts)
	{
		PyList_Append(List.Get(), PyText::ToPython(Text).Get());
	}
	return List;
}

TArray<FString> GetSearchPath()
{
	TArray<FString> Folders;
	PyObject* const Path = PySys_GetObject("path");
	for (Py_ssize_t Index = 0; Path && PyList_Check(Path) && Index < PyList_GET_SIZE(Path); ++Index)
	{
		if (PyUnicode_Check(PyList_GET_ITEM(Path, Index)))
		{
			Folders.Add(PyText::ToText(PyList_GET_ITEM(Path, Index)));
		}
	}
	return Folders;
}

/** Gives a script its sys.argv for as long as it runs. */
class FArguments
{
public:
	explicit FArguments(const TArray<FString>& Arguments)
		: Previous(FPyRef::Borrow(PySys_GetObject("argv")))
	{
		PySys_SetObject("argv", ToList(Arguments).Get());
	}
	~FArguments()
	{
		// The script's exception waits to be told.
		PyObject* Error[3] = {};
		PyErr_Fetch(&Error[0], &Error[1], &Error[2]);
		PySys_SetObject("argv", Previous.Get());
		PyErr_Restore(Error[0], Error[1], Error[2]);
	}
	UE_NONCOPYABLE(FArguments)

private:
	const FPyRef Previous;
};

/** The bytes of a file, as Python itself learns their encoding. Sets an exception when it cannot be read. */
FPyRef ReadSource(const FPythonFileCommand& File, const FString& Path)
{
	TArray<uint8> Bytes;
	if (Path.IsEmpty() || !FFileHelper::LoadFileToArray(Bytes, *Path))
	{
		const FString Message = FString::Printf(TEXT("Could not load Python file '%s'"), *File.Path);
		PyErr_SetObject(PyExc_FileNotFoundError, PyText::ToPython(Message).Get());
		return FPyRef();
	}
	return FPyRef::Steal(PyBytes_FromStringAndSize(reinterpret_cast<const char*>(Bytes.GetData()), Bytes.Num()));
}
}

bool FPyInterpreter::Start()
{
	if (State == EState::NotStarted)
	{
		State = EState::Failed;
		if (StartPython())
		{
			State = PrepareModules() ? EState::Running : EState::Failed;
			UE_CLOG(State == EState::Failed, LogPython, Error, TEXT("Python cannot be started: %s"), *FPyError::Take());
			MainThread = PyEval_SaveThread();
		}
	}
	return State == EState::Running;
}

bool FPyInterpreter::StartPython()
{
	PyPreConfig PreConfig;
	PyPreConfig_InitIsolatedConfig(&PreConfig);
	PreConfig.utf8_mode = 1; // what a script opens is UTF-8 on every machine
#if __has_feature(address_sanitizer)
	PreConfig.allocator = PYMEM_ALLOCATOR_MALLOC;
#endif
	if (!PyInterpreter::SucceedsOrLogs(Py_PreInitialize(&PreConfig)))
	{
		return false;
	}
	PySys_AddAuditHook(&PyInterpreter::RefuseEvent, nullptr);
	PyConfig Config;
	PyStatus Status = PyInterpreter::SetConfiguration(Config);
	if (!PyStatus_Exception(Status))
	{
		Status = Py_InitializeFromConfig(&Config);
	}
	PyConfig_Clear(&Config);
	return PyInterpreter::SucceedsOrLogs(Status);
}

bool FPyInterpreter::PrepareModules()
{
	const FPyRef Unreal = FPyUnrealModule::Make();
	const FPyRef Builtins = FPyRef::Steal(PyImport_ImportModule("builtins"));
	const FPyRef Main = FPyRef::Steal(PyImport_ImportModule("__main__"));
	if (!Unreal || !Builtins || !Main || !FPyTimeLimit::Prepare(Unreal.Get()) || !PreparePaths())
	{
		return false;
	}
	FPyError::Prepare(Unreal.Get());
	Compile = FPyRef::Steal(PyObject_GetAttrString(Builtins.Get(), "compile"));
	ConsoleGlobals = FPyRef::Borrow(PyModule_GetDict(Main.Get()));
	return Compile && PyDict_SetItemString(ConsoleGlobals.Get(), "unreal", Unreal.Get()) == 0;
}

bool FPyInterpreter::PreparePaths() const
{
	TArray<FString> Folders{ FPaths::ProjectContentDir() };
	for (const TSharedRef<IPlugin>& Plugin : IPluginManager::Get().GetEnabledPlugins())
	{
		Folders.Add(Plugin->GetContentDir());
	}
	PyObject* const Path = PySys_GetObject("path");
	for (const FString& Folder : Folders)
	{
		const FPyRef Text = PyText::ToPython(FPaths::ConvertRelativePathToFull(Folder / TEXT("Python")));
		if (!Path || !Text || PyList_Append(Path, Text.Get()) < 0)
		{
			return false;
		}
	}
	return true;
}

void FPyInterpreter::Stop()
{
	if (!MainThread)
	{
		return;
	}
	PyEval_RestoreThread(MainThread);
	MainThread = nullptr;
	State = EState::NotStarted;
	Compile = FPyRef();
	ConsoleGlobals = FPyRef();
	FPyError::Forget();
	FPyTimeLimit::Forget();
	if (FPyUnrealModule::HasOtherThreads())
	{
		// Python would wait for them, perhaps for ever. With the lock held from here on, they do not get in the way.
		State = EState::Failed;
		UE_LOG(LogPython, Warning, TEXT("Threads of Python scripts were still running when the editor was closed"));
		return;
	}
	FPyUnrealModule::Forget();
	Py_FinalizeEx();
}

bool FPyInterpreter::Run(FPythonCommandEx& Command)
{
	checkf(IsInGameThread(), TEXT("Python commands run on the game thread"));
	Command.CommandResult.Empty();
	Command.LogOutput.Empty();
	if (!Start())
	{
		Command.CommandResult = TEXT("Python is not available");
		return false;
	}
	const FPyLock Lock;
	const FPySignals Signals;
	const FPyOutputCapture Capture(Command.LogOutput);
	const FPyRef Result = Execute(Command);
	if (!Result)
	{
		Command.CommandResult = FPyError::Take();
		FPyOutput::Log(EPythonLogOutputType::Error, Command.CommandResult);
		return false;
	}
	Command.CommandResult = PyText::ToText(Result.Get());
	return true;
}

FPyRef FPyInterpreter::Execute(const FPythonCommandEx& Command) const
{
	const FPyTimeLimit Limit(FPyTimeLimit::GetConfiguredSeconds());
	FPyUnrealModule::BeginCommand();
	FPyRef Value;
	if (Command.ExecutionMode == EPythonCommandExecutionMode::ExecuteFile)
	{
		Value = ExecuteFileOrScript(Command);
	}
	else
	{
		const bool bEvaluate = Command.ExecutionMode == EPythonCommandExecutionMode::EvaluateStatement;
		const FPyRef Source = PyText::ToPython(Command.Command.TrimStartAndEnd());
		Value = ExecuteSource(
			Source.Get(), PyInterpreter::LiteralScriptName, bEvaluate ? "eval" : "single", ConsoleGlobals.Get());
	}
	return Value ? FPyRef::Steal(PyObject_Repr(Value.Get())) : FPyRef();
}

FPyRef FPyInterpreter::ExecuteFileOrScript(const FPythonCommandEx& Command) const
{
	FPythonFileCommand File;
	const bool bFile = File.Parse(Command.Command);
	const FString Path = bFile ? File.Resolve(PyInterpreter::GetSearchPath()) : FString();
	const FPyRef Source = bFile ? PyInterpreter::ReadSource(File, Path) : PyText::ToPython(Command.Command);
	const FPyRef Globals = MakeGlobals(Command.FileExecutionScope, Path);
	if (!Source || !Globals)
	{
		return FPyRef();
	}
	TArray<FString> Arguments{ Path };
	Arguments.Append(File.Arguments);
	const PyInterpreter::FArguments ScriptArguments(Arguments);
	return ExecuteSource(Source.Get(), bFile ? Path : PyInterpreter::LiteralScriptName, "exec", Globals.Get());
}

FPyRef FPyInterpreter::ExecuteSource(
	PyObject* Source, const FString& FileName, const char* Mode, PyObject* Globals) const
{
	const FPyRef Name = PyText::ToPython(FileName);
	const FPyRef Code = Source && Name ? FPyRef::Steal(PyObject_CallFunction(
											 Compile.Get(), "OOsii", Source, Name.Get(), Mode, 0, /*dont_inherit*/ 1))
									   : FPyRef();
	return Code ? FPyRef::Steal(PyEval_EvalCode(Code.Get(), Globals, Globals)) : FPyRef();
}

FPyRef FPyInterpreter::MakeGlobals(EPythonFileExecutionScope Scope, const FString& FileName) const
{
	FPyRef Globals = Scope == EPythonFileExecutionScope::Public ? ConsoleGlobals : FPyRef::Steal(PyDict_New());
	const FPyRef Name = PyText::ToPython(TEXT("__main__"));
	if (!Globals || PyDict_SetItemString(Globals.Get(), "__name__", Name.Get()) < 0 ||
		PyDict_SetItemString(Globals.Get(), "__builtins__", PyEval_GetBuiltins()) < 0)
	{
		return FPyRef();
	}
	if (!FileName.IsEmpty() && PyDict_SetItemString(Globals.Get(), "__file__", PyText::ToPython(FileName).Get()) < 0)
	{
		return FPyRef();
	}
	return Globals;
}
