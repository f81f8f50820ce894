#include "Certificates.h"

#include "Platform.h"

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace
{
template <typename Type, void (*Free)(Type*)>
struct Deleter
{
	void operator()(Type* Pointer) const { Free(Pointer); }
};
using KeyPointer = std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY, EVP_PKEY_free>>;
using BufferPointer = std::unique_ptr<BIO, Deleter<BIO, BIO_free_all>>;
using CertificatePointer = std::unique_ptr<X509, Deleter<X509, X509_free>>;

struct FileCloser
{
	void operator()(std::FILE* File) const { std::fclose(File); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

constexpr long SecondsPerDay = 24 * 60 * 60;
constexpr long AuthorityDays = 3650;
constexpr long ServerDays = 365;

void Require(bool bCondition, const char* What)
{
	if (!bCondition)
	{
		throw std::runtime_error(std::string("Certificates: ") + What + " failed");
	}
}

/** Writes what OpenSSL puts into a buffer in memory. */
void Save(const std::string& Path, Platform::Readers MayRead, const std::function<int(BIO*)>& Write)
{
	const BufferPointer Buffer(BIO_new(BIO_s_mem()));
	Require(Buffer && Write(Buffer.get()) == 1, "writing");
	char* Bytes = nullptr;
	const long NumBytes = BIO_get_mem_data(Buffer.get(), &Bytes);
	try
	{
		Platform::WriteWholeFile(Path, std::string(Bytes, static_cast<size_t>(NumBytes)), MayRead);
	}
	catch (const std::runtime_error& Error)
	{
		throw std::runtime_error("The state folder cannot be written: " + Path + ": " + Error.what());
	}
}

void SaveKey(const std::string& Path, EVP_PKEY* Key)
{
	Save(Path, Platform::Readers::Owner,
		[Key](BIO* Buffer) { return PEM_write_bio_PrivateKey(Buffer, Key, nullptr, nullptr, 0, nullptr, nullptr); });
}

void SaveCertificate(const std::string& Path, X509* Certificate)
{
	Save(Path, Platform::Readers::Everybody,
		[Certificate](BIO* Buffer) { return PEM_write_bio_X509(Buffer, Certificate); });
}

template <typename Pointer, typename Reader>
Pointer Load(const std::string& Path, Reader Read)
{
	const FilePointer File(std::fopen(Path.c_str(), "r"));
	return Pointer(File ? Read(File.get(), nullptr, nullptr, nullptr) : nullptr);
}

void AddExtension(X509* Certificate, X509* Issuer, int Id, const std::string& Value)
{
	X509V3_CTX Context;
	X509V3_set_ctx_nodb(&Context);
	X509V3_set_ctx(&Context, Issuer, Certificate, nullptr, nullptr, 0);
	X509_EXTENSION* Extension = X509V3_EXT_conf_nid(nullptr, &Context, Id, Value.c_str());
	Require(Extension, "an extension");
	X509_add_ext(Certificate, Extension, -1);
	X509_EXTENSION_free(Extension);
}

CertificatePointer NewCertificate(EVP_PKEY* Key, const std::string& CommonName, long Days)
{
	CertificatePointer Certificate(X509_new());
	X509_set_version(Certificate.get(), 2);
	unsigned char Serial[16];
	Require(RAND_bytes(Serial, sizeof(Serial)) == 1, "randomness");
	Serial[0] &= 0x7F;
	BIGNUM* Number = BN_bin2bn(Serial, sizeof(Serial), nullptr);
	BN_to_ASN1_INTEGER(Number, X509_get_serialNumber(Certificate.get()));
	BN_free(Number);
	X509_gmtime_adj(X509_getm_notBefore(Certificate.get()), -SecondsPerDay);
	X509_gmtime_adj(X509_getm_notAfter(Certificate.get()), Days * SecondsPerDay);
	X509_set_pubkey(Certificate.get(), Key);
	X509_NAME_add_entry_by_txt(X509_get_subject_name(Certificate.get()), "CN", MBSTRING_UTF8,
		reinterpret_cast<const unsigned char*>(CommonName.c_str()), -1, -1, 0);
	return Certificate;
}

KeyPointer NewKey()
{
	KeyPointer Key(EVP_EC_gen("P-256"));
	Require(Key != nullptr, "a key");
	return Key;
}

struct Authority
{
	KeyPointer Key;
	CertificatePointer Certificate;
};

Authority MakeAuthority(const std::string& KeyPath, const std::string& CertificatePath)
{
	Authority Made{ NewKey(), nullptr };
	Made.Certificate = NewCertificate(Made.Key.get(), "Kestrel local service authority", AuthorityDays);
	X509* Certificate = Made.Certificate.get();
	X509_set_issuer_name(Certificate, X509_get_subject_name(Certificate));
	AddExtension(Certificate, Certificate, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
	AddExtension(Certificate, Certificate, NID_key_usage, "critical,keyCertSign");
	AddExtension(Certificate, Certificate, NID_subject_key_identifier, "hash");
	Require(X509_sign(Certificate, Made.Key.get(), EVP_sha256()) > 0, "signing");
	SaveKey(KeyPath, Made.Key.get());
	SaveCertificate(CertificatePath, Certificate);
	return Made;
}

Authority LoadOrMakeAuthority(const std::string& KeyPath, const std::string& CertificatePath)
{
	Authority Loaded{ Load<KeyPointer>(KeyPath, PEM_read_PrivateKey),
		Load<CertificatePointer>(CertificatePath, PEM_read_X509) };
	const bool bUsable = Loaded.Key && Loaded.Certificate &&
						 X509_check_private_key(Loaded.Certificate.get(), Loaded.Key.get()) == 1 &&
						 X509_cmp_current_time(X509_get0_notAfter(Loaded.Certificate.get())) > 0;
	return bUsable ? std::move(Loaded) : MakeAuthority(KeyPath, CertificatePath);
}
}

CertificateFiles PrepareCertificates(const std::string& Folder, const std::vector<std::string>& HostNames)
{
	std::error_code Problem;
	std::filesystem::create_directories(Folder, Problem);
	if (Problem)
	{
		throw std::runtime_error("The state folder cannot be created: " + Folder + ": " + Problem.message());
	}
	const CertificateFiles Files{ Folder + "/authority.pem", Folder + "/server.pem", Folder + "/server-key.pem" };
	const Authority Signer = LoadOrMakeAuthority(Folder + "/authority-key.pem", Files.Authority);

	const KeyPointer Key = NewKey();
	const CertificatePointer Server = NewCertificate(Key.get(), "Kestrel local service", ServerDays);
	X509_set_issuer_name(Server.get(), X509_get_subject_name(Signer.Certificate.get()));
	std::string Names = "DNS:localhost,IP:127.0.0.1,IP:::1";
	for (const std::string& Name : HostNames)
	{
		ASN1_OCTET_STRING* const Address = a2i_IPADDRESS(Name.c_str());
		Names += (Address ? ",IP:" : ",DNS:") + Name;
		ASN1_OCTET_STRING_free(Address);
	}
	AddExtension(Server.get(), Signer.Certificate.get(), NID_basic_constraints, "critical,CA:FALSE");
	AddExtension(Server.get(), Signer.Certificate.get(), NID_key_usage, "critical,digitalSignature");
	AddExtension(Server.get(), Signer.Certificate.get(), NID_ext_key_usage, "serverAuth");
	AddExtension(Server.get(), Signer.Certificate.get(), NID_subject_alt_name, Names);
	Require(X509_sign(Server.get(), Signer.Key.get(), EVP_sha256()) > 0, "signing");
	SaveKey(Files.PrivateKey, Key.get());
	SaveCertificate(Files.Certificate, Server.get());
	return Files;
}
