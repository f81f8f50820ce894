#include "KeyFile.h"

#include <cctype>
#include <fstream>
#include <stdexcept>

std::string ReadKeyFile(const std::string& Path)
{
	std::ifstream File(Path);
	std::string Key;
	std::getline(File, Key);
	while (!Key.empty() && std::isspace(static_cast<unsigned char>(Key.back())))
	{
		Key.pop_back();
	}
	if (Key.empty())
	{
		throw std::runtime_error("The key file " + Path + " cannot be read or is empty");
	}
	return Key;
}
