#include "cli/ManuscriptInput.h"

#include "cli/Command.h"
#include "export/RtfReader.h"
#include "platform/AtomicFile.h"
#include "platform/FileError.h"

#include <iostream>
#include <iterator>

namespace quillon::cli {

ManuscriptInput readManuscriptInput(const std::string& file) {
    std::string bytes;
    if (file == "-") {
        bytes.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    } else {
        try {
            bytes = platform::readFile(file);
        } catch (const platform::FileError& failure) {
            throw UserError(std::string("Quillon could not read the file: ") + failure.what());
        }
    }
    const bool isRtf = bytes.starts_with("{\\rtf") || (file.size() > 4 && file.ends_with(".rtf"));
    if (!isRtf)
        return {std::move(bytes), std::nullopt};
    std::string plain = exports::RtfReader::read(bytes).plainText();
    return {std::move(plain), std::move(bytes)};
}

} // namespace quillon::cli
