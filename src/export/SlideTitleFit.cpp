#include "export/SlideTitleFit.h"

#include "export/XmlText.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace quillon::exports {

namespace {

constexpr double emuPerPoint = 12700;
constexpr long horizontalInsetsEmu = 2 * 91440;
constexpr long verticalInsetsEmu = 2 * 45720;
/// Slide programs set single-spaced lines about 1.2 times the font size apart.
constexpr double lineSpacing = 1.2;

struct ObjectDeleter {
    void operator()(void* object) const { g_object_unref(object); }
};

/// Measures wrapped text at a resolution of 72 dots per inch, so Pango's units are points.
class Measure {
public:
    explicit Measure(double widthPoints) {
        m_context.reset(pango_font_map_create_context(pango_cairo_font_map_get_default()));
        pango_cairo_context_set_resolution(m_context.get(), 72);
        m_layout.reset(pango_layout_new(m_context.get()));
        pango_layout_set_width(m_layout.get(), static_cast<int>(widthPoints * PANGO_SCALE));
        pango_layout_set_wrap(m_layout.get(), PANGO_WRAP_WORD_CHAR);
    }

    /// The height the text takes at `size` (hundredths of a point).
    double height(std::string_view text, int size) {
        PangoFontDescription* font = pango_font_description_from_string("DejaVu Sans Bold");
        pango_font_description_set_size(font, size * PANGO_SCALE / 100);
        pango_layout_set_font_description(m_layout.get(), font);
        pango_font_description_free(font);
        pango_layout_set_text(m_layout.get(), text.data(), static_cast<int>(text.size()));
        int width = 0;
        int measured = 0;
        pango_layout_get_size(m_layout.get(), &width, &measured);
        const double lines = pango_layout_get_line_count(m_layout.get());
        return std::max(static_cast<double>(measured) / PANGO_SCALE, lines * lineSpacing * size / 100.0);
    }

private:
    std::unique_ptr<PangoContext, ObjectDeleter> m_context;
    std::unique_ptr<PangoLayout, ObjectDeleter> m_layout;
};

/// Byte offsets where code points start.
std::vector<std::size_t> codePointStarts(std::string_view text) {
    std::vector<std::size_t> starts;
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            starts.push_back(i);
    return starts;
}

} // namespace

SlideTitleFit SlideTitleFit::fit(std::string_view title, long widthEmu, long heightEmu) {
    std::string text = xmlSafeText(title);
    std::vector<std::size_t> starts = codePointStarts(text);
    // More characters than the box holds at the smallest size need not all be measured.
    const bool tooLong = starts.size() > maximumMeasuredCharacters;
    if (tooLong) {
        text.resize(starts[maximumMeasuredCharacters]);
        starts.resize(maximumMeasuredCharacters);
    }
    const double room = static_cast<double>(heightEmu - verticalInsetsEmu) / emuPerPoint;
    Measure measure(static_cast<double>(widthEmu - horizontalInsetsEmu) / emuPerPoint);
    for (int size = largestSize; size >= smallestSize && !tooLong; size -= 100)
        if (measure.height(text, size) <= room)
            return SlideTitleFit{size, std::string(title)};

    // Even the smallest size is too large: keep as many characters as fit, then "…".
    std::size_t fits = 0;
    std::size_t tooMany = starts.size();
    while (fits + 1 < tooMany) {
        const std::size_t middle = (fits + tooMany) / 2;
        if (measure.height(text.substr(0, starts[middle]) + "\xE2\x80\xA6", smallestSize) <= room)
            fits = middle;
        else
            tooMany = middle;
    }
    std::string shortened = text.substr(0, fits < starts.size() ? starts[fits] : text.size());
    while (!shortened.empty() && shortened.back() == ' ')
        shortened.pop_back();
    return SlideTitleFit{smallestSize, shortened + "\xE2\x80\xA6"};
}

} // namespace quillon::exports
