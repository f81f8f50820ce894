#pragma once

class UClass;
class UObject;

void* AllocateObjectMemory(const UClass* Class);
void FreeObjectMemory(void* Memory);
/** Destroys the values of properties that belong to classes made at run time; the destructor does not know them. */
void DestroyRuntimeProperties(UObject* Object);
