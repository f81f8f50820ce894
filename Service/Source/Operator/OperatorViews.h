#pragma once

#include "ModelStore.h"

/** What the operator page shows, as JSON. Several threads use it. Errors are std::runtime_error. */
class OperatorViews
{
public:
	explicit OperatorViews(ModelStore& InStore)
		: Store(InStore)
	{
	}

	/** What was used today, and each key with what it has used this month. */
	Json GetOverview() const;
	/**
	 * Conversations, the latest first, a page at a time.
	 *
	 * @param Before  the time of the last one on the page before, and its id; 0 for the first page
	 */
	Json GetConversations(int64_t Before, const std::string& BeforeId) const;
	/** What was said, in order; null if there is no such conversation. */
	Json GetConversation(const std::string& Id) const;

private:
	ModelStore& Store;
};
