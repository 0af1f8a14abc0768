// RTF comes from any word processor, and from other computers inside sermon files' rich-text
// twins. Reading gives what text it can, and what was read writes back as RTF that reads the same.
#include "FuzzInput.h"

#include "export/DocumentImporter.h"
#include "export/ExportError.h"
#include "export/LibraryReferences.h"
#include "export/RtfReader.h"
#include "export/RtfWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon::exports;
    const std::string_view rtf = quillon::fuzz::text(data, size);
    const RichText read = RtfReader::read(rtf);
    quillon::fuzz::require(RtfReader::read(RtfWriter::write(read)).plainText() == read.plainText());

    static const DocumentImporter importer(libraryReferenceRecognizer());
    try {
        importer.importBytes(rtf, "rtf", "Fuzzed", quillon::model::DateTime{});
    } catch (const ExportError&) {
    }
    return 0;
}
