#pragma once

#include <set>
#include <string>
#include <toml++/toml.h>
#include <vector>

/**
 * Reads a TOML document by dotted paths and collects what is wrong with it.
 *
 * A path that is missing leaves its target alone. Members that were never asked for are errors, since a misspelled
 * limit would be no limit.
 */
class ConfigReader
{
public:
	/** @throws std::runtime_error when the file cannot be read or is no TOML */
	explicit ConfigReader(const std::string& InPath);

	void Read(const std::string& Path, std::string& Target);
	void Read(const std::string& Path, bool& Target);
	void Read(const std::string& Path, std::vector<std::string>& Target);
	/** A whole number; both ends are allowed. */
	template <typename IntegerType>
	void Read(const std::string& Path, IntegerType& Target, IntegerType Lowest, IntegerType Highest);
	void Read(const std::string& Path, double& Target, double Lowest, double Highest);

	bool Has(const std::string& Path) const;
	void AddError(const std::string& Path, const std::string& What);
	/** @throws std::runtime_error with all errors, if there are any */
	void Finish();
	/** For who reads only a part of the document: other members are fine. */
	void FinishPart() const;

private:
	const toml::node* Find(const std::string& Path);
	void AddUnknown(const toml::table& Table, const std::string& Prefix);
	void AddErrorAt(const toml::node* Node, const std::string& Text);
	bool ReadNumber(const std::string& Path, double Lowest, double Highest, bool bWhole, double& Number);

	const std::string File;
	toml::table Document;
	std::set<std::string> Known;
	std::string Errors;
};

template <typename IntegerType>
void ConfigReader::Read(const std::string& Path, IntegerType& Target, IntegerType Lowest, IntegerType Highest)
{
	double Number = 0;
	if (ReadNumber(Path, static_cast<double>(Lowest), static_cast<double>(Highest), true, Number))
	{
		Target = static_cast<IntegerType>(Number);
	}
}
