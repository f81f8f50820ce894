#pragma once

#include "ISourceControlOperation.h"

/** Makes a file writable and announces that it will be changed; only with providers that lock files. */
class FCheckOut : public ISourceControlOperation
{
public:
	FName GetName() const override { return "CheckOut"; }
};

/** Has a file that is on disk under revision control from the next check-in on. */
class FMarkForAdd : public ISourceControlOperation
{
public:
	FName GetName() const override { return "MarkForAdd"; }
};

/** Takes a file out of revision control and deletes it from the disk. */
class FDelete : public ISourceControlOperation
{
public:
	FName GetName() const override { return "Delete"; }
};

/** Reverts a file to the last check-in. */
class FRevert : public ISourceControlOperation
{
public:
	FName GetName() const override { return "Revert"; }
};

/** Updates the state of files. */
class FUpdateStatus : public ISourceControlOperation
{
public:
	FName GetName() const override { return "UpdateStatus"; }
};
