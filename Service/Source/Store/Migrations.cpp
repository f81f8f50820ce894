#include "Migrations.h"

// Every database of ours takes these: BIGINT and DOUBLE PRECISION are what SQLite's INTEGER and REAL are elsewhere.

const std::vector<const char*>& GetMigrations()
{
	static const std::vector<const char*> Migrations = {
		R"(
CREATE TABLE conversations (
	id TEXT PRIMARY KEY,
	request_id TEXT NOT NULL UNIQUE,
	turn TEXT NOT NULL,
	reply TEXT,
	state TEXT,
	updated BIGINT NOT NULL);
CREATE TABLE usage (
	day BIGINT PRIMARY KEY,
	requests BIGINT NOT NULL,
	tokens BIGINT NOT NULL,
	minutes DOUBLE PRECISION NOT NULL,
	cost DOUBLE PRECISION NOT NULL);
)",
		// Several processes, and several people.
		R"(
CREATE TABLE turns (
	request_id TEXT PRIMARY KEY,
	conversation_id TEXT NOT NULL,
	number BIGINT NOT NULL,
	body TEXT NOT NULL);
CREATE INDEX turns_of_conversation ON turns (conversation_id, number);
INSERT INTO turns SELECT request_id, id, 1, turn FROM conversations WHERE reply IS NULL;
ALTER TABLE conversations DROP COLUMN turn;
ALTER TABLE conversations ADD COLUMN key_name TEXT NOT NULL DEFAULT '';
ALTER TABLE conversations ADD COLUMN worker TEXT NOT NULL DEFAULT '';
ALTER TABLE conversations ADD COLUMN lease_until DOUBLE PRECISION NOT NULL DEFAULT 0;
ALTER TABLE conversations ADD COLUMN polled DOUBLE PRECISION NOT NULL DEFAULT 0;
ALTER TABLE conversations ADD COLUMN progress TEXT;
ALTER TABLE conversations ADD COLUMN tokens BIGINT NOT NULL DEFAULT 0;
ALTER TABLE conversations ADD COLUMN cost DOUBLE PRECISION NOT NULL DEFAULT 0;
ALTER TABLE conversations ADD COLUMN error TEXT NOT NULL DEFAULT '';
CREATE INDEX conversations_by_time ON conversations (updated);
CREATE TABLE key_usage (
	key_name TEXT NOT NULL,
	day BIGINT NOT NULL,
	requests BIGINT NOT NULL,
	tokens BIGINT NOT NULL,
	minutes DOUBLE PRECISION NOT NULL,
	cost DOUBLE PRECISION NOT NULL,
	PRIMARY KEY (key_name, day));
INSERT INTO key_usage SELECT '', day, requests, tokens, minutes, cost FROM usage;
DROP TABLE usage;
CREATE TABLE keys (
	name TEXT PRIMARY KEY,
	hash TEXT NOT NULL UNIQUE,
	budget DOUBLE PRECISION NOT NULL,
	created BIGINT NOT NULL);
)",
	};
	return Migrations;
}
