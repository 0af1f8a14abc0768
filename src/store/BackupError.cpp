#include "store/BackupError.h"

namespace quillon::store {

BackupError::BackupError(Kind kind) : std::runtime_error(description(kind)), m_kind(kind) {}

const char* BackupError::description(Kind kind) {
    switch (kind) {
    case Kind::noSermonsToBackUp:
        return "There are no sermons to back up.";
    case Kind::encodingFailed:
        return "Quillon could not prepare the sermons for backup.";
    case Kind::sermonsFileMissing:
        return "That folder does not contain a sermons.json file, so it is not a Quillon backup.";
    } // no default case, so the compiler can warn about missing cases
    return "";
}

} // namespace quillon::store
