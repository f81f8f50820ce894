#pragma once

#include <string>

/** What all transfers share, read from the command line and the configuration when it is made. */
struct FCurlTransport
{
	FCurlTransport();

	/** The certificates of the system and of the project's debugging authority, in PEM; empty when there are none. */
	const std::string Authorities;
	/** "HOST:PORT:ADDRESS:PORT", or empty. */
	const std::string ResolveOption;
};
