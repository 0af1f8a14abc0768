#include "export/OfficePackage.h"

#include "export/ExportError.h"

#include <spdlog/spdlog.h>
#include <zip.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <set>

namespace quillon::exports {

namespace {

/// What the zip tool writes by default: deflate at level 6, Unix permissions rw-r--r-- for
/// files and rwxr-xr-x for folders (with the MS-DOS folder bit).
constexpr zip_uint32_t deflateLevel = 6;
constexpr zip_uint32_t fileAttributes = 0100644u << 16;
constexpr zip_uint32_t folderAttributes = (040755u << 16) | 0x10;

} // namespace

void OfficePackage::add(std::string path, std::string content) {
    m_parts.emplace_back(std::move(path), std::move(content));
}

std::string OfficePackage::zipBytes(const std::string& failureSentence) const {
    const auto fail = [&](const char* step, const zip_error_t* error) -> ExportError {
        spdlog::error("Packing an export failed while {}: {}", step,
                      error ? zip_error_strerror(const_cast<zip_error_t*>(error)) : "unknown error");
        return ExportError(failureSentence);
    };

    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* buffer = zip_source_buffer_create(nullptr, 0, 0, &error);
    if (!buffer)
        throw fail("creating the buffer", &error);
    // The archive handle frees its source on close; keep one reference to read the bytes back.
    zip_source_keep(buffer);
    std::unique_ptr<zip_source_t, decltype(&zip_source_free)> bufferOwner(buffer, zip_source_free);

    zip_t* archive = zip_open_from_source(buffer, ZIP_TRUNCATE, &error);
    if (!archive) {
        zip_source_free(buffer); // the reference zip_open_from_source did not take
        throw fail("opening the archive", &error);
    }
    const auto failAdding = [&]() -> ExportError {
        ExportError failure = fail("adding a part", zip_get_error(archive));
        zip_discard(archive);
        return failure;
    };
    std::set<std::string, std::less<>> folders;
    for (const auto& [path, content] : m_parts) {
        // Each folder gets its own entry just before the first part inside it, as "zip -r" of
        // the folder of parts writes them.
        for (std::size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', slash + 1)) {
            const std::string folder = path.substr(0, slash);
            if (!folders.insert(folder).second)
                continue;
            const zip_int64_t index = zip_dir_add(archive, folder.c_str(), ZIP_FL_ENC_UTF_8);
            if (index < 0 || zip_file_set_external_attributes(archive, static_cast<zip_uint64_t>(index), 0,
                                                              ZIP_OPSYS_UNIX, folderAttributes) < 0)
                throw failAdding();
        }
        // The parts outlive zip_close, so libzip may read them in place.
        zip_source_t* part = zip_source_buffer(archive, content.data(), content.size(), 0);
        const zip_int64_t index = part ? zip_file_add(archive, path.c_str(), part, ZIP_FL_ENC_UTF_8) : -1;
        if (index < 0) {
            if (part)
                zip_source_free(part);
            throw failAdding();
        }
        const auto entry = static_cast<zip_uint64_t>(index);
        if (zip_set_file_compression(archive, entry, ZIP_CM_DEFLATE, deflateLevel) < 0 ||
            zip_file_set_external_attributes(archive, entry, 0, ZIP_OPSYS_UNIX, fileAttributes) < 0)
            throw failAdding();
    }
    if (zip_close(archive) < 0) {
        ExportError failure = fail("closing the archive", zip_get_error(archive));
        zip_discard(archive);
        throw failure;
    }

    if (zip_source_open(buffer) < 0)
        throw fail("reading the archive", zip_source_error(buffer));
    std::string bytes;
    char chunk[65536];
    for (;;) {
        const zip_int64_t read = zip_source_read(buffer, chunk, sizeof chunk);
        if (read < 0) {
            zip_source_close(buffer);
            throw fail("reading the archive", zip_source_error(buffer));
        }
        if (read == 0)
            break;
        bytes.append(chunk, static_cast<std::size_t>(read));
    }
    zip_source_close(buffer);
    return bytes;
}

} // namespace quillon::exports
