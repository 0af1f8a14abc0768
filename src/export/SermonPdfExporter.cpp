#include "export/SermonPdfExporter.h"

#include "export/ExportError.h"
#include "export/OfficeParts.h"
#include "export/OutlineNumbering.h"
#include "export/ScriptureText.h"
#include "export/XmlText.h"

#include <cairo-pdf.h>
#include <pango/pangocairo.h>
#include <spdlog/spdlog.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

namespace quillon::exports {

namespace {

struct LayoutDeleter {
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
};
using LayoutHandle = std::unique_ptr<PangoLayout, LayoutDeleter>;

struct Block {
    std::string text;
    const char* font;
    double indent = 0;      // points
    double spaceBefore = 0; // points
    std::string colour;     // "RRGGBB" or empty for black
    /// A heading: it starts a new page rather than end one, so it stays with what it introduces.
    bool keepWithNext = false;
};

/// A block laid out: its layout and the height of each of its lines.
struct LaidOutBlock {
    LayoutHandle layout;
    std::vector<double> lineHeights;

    double height() const {
        double total = 0;
        for (double line : lineHeights)
            total += line;
        return total;
    }
};

/// One line of a laid-out block, placed on a page.
struct PlacedLine {
    std::size_t page;
    PangoLayoutLine* line; // owned by its layout
    double x;
    double baseline;
    std::string colour;
};

std::string isoDay(model::DateTime date) {
    const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(date)};
    char text[16];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()));
    return text;
}

void setColour(cairo_t* cr, const std::string& hex) {
    if (hex.size() != 6) {
        cairo_set_source_rgb(cr, 0, 0, 0);
        return;
    }
    const auto component = [&](std::size_t at) { return std::stoi(hex.substr(at, 2), nullptr, 16) / 255.0; };
    cairo_set_source_rgb(cr, component(0), component(2), component(4));
}

cairo_status_t appendToString(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

constexpr const char* titleFont = "DejaVu Sans Bold 22";
constexpr const char* metadataFont = "DejaVu Sans Oblique 10";
constexpr const char* topicFont = "DejaVu Sans Bold 14";
constexpr const char* subTopicFont = "DejaVu Sans Bold 12";
constexpr const char* bodyFont = "DejaVu Sans 10.5";
constexpr const char* referenceFont = "DejaVu Serif Bold 10.5";
constexpr const char* passageFont = "DejaVu Serif Italic 10.5";
constexpr const char* footerFont = "DejaVu Sans 9";

std::string colourOrFallback(const std::optional<std::string>& own, std::string fallback) {
    std::string colour = office::hexColour(own.value_or(""));
    return colour.empty() ? fallback : colour;
}

LaidOutBlock layOut(cairo_t* cr, const Block& block, double contentWidth) {
    LaidOutBlock laid{LayoutHandle(pango_cairo_create_layout(cr)), {}};
    PangoFontDescription* font = pango_font_description_from_string(block.font);
    pango_layout_set_font_description(laid.layout.get(), font);
    pango_font_description_free(font);
    pango_layout_set_width(laid.layout.get(), static_cast<int>((contentWidth - block.indent) * PANGO_SCALE));
    pango_layout_set_wrap(laid.layout.get(), PANGO_WRAP_WORD_CHAR);
    const std::string text = xmlSafeText(block.text);
    pango_layout_set_text(laid.layout.get(), text.c_str(), static_cast<int>(text.size()));
    PangoLayoutIter* lines = pango_layout_get_iter(laid.layout.get());
    do {
        PangoRectangle logical;
        pango_layout_iter_get_line_extents(lines, nullptr, &logical);
        laid.lineHeights.push_back(static_cast<double>(logical.height) / PANGO_SCALE);
    } while (pango_layout_iter_next_line(lines));
    pango_layout_iter_free(lines);
    return laid;
}

/// The room the heading at `first` needs on its page: it and the headings right after it, whole,
/// and the first line of what they introduce.
double keptHeight(const std::vector<Block>& blocks, const std::vector<LaidOutBlock>& laidOut, std::size_t first) {
    double height = laidOut[first].height();
    std::size_t next = first + 1;
    for (; next < blocks.size() && blocks[next].keepWithNext; ++next)
        height += blocks[next].spaceBefore + laidOut[next].height();
    if (next < blocks.size())
        height += blocks[next].spaceBefore + laidOut[next].lineHeights.front();
    return height;
}

} // namespace

std::string SermonPdfExporter::render(const model::SermonNote& sermon) const {
    std::vector<Block> blocks;
    const std::string title = oneLine(sermon.title);
    blocks.push_back(
        {title.empty() ? "Untitled Sermon" : title, titleFont, 0, 0, colourOrFallback(sermon.textColorHex, "")});
    std::string metadata;
    const auto addMetadata = [&](std::string_view label, const std::string& value) {
        if (!value.empty())
            metadata += (metadata.empty() ? "" : "\n") + std::string(label) + oneLine(value);
    };
    addMetadata("Speaker: ", sermon.speaker);
    addMetadata("Series: ", sermon.series.value_or(""));
    addMetadata("Venue: ", sermon.venue.value_or(""));
    addMetadata("Date: ", isoDay(sermon.date));
    blocks.push_back({metadata, metadataFont, 0, 6, "555555"});

    int topicNumber = 0;
    for (const auto& topic : sermon.topics) {
        blocks.push_back({romanNumeral(++topicNumber) + ". " + oneLine(topic.title), topicFont, 0, 16,
                          colourOrFallback(topic.textColorHex, "1F3A5F"), true});
        if (!topic.details.empty())
            blocks.push_back({topic.details, bodyFont, 18, 4, ""});
        int subTopicNumber = 0;
        for (const auto& subTopic : topic.subTopics) {
            blocks.push_back({subTopicLetter(++subTopicNumber) + ". " + oneLine(subTopic.title), subTopicFont, 18, 10,
                              colourOrFallback(subTopic.textColorHex, "2E5A88"), true});
            if (!subTopic.details.empty())
                blocks.push_back({subTopic.details, bodyFont, 32, 3, ""});
            for (const auto& scripture : subTopic.scriptures) {
                blocks.push_back({referenceWithVersion(scripture), referenceFont, 32, 6,
                                  colourOrFallback(scripture.textColorHex, "6B4E16"), true});
                blocks.push_back({passageOrNote(scripture, m_verses), passageFont, 40, 2, ""});
            }
        }
    }
    if (!sermon.notes.empty()) {
        blocks.push_back({"Manuscript", topicFont, 0, 20, "1F3A5F", true});
        blocks.push_back({sermon.notes, bodyFont, 0, 4, ""});
    }

    std::string pdf;
    std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_pdf_surface_create_for_stream(appendToString, &pdf, pageWidth, pageHeight), cairo_surface_destroy);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
        throw ExportError(failureSentence());
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, xmlSafeText(blocks.front().text).c_str());
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATOR, "Quillon");
    std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()), cairo_destroy);
    cairo_t* cr = context.get();

    // First lay everything out and place each line, so the footer can say how many pages there are.
    const double contentWidth = pageWidth - 2 * margin;
    const double bottom = pageHeight - margin;
    std::vector<LaidOutBlock> laidOut;
    laidOut.reserve(blocks.size());
    for (const Block& block : blocks)
        laidOut.push_back(layOut(cr, block, contentWidth));

    std::vector<PlacedLine> placed;
    std::size_t page = 0;
    double y = margin;
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        const Block& block = blocks[b];
        if (y > margin)
            y += block.spaceBefore;
        if (block.keepWithNext && y > margin && y + keptHeight(blocks, laidOut, b) > bottom) {
            ++page;
            y = margin;
        }
        PangoLayoutIter* lines = pango_layout_get_iter(laidOut[b].layout.get());
        std::size_t lineIndex = 0;
        do {
            PangoRectangle logical;
            pango_layout_iter_get_line_extents(lines, nullptr, &logical);
            const double height = laidOut[b].lineHeights[lineIndex++];
            const double ascent = static_cast<double>(pango_layout_iter_get_baseline(lines) - logical.y) / PANGO_SCALE;
            if (y + height > bottom && y > margin) {
                ++page;
                y = margin;
            }
            placed.push_back(
                {page, pango_layout_iter_get_line_readonly(lines), margin + block.indent, y + ascent, block.colour});
            y += height;
        } while (pango_layout_iter_next_line(lines));
        pango_layout_iter_free(lines);
    }

    const std::size_t pages = page + 1;
    LayoutHandle footer(pango_cairo_create_layout(cr));
    PangoFontDescription* footerDescription = pango_font_description_from_string(footerFont);
    pango_layout_set_font_description(footer.get(), footerDescription);
    pango_font_description_free(footerDescription);
    std::size_t next = 0;
    for (std::size_t p = 0; p < pages; ++p) {
        for (; next < placed.size() && placed[next].page == p; ++next) {
            setColour(cr, placed[next].colour);
            cairo_move_to(cr, placed[next].x, placed[next].baseline);
            pango_cairo_show_layout_line(cr, placed[next].line);
        }
        const std::string number = "Page " + std::to_string(p + 1) + " of " + std::to_string(pages);
        pango_layout_set_text(footer.get(), number.c_str(), -1);
        int width = 0;
        int height = 0;
        pango_layout_get_pixel_size(footer.get(), &width, &height);
        cairo_set_source_rgb(cr, 0.4, 0.4, 0.4);
        cairo_move_to(cr, (pageWidth - width) / 2, pageHeight - margin / 2 - height);
        pango_cairo_show_layout(cr, footer.get());
        cairo_show_page(cr);
    }
    context.reset();
    cairo_surface_finish(surface.get());
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
        spdlog::error("Cairo could not finish the hand-out: {}",
                      cairo_status_to_string(cairo_surface_status(surface.get())));
        throw ExportError(failureSentence());
    }
    surface.reset();
    return pdf;
}

} // namespace quillon::exports
