#pragma once

#include <cstddef>
#include <string>
#include <vector>

/** What the command line asks for. */
struct Options
{
	std::string StateFolder;           // for the certificates
	std::string ReadyFile;             // written when the service can be reached: port and authority, as JSON
	std::string Responder = "offline"; // or "script"
	std::string ScriptFolder;
	std::string ApiKey;                 // required in x-api-key unless empty
	std::vector<std::string> HostNames; // names that the certificate is for, besides this machine's
	int Port = 0;                       // 0 takes a free one
	size_t MaxBodyBytes = 256u << 20;

	static const char* Usage();
	/** @throws std::runtime_error with a text for the user */
	static Options Parse(int ArgC, char** ArgV);
};
