#include "ChildProcess.h"

#include "HAL/PlatformProcess.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace ChildProcess
{
// A compiler that repeats itself must not fill the memory; a person reads far less.
constexpr int64 MaxOutputBytes = 1024 * 1024;
constexpr double SecondsBeforeForce = 5.0;
constexpr float PollSeconds = 0.005f;
constexpr int StartFailedExitCode = 127;

/** Texts as the null-terminated array of pointers that exec wants. */
class FTexts
{
public:
	void Add(std::string Text) { Texts.push_back(std::move(Text)); }
	char** Get()
	{
		Pointers.clear();
		for (std::string& Text : Texts)
		{
			Pointers.push_back(Text.data());
		}
		Pointers.push_back(nullptr);
		return Pointers.data();
	}

private:
	std::vector<std::string> Texts;
	std::vector<char*> Pointers;
};

/** What a child does between fork and exec: only calls that are safe there. */
[[noreturn]] void Become(char** Arguments, char** Environment, const char* Directory, int Output)
{
	// The build tool passes this signal on to the compilers that it has started.
	prctl(PR_SET_PDEATHSIG, SIGTERM);
	setpgid(0, 0);
	sigset_t NoSignals;
	sigemptyset(&NoSignals);
	sigprocmask(SIG_SETMASK, &NoSignals, nullptr);
	const int Null = open("/dev/null", O_RDONLY);
	dup2(Null, STDIN_FILENO);
	dup2(Output, STDOUT_FILENO);
	dup2(Output, STDERR_FILENO);
	// The editor's sockets and files are none of the child's business.
	close_range(STDERR_FILENO + 1, ~0U, 0);
	if (chdir(Directory) == 0)
	{
		execve(Arguments[0], Arguments, Environment);
	}
	_exit(StartFailedExitCode);
}
}

FChildProcess::~FChildProcess()
{
	if (ProcessId == 0)
	{
		return;
	}
	RequestStop();
	double Waited = 0.0;
	while (Poll())
	{
		FPlatformProcess::Sleep(ChildProcess::PollSeconds);
		Waited += ChildProcess::PollSeconds;
		if (Waited > ChildProcess::SecondsBeforeForce)
		{
			RequestStop();
		}
	}
}

bool FChildProcess::Start(
	const TArray<FString>& Command, const FString& WorkingDirectory, const TArray<FString>& Environment)
{
	checkf(ProcessId == 0, TEXT("A child process is started once"));
	ChildProcess::FTexts Arguments;
	for (const FString& Argument : Command)
	{
		Arguments.Add(TCHAR_TO_UTF8(*Argument));
	}
	ChildProcess::FTexts Variables;
	for (const FString& Variable : Environment)
	{
		Variables.Add(TCHAR_TO_UTF8(*Variable));
	}
	for (char** Variable = environ; *Variable; ++Variable)
	{
		Variables.Add(*Variable);
	}
	const std::string Directory(TCHAR_TO_UTF8(*WorkingDirectory));
	char** const ArgumentPointers = Arguments.Get();
	char** const VariablePointers = Variables.Get();

	int Pipe[2];
	if (pipe2(Pipe, O_CLOEXEC) != 0)
	{
		return false;
	}
	ProcessId = fork();
	if (ProcessId == 0)
	{
		ChildProcess::Become(ArgumentPointers, VariablePointers, Directory.c_str(), Pipe[1]);
	}
	close(Pipe[1]);
	OutputPipe = Pipe[0];
	fcntl(OutputPipe, F_SETFL, O_NONBLOCK);
	if (ProcessId < 0)
	{
		ProcessId = 0;
		CloseOutput();
		return false;
	}
	// The child does the same; whoever comes first, the group is there from now on.
	setpgid(ProcessId, ProcessId);
	return true;
}

bool FChildProcess::Poll()
{
	if (ProcessId == 0)
	{
		return false;
	}
	int Status = 0;
	const bool bEnded = waitpid(ProcessId, &Status, WNOHANG) != 0;
	ReadOutput();
	if (bEnded)
	{
		ExitCode = WIFEXITED(Status) ? WEXITSTATUS(Status) : -WTERMSIG(Status);
		ProcessId = 0;
		CloseOutput();
	}
	return !bEnded;
}

void FChildProcess::ReadOutput()
{
	char Bytes[16 * 1024];
	ssize_t Count = 0;
	while ((Count = read(OutputPipe, Bytes, sizeof(Bytes))) > 0)
	{
		Keep(Bytes, static_cast<int32>(Count));
	}
}

void FChildProcess::Keep(const char* Bytes, int32 Count)
{
	const int32 Room = static_cast<int32>(FMath::Min<int64>(Count, ChildProcess::MaxOutputBytes - NumKeptBytes));
	Unread.Append(Bytes, Room);
	NumKeptBytes += Room;
	if (Room < Count && !bCut)
	{
		bCut = true;
		const char Note[] = "\n... the rest of the output is left out\n";
		Unread.Append(Note, sizeof(Note) - 1);
	}
}

TArray<FString> FChildProcess::TakeLines()
{
	TArray<FString> Lines;
	int32 Start = 0;
	for (int32 Index = 0; Index < Unread.Num(); ++Index)
	{
		if (Unread[Index] == '\n')
		{
			Lines.Add(FUTF8ToTCHAR(Unread.GetData() + Start, Index - Start).Get());
			Start = Index + 1;
		}
	}
	if (ProcessId == 0 && Start < Unread.Num())
	{
		Lines.Add(FUTF8ToTCHAR(Unread.GetData() + Start, Unread.Num() - Start).Get());
		Start = Unread.Num();
	}
	Unread.RemoveAt(0, Start);
	return Lines;
}

void FChildProcess::RequestStop()
{
	if (ProcessId != 0)
	{
		kill(-ProcessId, bStopRequested ? SIGKILL : SIGTERM);
		bStopRequested = true;
	}
}

void FChildProcess::CloseOutput()
{
	close(OutputPipe);
	OutputPipe = -1;
}
