#pragma once

#include "GenericPlatform/GenericPlatformFile.h"

class FPlatformFileManager
{
public:
	static FPlatformFileManager& Get();
	IPlatformFile& GetPlatformFile();
};
