#pragma once

#include <vector>

/** What brings a database from the version of its index to the next. Never changed, only added to. */
const std::vector<const char*>& GetMigrations();
