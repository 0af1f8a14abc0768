#include "model/Uuid.h"

#include <random>

namespace quillon::model {

namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool isHyphenPosition(size_t index) {
    return index == 8 || index == 13 || index == 18 || index == 23;
}

} // namespace

Uuid Uuid::random() {
    // random_device reads the kernel's generator on Linux; one draw per 32 bits keeps ids unpredictable.
    static thread_local std::random_device device;
    Uuid id;
    for (size_t i = 0; i < id.bytes.size(); i += 4) {
        std::uint32_t value = device();
        for (size_t j = 0; j < 4; ++j)
            id.bytes[i + j] = static_cast<std::uint8_t>(value >> (8 * j));
    }
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0f) | 0x40);
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3f) | 0x80);
    return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != 36)
        return std::nullopt;
    Uuid id;
    size_t byte = 0;
    for (size_t i = 0; i < text.size();) {
        if (isHyphenPosition(i)) {
            if (text[i] != '-')
                return std::nullopt;
            ++i;
            continue;
        }
        int high = hexValue(text[i]);
        int low = hexValue(text[i + 1]);
        if (high < 0 || low < 0 || isHyphenPosition(i + 1))
            return std::nullopt;
        id.bytes[byte++] = static_cast<std::uint8_t>(high << 4 | low);
        i += 2;
    }
    return id;
}

std::string Uuid::text() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    result.reserve(36);
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            result += '-';
        result += digits[bytes[i] >> 4];
        result += digits[bytes[i] & 0x0f];
    }
    return result;
}

} // namespace quillon::model

size_t std::hash<quillon::model::Uuid>::operator()(const quillon::model::Uuid& id) const noexcept {
    size_t hash = 14695981039346656037ull;
    for (auto byte : id.bytes)
        hash = (hash ^ byte) * 1099511628211ull;
    return hash;
}
