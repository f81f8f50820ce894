#pragma once

class IPlatformFile;

class FPlatformFileManager
{
public:
	static FPlatformFileManager& Get();
	/** The machine's own files, or what stands in front of them. */
	IPlatformFile& GetPlatformFile();
	/** All files go through this one from now on; it has to outlive its use. */
	void SetPlatformFile(IPlatformFile& NewTopmostPlatformFile) { TopmostPlatformFile = &NewTopmostPlatformFile; }

private:
	IPlatformFile* TopmostPlatformFile = nullptr;
};
