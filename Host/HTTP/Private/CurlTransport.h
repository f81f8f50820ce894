#pragma once

#include <string>

/** What every transfer shares: read once, from the command line and the configuration. */
struct FCurlTransport
{
	/** The certificates of the system and of the project's debugging authority, in PEM; empty when there are none. */
	static std::string ReadAuthorities();
	/** "HOST:PORT:ADDRESS:PORT", or empty. */
	static std::string ReadResolveOption();
};
