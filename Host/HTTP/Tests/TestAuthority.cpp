#include "TestAuthority.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

FTestAuthority::FTestAuthority()
	: Key(EVP_EC_gen("P-256"))
	, Certificate(MakeCertificate(Key.get(), "Test authority"))
{
	X509_set_issuer_name(Certificate.get(), X509_get_subject_name(Certificate.get()));
	AddExtension(Certificate.get(), NID_basic_constraints, "critical,CA:TRUE");
	AddExtension(Certificate.get(), NID_key_usage, "critical,keyCertSign");
	X509_sign(Certificate.get(), Key.get(), EVP_sha256());
}

FTestAuthority::FCertificate FTestAuthority::MakeCertificate(EVP_PKEY* Owner, const char* CommonName)
{
	constexpr long SecondsPerDay = 24 * 60 * 60;
	FCertificate Made(X509_new());
	X509_set_version(Made.get(), X509_VERSION_3);
	ASN1_INTEGER_set(X509_get_serialNumber(Made.get()), 1);
	X509_gmtime_adj(X509_getm_notBefore(Made.get()), -SecondsPerDay);
	X509_gmtime_adj(X509_getm_notAfter(Made.get()), SecondsPerDay);
	X509_set_pubkey(Made.get(), Owner);
	X509_NAME_add_entry_by_txt(X509_get_subject_name(Made.get()), "CN", MBSTRING_UTF8,
		reinterpret_cast<const unsigned char*>(CommonName), -1, -1, 0);
	return Made;
}

void FTestAuthority::AddExtension(X509* Target, int Id, const std::string& Value)
{
	X509_EXTENSION* Extension = X509V3_EXT_conf_nid(nullptr, nullptr, Id, Value.c_str());
	X509_add_ext(Target, Extension, -1);
	X509_EXTENSION_free(Extension);
}

std::string FTestAuthority::GetPem() const
{
	BIO* Memory = BIO_new(BIO_s_mem());
	PEM_write_bio_X509(Memory, Certificate.get());
	char* Data = nullptr;
	const long Size = BIO_get_mem_data(Memory, &Data);
	std::string Pem(Data, static_cast<size_t>(Size));
	BIO_free(Memory);
	return Pem;
}

void FTestAuthority::Issue(SSL_CTX* Server, const std::string& Names) const
{
	const FKey ServerKey(EVP_EC_gen("P-256"));
	const FCertificate Issued = MakeCertificate(ServerKey.get(), "Test server");
	X509_set_issuer_name(Issued.get(), X509_get_subject_name(Certificate.get()));
	AddExtension(Issued.get(), NID_subject_alt_name, Names);
	X509_sign(Issued.get(), Key.get(), EVP_sha256());
	SSL_CTX_use_certificate(Server, Issued.get());
	SSL_CTX_use_PrivateKey(Server, ServerKey.get());
}
