#pragma once

// The engine's rules leave out exceptions, and so does the library then.
#define CPPHTTPLIB_NO_EXCEPTIONS
#include <httplib.h>

/**
 * A thread for each connection, made when it comes. Above the limit, new connections wait to be accepted: each takes a
 * file handle, which the editor needs for its own files.
 */
namespace ConnectionThreads
{
constexpr size_t MaxConnections = 64;

/** For a server of the library, which owns it. */
httplib::TaskQueue* Make();
}
