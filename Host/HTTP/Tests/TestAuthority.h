#pragma once

#include <memory>
#include <openssl/ssl.h>
#include <string>

/** A certificate authority that lives as long as the test. */
class FTestAuthority
{
public:
	FTestAuthority();

	/** Its own certificate, in PEM. */
	std::string GetPem() const;
	/** Gives a server a new key and a certificate for these names: "DNS:localhost,IP:127.0.0.1". */
	void Issue(SSL_CTX* Server, const std::string& Names) const;

private:
	struct FFree
	{
		void operator()(EVP_PKEY* Pointer) const { EVP_PKEY_free(Pointer); }
		void operator()(X509* Pointer) const { X509_free(Pointer); }
	};
	using FKey = std::unique_ptr<EVP_PKEY, FFree>;
	using FCertificate = std::unique_ptr<X509, FFree>;

	static FCertificate MakeCertificate(EVP_PKEY* Owner, const char* CommonName);
	static void AddExtension(X509* Target, int Id, const std::string& Value);

	FKey Key;
	FCertificate Certificate;
};
