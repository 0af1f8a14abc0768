#include "screens/LivePageTheme.h"

#include "platform/AtomicFile.h"
#include "platform/Paths.h"

#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <cctype>
#include <exception>

namespace quillon::screens {

namespace {

// Characters a colour or a font list needs; braces, semicolons, angle brackets, backslashes and
// quotes stay out so the value cannot end its rule or the style element.
bool isSafeCssValue(const std::string& value, std::string_view extra) {
    if (value.empty() || value.size() > 120)
        return false;
    return std::all_of(value.begin(), value.end(), [extra](char c) {
        auto u = static_cast<unsigned char>(c);
        return std::isalnum(u) || c == ' ' || c == ',' || c == '.' || c == '-' || c == '%' ||
               extra.find(c) != std::string_view::npos;
    });
}

void readCss(const nlohmann::json& json, const char* key, std::string& target, std::string_view extra) {
    auto found = json.find(key);
    if (found == json.end() || !found->is_string())
        return;
    auto value = found->get<std::string>();
    if (isSafeCssValue(value, extra))
        target = value;
    else
        spdlog::warn("The live page theme's \"{}\" is not usable; the default is kept", key);
}

void readInt(const nlohmann::json& json, const char* key, int& target, int low, int high) {
    auto found = json.find(key);
    if (found == json.end() || !found->is_number())
        return;
    double value = found->get<double>();
    if (value >= low && value <= high)
        target = static_cast<int>(value);
}

} // namespace

std::string LivePageTheme::toJson() const {
    nlohmann::ordered_json json = {{"fontFamily", fontFamily},
                                   {"fontSize", fontSize},
                                   {"minimumFontSize", minimumFontSize},
                                   {"textColour", textColour},
                                   {"referenceColour", referenceColour},
                                   {"panelColour", panelColour},
                                   {"transparentBackground", transparentBackground},
                                   {"backgroundColour", backgroundColour},
                                   {"position", position},
                                   {"width", width},
                                   {"maximumLines", maximumLines}};
    return json.dump(2) + "\n";
}

LivePageTheme LivePageTheme::fromJson(const std::string& text) {
    LivePageTheme theme;
    auto json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object())
        return theme;
    readCss(json, "fontFamily", theme.fontFamily, "");
    readCss(json, "textColour", theme.textColour, "#()");
    readCss(json, "referenceColour", theme.referenceColour, "#()");
    readCss(json, "panelColour", theme.panelColour, "#()");
    readCss(json, "backgroundColour", theme.backgroundColour, "#()");
    readInt(json, "fontSize", theme.fontSize, 8, 400);
    readInt(json, "minimumFontSize", theme.minimumFontSize, 8, 400);
    readInt(json, "width", theme.width, 20, 100);
    readInt(json, "maximumLines", theme.maximumLines, 1, 20);
    theme.minimumFontSize = std::min(theme.minimumFontSize, theme.fontSize);
    if (auto found = json.find("transparentBackground"); found != json.end() && found->is_boolean())
        theme.transparentBackground = found->get<bool>();
    if (auto found = json.find("position"); found != json.end() && found->is_string()) {
        auto value = found->get<std::string>();
        if (value == "bottom" || value == "top" || value == "middle")
            theme.position = value;
    }
    return theme;
}

LivePageTheme LivePageTheme::load(const std::filesystem::path& file) {
    try {
        std::error_code error;
        if (!std::filesystem::exists(file, error)) {
            platform::createFolderQuietly(file.parent_path());
            platform::writeFileAtomically(file, LivePageTheme{}.toJson());
            return {};
        }
        return fromJson(platform::readFile(file));
    } catch (const std::exception& failure) {
        spdlog::warn("Could not read the live page theme {}: {}", file.string(), failure.what());
        return {};
    }
}

std::filesystem::path LivePageTheme::defaultFile() {
    return platform::configHome() / "Quillon" / "live-page-theme.json";
}

} // namespace quillon::screens
