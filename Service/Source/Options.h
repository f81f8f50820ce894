#pragma once

#include <cstddef>
#include <string>
#include <vector>

/** What the command line and the environment ask for. */
struct Options
{
	std::string StateFolder;           // for the certificates
	std::string ReadyFile;             // written when the service can be reached: port and authority, as JSON
	std::string Responder = "offline"; // or "script", or "model"
	std::string ScriptFolder;
	std::string ConfigFile;             // of 'model'
	std::string ApiKey;                 // required in x-api-key unless empty
	std::string OperatorKey;            // of the operator page and the metrics; without one there are none
	std::string Listen = "127.0.0.1";   // the address
	std::vector<std::string> HostNames; // names that the certificate is for, besides this machine's
	int Port = 0;                       // 0 takes a free one
	size_t MaxBodyBytes = 256u << 20;
	double RequestSeconds = 60.0; // in which a request has to arrive, its connection's handshake included

	/** Holds the key: on the command line every user of the machine would see it. */
	static constexpr const char* KeyVariable = "KESTREL_SERVICE_KEY";

	static constexpr const char* OperatorKeyVariable = "KESTREL_OPERATOR_KEY";

	/** Whether only this machine can reach the service. */
	bool IsLoopback() const;

	static const char* Usage();
	/** @throws std::runtime_error with a text for the user */
	static Options Parse(int ArgC, char** ArgV);
};
