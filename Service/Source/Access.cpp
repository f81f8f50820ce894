#include "Access.h"

namespace
{
/** The same time for every wrong key. */
bool IsSameKey(const std::string& A, const std::string& B)
{
	unsigned Difference = static_cast<unsigned>(A.size() ^ B.size());
	for (size_t Index = 0; Index < A.size(); ++Index)
	{
		Difference |=
			static_cast<unsigned char>(A[Index]) ^ static_cast<unsigned char>(B.empty() ? 0 : B[Index % B.size()]);
	}
	return Difference == 0;
}
}

Access::Access(const Options& InSettings, KeyRing* InKeys)
	: Settings(InSettings)
	, Keys(InKeys)
{
	if (!Settings.IsLoopback() && Settings.ApiKey.empty() && !(Keys && Keys->HasKeys()))
	{
		throw std::runtime_error(
			"The service listens on " + Settings.Listen +
			" only when there are keys, or everybody could use it. Add one: kestrel-service keys add "
			"NAME");
	}
}

std::optional<std::string> Access::Admit(const std::string& Key) const
{
	if (!Settings.ApiKey.empty() && IsSameKey(Key, Settings.ApiKey))
	{
		return "";
	}
	const bool bOpen = Settings.ApiKey.empty() && Settings.IsLoopback() && !(Keys && Keys->HasKeys());
	if (bOpen)
	{
		return "";
	}
	return Keys ? Keys->Find(Key) : std::nullopt;
}

bool Access::IsOperator(const std::string& Key) const
{
	return HasOperator() && IsSameKey(Key, Settings.OperatorKey);
}
