#include "HostEditor.h"
#include "Misc/CommandLine.h"

#include <clocale>

int main(int ArgC, char* ArgV[])
{
	std::setlocale(LC_CTYPE, "C.UTF-8");
	FCommandLine::Set(*FCommandLine::BuildFromArgV(ArgC, ArgV));
	constexpr int UsageExitCode = 2;
	FHostEditor Editor;
	return Editor.Init() ? Editor.Run() : UsageExitCode;
}
