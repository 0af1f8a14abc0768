// A .docx is a zip package from anywhere: the reader refuses a hostile package with a sentence
// before it uses much memory, and whatever it reads becomes a draft sermon.
#include "FuzzInput.h"

#include "export/DocumentImporter.h"
#include "export/DocxReader.h"
#include "export/ExportError.h"
#include "export/LibraryReferences.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon::exports;
    const std::string_view bytes = quillon::fuzz::text(data, size);
    try {
        DocxReader::read(bytes);
    } catch (const ExportError&) {
    }
    static const DocumentImporter importer(libraryReferenceRecognizer());
    try {
        importer.importBytes(bytes, "docx", "Fuzzed", quillon::model::DateTime{});
    } catch (const ExportError&) {
    }
    return 0;
}
