#include "Console/ConsoleInput.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

FConsoleInput::FConsoleInput()
	: bTyped(isatty(STDIN_FILENO) != 0)
{
}

void FConsoleInput::Read()
{
	pollfd Input{ STDIN_FILENO, POLLIN, 0 };
	while (!bClosed && poll(&Input, 1, 0) > 0)
	{
		char Buffer[4096];
		const ssize_t Count = read(STDIN_FILENO, Buffer, sizeof(Buffer));
		if (Count < 0 && errno == EINTR)
		{
			return;
		}
		if (Count <= 0)
		{
			bClosed = true;
			if (!PartialLine.empty())
			{
				Lines.Add(FString(PartialLine.c_str())); // the last line of a pipe may have no end
			}
			return;
		}
		PartialLine.append(Buffer, static_cast<size_t>(Count));
		AddLines();
	}
}

void FConsoleInput::AddLines()
{
	constexpr size_t MaxLineBytes = 1 << 20; // the rest of a longer one is a line of its own
	for (size_t End = PartialLine.find('\n'); End != std::string::npos || PartialLine.size() > MaxLineBytes;
		 End = PartialLine.find('\n'))
	{
		Lines.Add(FString(PartialLine.substr(0, End).c_str()));
		PartialLine.erase(0, End == std::string::npos ? End : End + 1);
	}
}

FString FConsoleInput::TakeLine()
{
	FString Line = MoveTemp(Lines[0]);
	Lines.RemoveAt(0);
	return Line;
}
