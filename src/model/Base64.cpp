#include "model/Base64.h"

#include <array>
#include <cstdint>

namespace quillon::model {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<int, 256> makeDecodeTable() {
    std::array<int, 256> table{};
    for (int& entry : table)
        entry = -1;
    for (int i = 0; i < 64; ++i)
        table[static_cast<unsigned char>(alphabet[i])] = i;
    return table;
}

constexpr std::array<int, 256> decodeTable = makeDecodeTable();

} // namespace

std::string encodeBase64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        std::uint32_t chunk = static_cast<unsigned char>(bytes[i]) << 16 |
                              static_cast<unsigned char>(bytes[i + 1]) << 8 | static_cast<unsigned char>(bytes[i + 2]);
        text += alphabet[chunk >> 18 & 63];
        text += alphabet[chunk >> 12 & 63];
        text += alphabet[chunk >> 6 & 63];
        text += alphabet[chunk & 63];
    }
    size_t rest = bytes.size() - i;
    if (rest == 1) {
        std::uint32_t chunk = static_cast<unsigned char>(bytes[i]) << 16;
        text += alphabet[chunk >> 18 & 63];
        text += alphabet[chunk >> 12 & 63];
        text += "==";
    } else if (rest == 2) {
        std::uint32_t chunk = static_cast<unsigned char>(bytes[i]) << 16 | static_cast<unsigned char>(bytes[i + 1])
                                                                               << 8;
        text += alphabet[chunk >> 18 & 63];
        text += alphabet[chunk >> 12 & 63];
        text += alphabet[chunk >> 6 & 63];
        text += '=';
    }
    return text;
}

std::optional<std::string> decodeBase64(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    for (size_t i = 0; i < text.size(); i += 4) {
        bool last = i + 4 == text.size();
        int values[4];
        int padding = 0;
        for (int j = 0; j < 4; ++j) {
            char c = text[i + static_cast<size_t>(j)];
            if (c == '=' && last && j >= 2) {
                values[j] = 0;
                ++padding;
                continue;
            }
            if (padding > 0)
                return std::nullopt; // data after padding
            values[j] = decodeTable[static_cast<unsigned char>(c)];
            if (values[j] < 0)
                return std::nullopt;
        }
        std::uint32_t chunk =
            static_cast<std::uint32_t>(values[0] << 18 | values[1] << 12 | values[2] << 6 | values[3]);
        bytes += static_cast<char>(chunk >> 16 & 0xff);
        if (padding < 2)
            bytes += static_cast<char>(chunk >> 8 & 0xff);
        if (padding < 1)
            bytes += static_cast<char>(chunk & 0xff);
    }
    return bytes;
}

} // namespace quillon::model
