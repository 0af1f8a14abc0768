#include "orvane/SuiteCrypto.h"

#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/kdf.h>
#include <openssl/rand.h>
#include <openssl/sha.h>

#include <cctype>
#include <memory>
#include <stdexcept>

namespace orvane {

namespace {

void* mutableData(const Bytes& bytes) {
    // OSSL_PARAM takes non-const pointers although HKDF only reads its inputs.
    return const_cast<std::uint8_t*>(bytes.data());
}

/// HKDF's expand step (RFC 5869, section 2.3) over a pseudorandom key already extracted.
Bytes hkdfExpand(const Bytes& pseudorandomKey, const Bytes& info, std::size_t length) {
    Bytes output;
    Bytes block;
    for (std::uint8_t counter = 1; output.size() < length; ++counter) {
        Bytes message = block;
        message.insert(message.end(), info.begin(), info.end());
        message.push_back(counter);
        block = hmacSha256(pseudorandomKey, message);
        output.insert(output.end(), block.begin(), block.end());
    }
    output.resize(length);
    return output;
}

} // namespace

Bytes bytesOf(std::string_view text) {
    return Bytes(text.begin(), text.end());
}

Bytes randomBytes(std::size_t count) {
    Bytes bytes(count);
    if (count > 0 && RAND_bytes(bytes.data(), static_cast<int>(count)) != 1)
        throw std::runtime_error("the system random source failed");
    return bytes;
}

Bytes hkdfSha256(const Bytes& inputKeyMaterial, const Bytes& salt, const Bytes& info, std::size_t length) {
    // OpenSSL refuses empty key material, which HKDF itself allows (a peer may name itself ""): do
    // the extract step here and let OpenSSL only expand.
    if (length > 255 * SHA256_DIGEST_LENGTH)
        throw std::invalid_argument("HKDF-SHA256 gives at most 8160 bytes");
    if (inputKeyMaterial.empty())
        return hkdfExpand(hmacSha256(salt.empty() ? Bytes(SHA256_DIGEST_LENGTH, 0) : salt, {}), info, length);
    std::unique_ptr<EVP_KDF, decltype(&EVP_KDF_free)> kdf(EVP_KDF_fetch(nullptr, "HKDF", nullptr), EVP_KDF_free);
    if (!kdf)
        throw std::runtime_error("HKDF is not available in this OpenSSL");
    std::unique_ptr<EVP_KDF_CTX, decltype(&EVP_KDF_CTX_free)> context(EVP_KDF_CTX_new(kdf.get()), EVP_KDF_CTX_free);
    std::vector<OSSL_PARAM> params;
    params.push_back(OSSL_PARAM_construct_utf8_string(OSSL_KDF_PARAM_DIGEST, const_cast<char*>("SHA256"), 0));
    params.push_back(
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_KEY, mutableData(inputKeyMaterial), inputKeyMaterial.size()));
    // OpenSSL refuses a zero-length salt parameter; leaving it out gives the same (all-zero) salt.
    if (!salt.empty())
        params.push_back(OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_SALT, mutableData(salt), salt.size()));
    if (!info.empty())
        params.push_back(OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_INFO, mutableData(info), info.size()));
    params.push_back(OSSL_PARAM_construct_end());
    Bytes output(length);
    if (!context || EVP_KDF_derive(context.get(), output.data(), output.size(), params.data()) != 1)
        throw std::runtime_error("HKDF derivation failed");
    return output;
}

Bytes hmacSha256(const Bytes& key, const Bytes& message) {
    Bytes digest(EVP_MAX_MD_SIZE);
    unsigned int length = 0;
    if (!HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), message.data(), message.size(), digest.data(),
              &length))
        throw std::runtime_error("HMAC-SHA256 failed");
    digest.resize(length);
    return digest;
}

bool constantTimeEqual(const Bytes& left, const Bytes& right) {
    if (left.size() != right.size())
        return false;
    return CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

std::string base64Encode(const Bytes& bytes) {
    std::string text(4 * ((bytes.size() + 2) / 3), '\0');
    int written =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), bytes.data(), static_cast<int>(bytes.size()));
    text.resize(static_cast<std::size_t>(written));
    return text;
}

std::optional<Bytes> base64Decode(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    for (char c : text)
        if (!(std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '/' || c == '='))
            return std::nullopt;
    Bytes bytes(text.size() / 4 * 3);
    int written = EVP_DecodeBlock(bytes.data(), reinterpret_cast<const unsigned char*>(text.data()),
                                  static_cast<int>(text.size()));
    if (written < 0)
        return std::nullopt;
    // EVP_DecodeBlock counts padding as zero bytes; take them off again.
    std::size_t padding = 0;
    if (!text.empty() && text.back() == '=')
        padding = text.size() >= 2 && text[text.size() - 2] == '=' ? 2 : 1;
    bytes.resize(static_cast<std::size_t>(written) - padding);
    return bytes;
}

std::string hexEncode(const Bytes& bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (std::uint8_t byte : bytes) {
        text.push_back(digits[byte >> 4]);
        text.push_back(digits[byte & 0x0f]);
    }
    return text;
}

std::optional<Bytes> hexDecode(std::string_view text) {
    if (text.size() % 2 != 0)
        return std::nullopt;
    auto value = [](char c) -> int {
        if (c >= '0' && c <= '9')
            return c - '0';
        if (c >= 'a' && c <= 'f')
            return c - 'a' + 10;
        if (c >= 'A' && c <= 'F')
            return c - 'A' + 10;
        return -1;
    };
    Bytes bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        int high = value(text[i]), low = value(text[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
    }
    return bytes;
}

} // namespace orvane
