#pragma once

#include "KeyRing.h"
#include "Options.h"

/** Who may use the service, and as whom. */
class Access
{
public:
	/** @param InKeys  the named keys; null where there is no place for any. It must outlive this. */
	Access(const Options& InSettings, KeyRing* InKeys);

	/** @return the name of a client's key, empty for one without a name; nothing when it may not use the service */
	std::optional<std::string> Admit(const std::string& Key) const;
	bool HasOperator() const { return !Settings.OperatorKey.empty(); }
	bool IsOperator(const std::string& Key) const;

private:
	const Options& Settings;
	KeyRing* const Keys;
};
