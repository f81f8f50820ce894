#include "RandomId.h"

#include <openssl/rand.h>
#include <stdexcept>

std::string NewRandomId()
{
	static const char Digits[] = "0123456789abcdef";
	unsigned char Bytes[16];
	if (RAND_bytes(Bytes, sizeof(Bytes)) != 1)
	{
		throw std::runtime_error("The system has no randomness to give");
	}
	std::string Id;
	for (const unsigned char Byte : Bytes)
	{
		Id += Digits[Byte >> 4];
		Id += Digits[Byte & 15];
	}
	return Id;
}
