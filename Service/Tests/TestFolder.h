#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

/** A folder of a test's own, removed with everything in it. */
class TestFolder
{
public:
	TestFolder()
	{
		std::string Pattern = (std::filesystem::temp_directory_path() / "kestrel-service-XXXXXX").string();
		Path = mkdtemp(Pattern.data());
	}
	~TestFolder() { std::filesystem::remove_all(Path); }
	TestFolder(const TestFolder&) = delete;
	TestFolder& operator=(const TestFolder&) = delete;

	void Write(const std::string& Name, const std::string& Text) const { std::ofstream(Path + "/" + Name) << Text; }

	std::string Path;
};
