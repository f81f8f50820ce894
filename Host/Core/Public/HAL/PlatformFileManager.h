#pragma once

class IPlatformFile;

class FPlatformFileManager
{
public:
	static FPlatformFileManager& Get();
	IPlatformFile& GetPlatformFile();
};
