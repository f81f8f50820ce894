#pragma once

#include "ModelStore.h"
#include "RunningTurn.h"

#include <condition_variable>
#include <map>
#include <thread>

/**
 * Renews the leases of the turns that this process works on, and gives up those whose lease another one has. Once an
 * hour it has the store drop old conversations. Several threads use it.
 */
class LeaseKeeper
{
public:
	explicit LeaseKeeper(ModelStore& InStore);
	~LeaseKeeper();
	LeaseKeeper(const LeaseKeeper&) = delete;
	LeaseKeeper& operator=(const LeaseKeeper&) = delete;

	void Add(const std::string& RequestId, const std::shared_ptr<RunningTurn>& Running);
	void Remove(const std::string& RequestId);
	/** All that are kept are cancelled. */
	void CancelAll();

private:
	using TurnMap = std::map<std::string, std::shared_ptr<RunningTurn>>;

	void Keep();
	void RenewAll(const TurnMap& Kept);

	ModelStore& Store;
	std::mutex Mutex;
	std::condition_variable Changed;
	TurnMap Turns;
	bool bQuit = false;
	std::thread Thread;
};
