#include "Misc/ConfigCacheIni.h"
#include "PythonTestSupport.h"

#include <chrono>
#include <csignal>
#include <unistd.h>

/** Scripts that mean no good. After each of them the next one runs as if nothing had been. */
class FHostileScriptTest : public FPythonTest
{
protected:
	~FHostileScriptTest() override
	{
		SetTimeLimit(TEXT("0"));
		EXPECT_EQ(Evaluate(TEXT("6 * 7")), "42");
		EXPECT_TRUE(Run(TEXT("print('as ever')")));
		EXPECT_EQ(GetOutput(), "Info: as ever\n");
	}

	static void SetTimeLimit(const TCHAR* Seconds)
	{
		if (!GConfig)
		{
			GetProjectDir();
			FConfigCacheIni::InitializeConfigSystem();
		}
		GConfig->SetString(TEXT("PythonScriptPlugin"), TEXT("ScriptTimeoutSeconds"), Seconds, GEngineIni);
	}
};

TEST_F(FHostileScriptTest, NoExceptionEndsTheEditor)
{
	struct FCase
	{
		const TCHAR* Script;
		const char* LastLine;
	};
	const FCase Cases[] = {
		{ TEXT("import sys\nsys.exit(3)"), "SystemExit: 3" },
		{ TEXT("raise SystemExit"), "SystemExit" },
		{ TEXT("raise KeyboardInterrupt"), "KeyboardInterrupt" },
		{ TEXT("raise GeneratorExit('no')"), "GeneratorExit: no" },
		{ TEXT("def f(): f()\nf()"), "RecursionError: maximum recursion depth exceeded" },
		{ TEXT("class A:\n  def __repr__(self): return repr(self)\nrepr(A())"),
			"RecursionError: maximum recursion depth exceeded while calling a Python object" },
		{ TEXT("import sys\nsys.setrecursionlimit(10**9)"),
			"ValueError: the recursion limit inside the editor is at most 5000" },
		{ TEXT("class E(Exception):\n  def __str__(self): raise self\nraise E"), "E: <exception str() failed>" },
		{ TEXT("class E(Exception):\n  __name__ = 1\n  def __str__(self): return 7\nraise E"),
			"E: <exception str() failed>" },
		{ TEXT("def f(:"), "SyntaxError: invalid syntax" },
		{ TEXT("import os\nos.fork()"),
			"RuntimeError: os.fork is not possible inside the editor: use the module subprocess" },
		{ TEXT("import os\nos.execv('/bin/true', ['true'])"),
			"RuntimeError: os.exec is not possible inside the editor: use the module subprocess" },
		{ TEXT("raise Exception('\\ud800 \\0 \\U0001f600')"), "Exception: \xef\xbf\xbd " },
	};
	for (const FCase& Case : Cases)
	{
		EXPECT_FALSE(Run(Case.Script));
		EXPECT_EQ(GetLastResultLine(), Case.LastLine) << ToUtf8(Case.Script);
	}
}

TEST_F(FHostileScriptTest, CRecursionAtTheHighestLimitFitsTheStack)
{
	EXPECT_FALSE(Run(TEXT("import sys\n"
						  "before = sys.getrecursionlimit()\n"
						  "sys.setrecursionlimit(5000)\n"
						  "class A:\n"
						  "  def __getattr__(self, name): return getattr(self, name + 'x')\n"
						  "try:\n"
						  "  A().a\n"
						  "finally:\n"
						  "  sys.setrecursionlimit(before)\n")));
	EXPECT_NE(GetResult().find("RecursionError"), std::string::npos);
}

TEST_F(FHostileScriptTest, SourcesThatAreNoTextAreRefused)
{
	struct FCase
	{
		const char* Bytes;
		size_t Length;
		const char* Expected;
	};
	const FCase Cases[] = {
		{ "print('\xff')\n", 11, "SyntaxError: (unicode error) 'utf-8' codec can't decode byte 0xff" },
		{ "print(1)\0print(2)\n", 18, "source code string cannot contain null bytes" },
		{ "# coding: nonsense\n", 19, "unknown encoding: nonsense" },
	};
	for (const FCase& Case : Cases)
	{
		const FString Path = Scratch.Path / TEXT("source.py");
		EXPECT_TRUE(FFileHelper::SaveArrayToFile(
			TArrayView<const uint8>(reinterpret_cast<const uint8*>(Case.Bytes), static_cast<int32>(Case.Length)),
			*Path));
		EXPECT_FALSE(Run(FString::Printf(TEXT("\"%s\""), *Path)));
		EXPECT_NE(GetResult().find(Case.Expected), std::string::npos) << GetResult();
	}
	EXPECT_FALSE(Run(FString(TEXT("print('")) + FString::Chr(0xd800) + TEXT("')")));
	EXPECT_NE(GetResult().find("surrogates not allowed"), std::string::npos) << GetResult();
	EXPECT_FALSE(Run(FString::ConstructFromPtrSize(u"print(1)\0", 9)));

	const FString Latin = Scratch.Path / TEXT("latin.py");
	const char Text[] = "# coding: latin-1\nassert '\xe9' == '\\xe9'\n";
	EXPECT_TRUE(FFileHelper::SaveArrayToFile(
		TArrayView<const uint8>(reinterpret_cast<const uint8*>(Text), sizeof(Text) - 1), *Latin));
	EXPECT_TRUE(Run(FString::Printf(TEXT("\"%s\""), *Latin))) << GetResult();
}

TEST_F(FHostileScriptTest, OddTextIsLoggedAndTooMuchOfItLeftOut)
{
	EXPECT_TRUE(Run(TEXT("import unreal\n"
						 "print('\\ud800|\\0|\\U0001f600')\n"
						 "unreal.log_warning('two\\nlines')\n"
						 "unreal.log_error(b'\\xff')\n")))
		<< GetResult();
	EXPECT_EQ(GetOutput(), "Info: \xef\xbf\xbd|\xe2\x90\x80|\xf0\x9f\x98\x80\nWarning: two\nlines\nError: b'\\xff'\n");
	EXPECT_EQ(LogLines, "LogPython Display: \xef\xbf\xbd|\xe2\x90\x80|\xf0\x9f\x98\x80\nLogPython Warning: two\n"
						"LogPython Warning: lines\nLogPython Error: b'\\xff'\n");

	EXPECT_TRUE(Run(TEXT("print('x' * 50_000_000)\nprint('not seen')")));
	EXPECT_LT(GetOutput().size(), 3u << 19);
	EXPECT_EQ(ToUtf8(Command.LogOutput.Last().Output), "48951434 more characters of output were left out");
	EXPECT_TRUE(Run(TEXT("for i in range(1_100_000): print()")));
	EXPECT_LE(Command.LogOutput.Num(), (1 << 20) + 1);
	EXPECT_FALSE(Run(TEXT("raise Exception('x' * 10_000_000)")));
	EXPECT_LT(GetResult().size(), 1u << 19);
	EXPECT_FALSE(Run(TEXT("import sys\nsys.stdout.write(b'bytes')")));
	EXPECT_EQ(GetLastResultLine(), "TypeError: write() argument must be str, not bytes");
}

TEST_F(FHostileScriptTest, AScriptEndsAtItsTimeLimitWhateverItDoes)
{
	SetTimeLimit(TEXT("0.1"));
	const TCHAR* const Scripts[] = {
		TEXT("while True: pass"),
		TEXT("while True:\n  try:\n    while True: pass\n  except: pass"),
		TEXT("def f():\n  try:\n    while True: pass\n  finally:\n    f()\nf()"),
		TEXT("import time\ntime.sleep(1000)"),
		TEXT("import threading\nthreading.Lock().acquire() and threading.Event().wait()"),
		TEXT("class D:\n  def __del__(self):\n    while True: pass\nd = D()\ndel d\nwhile True: pass"),
		TEXT("import signal, time\nsignal.signal(signal.SIGRTMAX - 3, signal.SIG_DFL)\nwhile True: time.sleep(0.01)"),
	};
	for (const TCHAR* Script : Scripts)
	{
		const auto StartedAt = std::chrono::steady_clock::now();
		EXPECT_FALSE(Run(Script)) << ToUtf8(Script);
		const std::chrono::duration<double> Elapsed = std::chrono::steady_clock::now() - StartedAt;
		EXPECT_LT(Elapsed.count(), 5.0) << ToUtf8(Script);
		EXPECT_NE(GetResult().find("unreal.ScriptTimeoutError: the script was stopped after "), std::string::npos);
		EXPECT_NE(GetResult().find("ScriptTimeoutSeconds=0.1"), std::string::npos) << GetResult();
	}
}

TEST_F(FHostileScriptTest, AScriptAtItsTimeLimitCanCleanUp)
{
	SetTimeLimit(TEXT("0.3"));
	EXPECT_FALSE(Run(TEXT("import subprocess\nsubprocess.run(['sleep', '1000'])")));
	EXPECT_EQ(Evaluate(TEXT("__import__('os').waitpid(-1, 0)")).find("Traceback"), 0u);
	EXPECT_EQ(GetLastResultLine(), "ChildProcessError: [Errno 10] No child processes");
	EXPECT_FALSE(Run(TEXT("class E(Exception):\n  def __str__(self):\n    while True: pass\nraise E")));
	EXPECT_EQ(GetLastResultLine(), "E: <exception str() failed>");
	EXPECT_FALSE(Run(TEXT("try:\n  while True:\n    x = 1\nfinally:\n  print('cleaned up')")));
	EXPECT_EQ(GetOutput().find("Info: cleaned up\n"), 0u) << GetOutput();
}

TEST_F(FHostileScriptTest, SignalsOfTheProcessStayWithTheEditor)
{
	struct sigaction Before = {};
	sigaction(SIGINT, nullptr, &Before);
	EXPECT_TRUE(Run(TEXT(
		"import signal\nsignal.signal(signal.SIGINT, lambda *_: None)\nsignal.signal(signal.SIGTERM, signal.SIG_IGN)")));
	struct sigaction After = {};
	sigaction(SIGINT, nullptr, &After);
	EXPECT_EQ(After.sa_handler, Before.sa_handler);
	sigaction(SIGTERM, nullptr, &After);
	EXPECT_EQ(After.sa_handler, SIG_DFL);
}

TEST_F(FHostileScriptTest, NothingOfTheEnvironmentReachesAScript)
{
	setenv("PYTHONPATH", "/surprise", 1);
	EXPECT_TRUE(Run(TEXT(
		"import sys\n"
		"assert not any('surprise' in p or 'packages' in p for p in sys.path), sys.path\n"
		"assert 'python3' in sys.executable and sys.flags.utf8_mode\n"
		"import json, subprocess\n"
		"assert subprocess.run([sys.executable, '-I', '-c', 'print(1)'], capture_output=True).stdout == b'1\\n'\n")))
		<< GetResult();
	unsetenv("PYTHONPATH");
}

TEST_F(FHostileScriptTest, AModuleIsImportedOnceAndThreadsGoOn)
{
	const FString Module = GetProjectDir() / TEXT("Content/Python/counted.py");
	EXPECT_TRUE(FFileHelper::SaveStringToFile(TEXT("print('imported')\n"), *Module));
	EXPECT_TRUE(Run(TEXT("import counted"))) << GetResult();
	EXPECT_EQ(GetOutput(), "Info: imported\n");
	EXPECT_TRUE(Run(TEXT("import counted")));
	EXPECT_EQ(GetOutput(), "");
	EXPECT_TRUE(Run(TEXT("import threading, counted\n"
						 "def work():\n  print('of the thread')\n  counted.done = True\n"
						 "thread = threading.Thread(target=work)\nthread.start()\nthread.join()\n")))
		<< GetResult();
	EXPECT_EQ(GetOutput(), "");
	EXPECT_TRUE(Run(TEXT("import counted\nassert counted.done")));
}

TEST_F(FHostileScriptTest, AThreadThatNeverEndsDoesNotKeepTheEditorOpen)
{
	const auto EndWithThread = [this] {
		const bool bStarted =
			Run(TEXT("import threading, time\nthreading.Thread(target=lambda: time.sleep(1000)).start()"));
		FModuleManager::Get().UnloadModulesAtShutdown();
		_exit(bStarted ? 0 : 1);
	};
	EXPECT_EXIT(EndWithThread(), testing::ExitedWithCode(0), "were still running");
}
