#pragma once

class UClass;

/** For a default object that is made before there is a configuration: it is loaded when types are processed next. */
void LoadConfigOfDefaultObjectLater(UClass* Class);
