#include "IPythonScriptPlugin.h"
#include "Interpreter/PyInterpreter.h"

class FPythonScriptPlugin final : public IPythonScriptPlugin
{
public:
	void ShutdownModule() override { Interpreter.Stop(); }
	bool IsPythonAvailable() const override { return Interpreter.IsAvailable(); }
	bool ExecPythonCommand(const TCHAR* InPythonCommand) override
	{
		FPythonCommandEx Command;
		Command.Command = InPythonCommand;
		return ExecPythonCommandEx(Command);
	}
	bool ExecPythonCommandEx(FPythonCommandEx& InOutPythonCommand) override
	{
		return Interpreter.Run(InOutPythonCommand);
	}

private:
	FPyInterpreter Interpreter;
};

IMPLEMENT_MODULE(FPythonScriptPlugin, PythonScriptPlugin)

const TCHAR* LexToString(EPythonLogOutputType InType)
{
	switch (InType)
	{
	case EPythonLogOutputType::Info:
		return TEXT("Info");
	case EPythonLogOutputType::Warning:
		return TEXT("Warning");
	case EPythonLogOutputType::Error:
		return TEXT("Error");
	}
	checkNoEntry();
	return TEXT("");
}
