#pragma once

#include <cstdint>
#include <string>

/** What each operating system does in its own way; one source file for each kind of them. */
namespace Platform
{
enum class Readers
{
	Owner,
	Everybody,
};

/** Creates an empty file for its owner only, unless there is one. What fails shows when the file is used. */
void CreatePrivateFile(const std::string& Path);

/**
 * Writes a file whole or not at all: a full disk must not leave half a file where a good one was.
 *
 * @throws std::runtime_error with the system's reason; the file that was there is still there then
 */
void WriteWholeFile(const std::string& Path, const std::string& Content, Readers MayRead);

/** Ends a connection, so that whoever waits for it wakes up. The socket itself stays open. */
void ShutDownConnection(intptr_t Socket);

/**
 * Ends a connection whose reply has been sent, though the client may still be sending: what comes within a second is
 * discarded, since a reset would take the reply from the client.
 */
void HangUp(intptr_t Socket);

/** Called before there are several threads: requests to stop are for WaitForStop from now on. */
void BeginWaitingForStop();
/** Returns when somebody asks the process to stop, or after EndWaitingForStop. */
void WaitForStop();
void EndWaitingForStop();
}
