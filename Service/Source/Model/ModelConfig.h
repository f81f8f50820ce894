#pragma once

#include "Secret.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/** How a model server is asked: the two request formats that servers share. */
enum class ModelFormat
{
	ChatCompletions, // POST BASE/chat/completions
	Messages,        // POST BASE/messages
};

struct ModelServer
{
	std::string BaseUrl; // with the version's path, without a trailing slash: http://127.0.0.1:8080/v1
	ModelFormat Format = ModelFormat::ChatCompletions;
	std::string Model;
	Secret Key;            // empty when the server wants none
	std::string KeySource; // what a message names when the key is refused
	int ContextTokens = 32768;
	int MaxOutputTokens = 4096;
	std::string OutputTokensField = "max_tokens"; // some servers only know "max_completion_tokens"
	std::string ApiVersion = "2023-06-01";        // of the messages format
	std::optional<double> Temperature;            // not sent unless it is set: some models refuse any
	std::string Proxy;                            // empty for the environment's
	std::string AuthorityFile;                    // PEM, trusted besides the system's authorities
};

/** All in seconds. */
struct ModelTimeouts
{
	double Connect = 10;
	double FirstByte = 600; // local servers load a model and read a long prompt in silence
	double BetweenBytes = 120;
	double Request = 1800; // one answer as a whole
	double Retry = 120;    // after the first fault of a turn no further attempt begins later than this
	double Unpolled = 120; // a turn for which nobody asks any more is given up
};

struct ModelRetries
{
	int Attempts = 4;
	double FirstDelaySeconds = 0.5; // doubles with each attempt
	double LongestDelaySeconds = 8;
};

/** Of a conversation or of a day; 0 is no limit. */
struct ModelLimits
{
	int64_t Requests = 0;
	int64_t Tokens = 0;
	double Minutes = 0; // that the model works
	double Cost = 0;    // in the currency of the prices
};

/** Per million tokens, in any one currency. */
struct ModelPrices
{
	double Input = 0;
	double CachedInput = 0;
	double Output = 0;
};

/** Where conversations are kept, so that several processes can share them. */
struct ModelDatabase
{
	Secret Address;           // of a PostgreSQL server, with its password; empty for a file in the state folder
	double LeaseSeconds = 15; // after which the turns of a process that has died are taken over
};

/** What the responder 'model' is told by its configuration file. */
struct ModelConfig
{
	ModelServer Server;
	ModelTimeouts Timeouts;
	ModelRetries Retries;
	ModelLimits PerConversation;
	ModelLimits PerDay;
	ModelPrices Prices;
	ModelDatabase Database;
	int64_t TurnsPerMinute = 60; // of one named key; 0 is no limit
	bool bLogContent = false;
	std::vector<std::string> AutoContinueTools; // run without asking the user
	int ResultTokens = 8000;                    // of one tool result; more is truncated
	int TreeTokens = 4000;                      // of the project tree in the system prompt

	/**
	 * Reads a TOML file and the key that it points to.
	 *
	 * @throws std::runtime_error with a line per error, each with the file and the line number; none repeats a value
	 */
	static ModelConfig Load(const std::string& Path);
	/** Only where conversations are kept: whoever needs no more need not have the model's key. */
	static ModelDatabase LoadDatabase(const std::string& Path);
};
