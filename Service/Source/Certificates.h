#pragma once

#include <string>
#include <vector>

/** Files that a TLS server needs, and the authority that its clients must trust. */
struct CertificateFiles
{
	std::string Authority;   // PEM
	std::string Certificate; // PEM
	std::string PrivateKey;  // PEM, readable for its owner only
};

/**
 * Makes an authority in a folder on first use, and a certificate of it for the names of this machine and for HostNames
 * each time. The authority signs nothing else; its key never leaves the folder.
 *
 * @throws std::runtime_error when a file cannot be written
 */
CertificateFiles PrepareCertificates(const std::string& Folder, const std::vector<std::string>& HostNames);
