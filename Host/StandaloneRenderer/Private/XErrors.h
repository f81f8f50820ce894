#pragma once

/**
 * SDL wakes its own waiting by an event to a window, through a second connection to the X server. When that window is
 * closed by the very key that woke it, the server may hear of the end first, and the error would end the process.
 * Every other error is left to who cares for it. Without an X server nothing happens.
 */
void IgnoreWakingOfClosedWindows();
