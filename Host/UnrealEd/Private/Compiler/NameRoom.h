#pragma once

#include "UObject/Object.h"

class UClass;

/**
 * Moves an object of another class that has the name out of the way. A damaged package can have put it there, and
 * making an object over one of another class ends the process.
 */
void MakeRoomForName(UObject& Outer, FName Name, const UClass& Class);
