#pragma once

#include "export/OfficePackage.h"
#include "export/PowerPointSlide.h"
#include "export/SermonExporter.h"
#include "export/VerseTextSource.h"

#include <cstdint>
#include <vector>

namespace quillon::exports {

/// A sermon as a widescreen presentation (.pptx) for projection: a title slide, a slide per
/// topic and sub-topic, and a cream slide per attached passage with its text. Immutable once made.
class SermonPowerPointExporter : public SermonExporter {
public:
    /// 16:9 at 15 by 8.4375 inches, wide enough for the 11,962,000-EMU title box at x 685,800.
    static constexpr std::int64_t slideWidth = 13716000;
    static constexpr std::int64_t slideHeight = 7715250;

    explicit SermonPowerPointExporter(const VerseTextSource& verses) : m_verses(verses) {}

    /// The slides in talk order; bodies too long for one box continue on slides titled
    /// with " (cont.)".
    std::vector<PowerPointSlide> slides(const model::SermonNote& sermon) const;
    /// "ppt/slides/slideN.xml" for one slide.
    static std::string slideXml(const PowerPointSlide& slide);
    OfficePackage package(const model::SermonNote& sermon) const;

    std::string render(const model::SermonNote& sermon) const override;
    std::string_view extension() const override { return "pptx"; }
    std::string failureSentence() const override { return "Quillon could not create the PowerPoint presentation."; }

private:
    const VerseTextSource& m_verses;
};

} // namespace quillon::exports
