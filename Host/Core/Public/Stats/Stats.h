#pragma once

/** Names a statistic; the host gathers none. */
struct TStatId
{
};
