#include "PythonTestSupport.h"

/** Ends Python at the end of the tests, so that what it leaks is seen. */
class FPythonEnvironment : public testing::Environment
{
	void TearDown() override { FModuleManager::Get().UnloadModulesAtShutdown(); }
};

testing::Environment* const PythonEnvironment = testing::AddGlobalTestEnvironment(new FPythonEnvironment);

class FPythonCommandTest : public FPythonTest
{
};

TEST_F(FPythonCommandTest, AFirstWordThatEndsInPyIsAFileAndTheRestItsArguments)
{
	const FString Path =
		WriteFile(TEXT("show.py"), TEXT("import sys\nprint(__name__, __file__ == sys.argv[0], sys.argv[1:])\n"));
	EXPECT_TRUE(Run(FString::Printf(TEXT("\"%s\" one \"two three\""), *Path))) << GetResult();
	EXPECT_EQ(GetOutput(), "Info: __main__ True ['one', 'two three']\n");
	EXPECT_EQ(LogLines, "LogPython Display: __main__ True ['one', 'two three']\n");
	EXPECT_EQ(GetResult(), "None");
	EXPECT_EQ(Evaluate(TEXT("__import__('sys').argv")), "['']");

	// Without quotes the path ends at its first space, and what is left of it is no file but a script.
	EXPECT_FALSE(Run(Path));
	EXPECT_EQ(GetLastResultLine().find("SyntaxError: "), 0u);
}

TEST_F(FPythonCommandTest, AMissingFileIsAnErrorInTheLog)
{
	EXPECT_FALSE(Run(TEXT("no_such_file.py")));
	EXPECT_EQ(GetResult(), "FileNotFoundError: Could not load Python file 'no_such_file.py'");
	EXPECT_EQ(LogLines, "LogPython Error: FileNotFoundError: Could not load Python file 'no_such_file.py'\n");
}

TEST_F(FPythonCommandTest, PrivateScriptsSeeNoOthersVariables)
{
	EXPECT_TRUE(Run(TEXT("left_behind = 1")));
	EXPECT_FALSE(Run(TEXT("print(left_behind)")));
	EXPECT_EQ(GetLastResultLine(), "NameError: name 'left_behind' is not defined");
	EXPECT_FALSE(Run(TEXT("unreal.log('the module is not imported by itself')")));

	FPythonCommandEx Public;
	Public.Command = TEXT("left_behind = 41");
	Public.FileExecutionScope = EPythonFileExecutionScope::Public;
	EXPECT_TRUE(IPythonScriptPlugin::Get()->ExecPythonCommandEx(Public));
	EXPECT_TRUE(Run(TEXT("left_behind += 1"), EPythonCommandExecutionMode::ExecuteStatement));
	EXPECT_EQ(Evaluate(TEXT("left_behind")), "42");
}

TEST_F(FPythonCommandTest, StatementsPrintAndExpressionsReturnTheirValue)
{
	EXPECT_TRUE(Run(TEXT("'a' + 'b'"), EPythonCommandExecutionMode::ExecuteStatement));
	EXPECT_EQ(GetOutput(), "Info: 'ab'\n");
	EXPECT_EQ(GetResult(), "None");
	EXPECT_EQ(Evaluate(TEXT("'a' + 'b'")), "'ab'");
	EXPECT_EQ(GetOutput(), "");
	EXPECT_FALSE(Run(TEXT("a = 1"), EPythonCommandExecutionMode::EvaluateStatement));
	EXPECT_FALSE(Run(TEXT("a = 1\nb = 2"), EPythonCommandExecutionMode::ExecuteStatement));
}

TEST_F(FPythonCommandTest, AnExceptionLeavesTheScriptsOwnFileAsItWas)
{
	const FString LogFile = Scratch.Path / TEXT("script.log");
	const FString Path = WriteFile(TEXT("fails.py"), FString::Printf(TEXT("import sys\n"
																		  "sys.stdout = open('%s', 'w')\n"
																		  "sys.stderr = sys.stdout\n"
																		  "print('begun')\n"
																		  "{}['gone']\n"
																		  "sys.stdout.close()\n"),
														 *LogFile));
	EXPECT_EQ(Evaluate(TEXT("exec('import sys; log_streams = sys.stdout, sys.stderr')")), "None");
	EXPECT_FALSE(Run(FString::Printf(TEXT("\"%s\""), *Path)));
	const std::string Traceback = "Traceback (most recent call last):\n  File \"" + ToUtf8(Path) +
								  "\", line 5, in <module>\n    {}['gone']\n    ~~^^^^^^^^\nKeyError: 'gone'";
	EXPECT_EQ(GetResult(), Traceback);
	EXPECT_EQ(GetOutput(), "Error: " + Traceback + "\n");
	EXPECT_NE(LogLines.find("LogPython Error: KeyError: 'gone'\n"), std::string::npos);

	// Nothing was flushed, the traceback did not go there, and the redirection stays.
	FString Written;
	EXPECT_TRUE(FFileHelper::LoadFileToString(Written, *LogFile));
	EXPECT_EQ(ToUtf8(Written), "");
	EXPECT_TRUE(Run(TEXT("print('not in the log')\nimport sys\nsys.stdout.flush()")));
	EXPECT_EQ(GetOutput(), "");
	EXPECT_TRUE(FFileHelper::LoadFileToString(Written, *LogFile));
	EXPECT_EQ(ToUtf8(Written), "begun\nnot in the log\n");
	EXPECT_TRUE(Run(TEXT("sys.stdout, sys.stderr = log_streams"), EPythonCommandExecutionMode::ExecuteStatement));
}

TEST_F(FPythonCommandTest, StandardStreamsAreTheLogAndTheProcessesAreThereToo)
{
	EXPECT_TRUE(Run(TEXT("import sys\n"
						 "assert sys.stdout.encoding == 'utf-8' and not sys.stdout.isatty()\n"
						 "print()\n"
						 "print('half', end='')\n"
						 "print('whole\\nlast', flush=True, end='')\n"
						 "print('wrong', file=sys.stderr)\n"
						 "sys.__stdout__.write('')\n"
						 "sys.__stderr__.write('')\n")))
		<< GetResult();
	EXPECT_EQ(GetOutput(), "Info: \nInfo: halfwhole\nError: wrong\nInfo: last\n");
	EXPECT_EQ(LogLines,
		"LogPython Display: \nLogPython Display: halfwhole\nLogPython Error: wrong\nLogPython Display: last\n");

	// What the footer of a script restores is not the log.
	EXPECT_TRUE(
		Run(TEXT("import sys\nkept = sys.stdout\nsys.stdout = sys.__stdout__\nprint(end='')\nsys.stdout = kept")));
	EXPECT_FALSE(Run(TEXT("input()")));
	EXPECT_EQ(GetLastResultLine(), "EOFError: EOF when reading a line");
}
