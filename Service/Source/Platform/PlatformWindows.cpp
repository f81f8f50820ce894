#include "Platform.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <winsock2.h>
// After it:
#include <windows.h>

namespace
{
/** Set when the process is asked to stop. */
HANDLE GetStopEvent()
{
	static const HANDLE Event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
	return Event;
}

BOOL WINAPI OnConsoleEvent(DWORD)
{
	SetEvent(GetStopEvent());
	return TRUE;
}

std::wstring ToWide(const std::string& Path)
{
	return std::filesystem::path(Path).wstring();
}

[[noreturn]] void FailWithReason()
{
	throw std::runtime_error(std::system_category().message(static_cast<int>(GetLastError())));
}
}

// The state folder lies in the user's profile, whose files other users cannot read: no file needs a list of its own.

void Platform::CreatePrivateFile(const std::string& Path)
{
	const HANDLE File = CreateFileW(
		ToWide(Path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
	if (File != INVALID_HANDLE_VALUE)
	{
		CloseHandle(File);
	}
}

void Platform::WriteWholeFile(const std::string& Path, const std::string& Content, Readers)
{
	const std::wstring Temporary = ToWide(Path + ".tmp");
	const HANDLE File =
		CreateFileW(Temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
	if (File == INVALID_HANDLE_VALUE)
	{
		FailWithReason();
	}
	DWORD Written = 0;
	const bool bWritten = WriteFile(File, Content.data(), static_cast<DWORD>(Content.size()), &Written, nullptr) &&
						  FlushFileBuffers(File);
	CloseHandle(File);
	if (!bWritten || !MoveFileExW(Temporary.c_str(), ToWide(Path).c_str(), MOVEFILE_REPLACE_EXISTING))
	{
		const DWORD Reason = GetLastError();
		DeleteFileW(Temporary.c_str());
		SetLastError(Reason);
		FailWithReason();
	}
}

void Platform::ShutDownConnection(intptr_t Socket)
{
	shutdown(static_cast<SOCKET>(Socket), SD_BOTH);
}

void Platform::HangUp(intptr_t Socket)
{
	const SOCKET Connection = static_cast<SOCKET>(Socket);
	const DWORD Timeout = 1000; // milliseconds
	setsockopt(Connection, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&Timeout), sizeof(Timeout));
	shutdown(Connection, SD_SEND);
	const ULONGLONG End = GetTickCount64() + Timeout;
	char Discarded[16 * 1024];
	while (recv(Connection, Discarded, sizeof(Discarded), 0) > 0 && GetTickCount64() < End)
	{
	}
	shutdown(Connection, SD_BOTH);
}

void Platform::BeginWaitingForStop()
{
	GetStopEvent();
	SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

void Platform::WaitForStop()
{
	WaitForSingleObject(GetStopEvent(), INFINITE);
}

void Platform::EndWaitingForStop()
{
	SetEvent(GetStopEvent());
}
